#include "player/OutputVolume.h"

#include "player/IMediaPlayer.h"
#include "player/MediaPlayerManager.h"
#include "shell/contracts/base/Beyond.h"
#include "shell/contracts/control/MediaEngineSettings.h"

namespace kivo::tunehive {

namespace {

MediaEngineVolume LoadVolume()
{
    const MediaEngineSettings& settings = GetMediaEngineSettings();
    return settings.loadVolume ? settings.loadVolume() : MediaEngineVolume();
}

} // namespace

int GetOutputVolume()
{
    if (IMediaPlayer* player = CMediaPlayerManager::FindPlayer())
        return player->GetVolume();
    return IsBeyond() ? LoadVolume().volume : -1;
}

void SetOutputVolume(int volume)
{
    if (IMediaPlayer* player = CMediaPlayerManager::FindPlayer()) {
        player->SetVolume(volume);
        return;
    }
    const MediaEngineSettings& settings = GetMediaEngineSettings();
    if (!IsBeyond() || !settings.storeVolume)
        return;
    MediaEngineVolume start = LoadVolume();
    start.volume = volume;
    settings.storeVolume(start);
}

} // namespace kivo::tunehive
