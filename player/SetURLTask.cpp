#include "player/SetURLTask.h"

#include "player/IMediaPlayer.h"
#include "player/MediaPlayerManager.h"
#include "player/PlayTurn.h"

#include <utility>

namespace kivo::tunehive {

CSetURLTask::CSetURLTask(String url, int autoplay)
    : url_(std::move(url))
    , autoplay_(autoplay)
    , turn_(GetPlayTurn())
{
}

void CSetURLTask::Execute()
{
    CMediaPlayerManager* const manager = CMediaPlayerManager::FindInstance();
    if (manager == nullptr || turn_ != GetPlayTurn())
        return;
    if (IMediaPlayer* const player = manager->GetPlayer(url_))
        player->SetURL(url_, autoplay_);
}

void CSetURLTask::Release()
{
    delete this;
}

} // namespace kivo::tunehive
