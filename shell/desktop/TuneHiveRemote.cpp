#include "shell/desktop/TuneHiveRemote.h"

#include "medialib/AddFolderThread.h"
#include "medialib/IMediaLibManager.h"
#include "player/IMediaPlayer.h"
#include "player/MediaPlayerManager.h"
#include "player/PlayerPanel.h"
#include "player/PlayerState.h"
#include "player/PlayTurn.h"
#include "shell/base/MusicServer.h"
#include "shell/contracts/base/Released.h"
#include "shell/TuneHiveWindow.h"
#include "tree/MediaTree.h"

#include <algorithm>

namespace kivo::tunehive {

namespace {

constexpr std::int32_t kStoredName = 1;

} // namespace

TuneHiveRemote::TuneHiveRemote(TuneHiveWindow& window)
    : window_(window)
{
    CMediaPlayerManager::GetInstance().AddListener(
        PlayerStateListener(this, &TuneHiveRemote::OnPlayerState));
}

TuneHiveRemote::~TuneHiveRemote()
{
    if (auto* manager = CMediaPlayerManager::FindInstance())
        manager->RemoveListener(PlayerStateListener(this, &TuneHiveRemote::OnPlayerState));
}

void TuneHiveRemote::Open(const std::vector<String>& items, const String& group, bool playFirst)
{
    if (CMediaTree* tree = window_.GetTree())
        tree->OpenItems(items, group, playFirst);
    listeners_.Notify(-1);
}

void TuneHiveRemote::Play()
{
    window_.GetPlayerPanel()->PressPlay();
}

void TuneHiveRemote::Pause()
{
    window_.GetPlayerPanel()->PressPause();
}

void TuneHiveRemote::Stop()
{
    window_.GetPlayerPanel()->PressStop();
}

void TuneHiveRemote::Next()
{
    window_.GetPlayerPanel()->PressNext();
}

void TuneHiveRemote::Previous()
{
    window_.GetPlayerPanel()->PressPrevious();
}

void TuneHiveRemote::Seek(double seconds)
{
    window_.GetPlayerPanel()->SeekTo(seconds);
}

IMediaPlayer* TuneHiveRemote::FindPlayer() const
{
    auto* manager = CMediaPlayerManager::FindInstance();
    return manager != nullptr ? manager->GetPlayer(String()) : nullptr;
}

int TuneHiveRemote::GetVolume() const
{
    IMediaPlayer* player = FindPlayer();
    return player != nullptr ? player->GetVolume() : -1;
}

void TuneHiveRemote::SetVolume(int volume)
{
    if (IMediaPlayer* player = FindPlayer())
        player->SetVolume(std::clamp(volume, 0, 100));
}

int TuneHiveRemote::GetState() const
{
    return window_.GetPlayState();
}

String TuneHiveRemote::GetTitle() const
{
    MediaInfo stored;
    window_.GetCurrentTrackInfo(stored);
    String name = GetInfoText(stored, kStoredName);
    if (!name.empty())
        return name;
    MediaInfo info;
    if (IMediaLibManager* library = FindMediaLibManager())
        library->GetMediaInfo(GetPath(), info);
    return GetInfoText(info, kInfoTitle);
}

String TuneHiveRemote::GetArtist() const
{
    MediaInfo info;
    if (IMediaLibManager* library = FindMediaLibManager())
        library->GetMediaInfo(GetPath(), info);
    return GetInfoText(info, kInfoArtist);
}

String TuneHiveRemote::GetPath() const
{
    String url;
    if (IPlayingList* list = window_.GetPlayingList())
        list->GetCurrentURL(url);
    return url;
}

double TuneHiveRemote::GetPosition() const
{
    IMediaPlayer* player = FindPlayer();
    return player != nullptr ? player->GetPosition() : -1.0;
}

double TuneHiveRemote::GetLength() const
{
    IMediaPlayer* player = FindPlayer();
    return player != nullptr ? player->GetDuration() : -1.0;
}

bool TuneHiveRemote::IsAtRest() const
{
    if (CAddFolderThread::GetRunningCount() > 0 || IsStartUnderWay() ||
        !window_.GetPlayerPanel()->IsAtRest())
        return false;
    switch (static_cast<PlayerState>(GetState())) {
    case PlayerState::Stopped:
    case PlayerState::Ended:
    case PlayerState::Ready: return true;
    default: return GetState() <= 0; // Nothing has been opened yet.
    }
}

void TuneHiveRemote::AddListener(const Delegate<int>& listener)
{
    listeners_.Add(listener);
}

void TuneHiveRemote::RemoveListener(const Delegate<int>& listener)
{
    listeners_.Remove(listener);
}

bool TuneHiveRemote::StopWork(int timeoutMs)
{
    IMediaLibManager* library = FindMediaLibManager();
    return library == nullptr || library->StopWork(timeoutMs);
}

void TuneHiveRemote::ToggleFullScreen()
{
    IMediaPlayer* player = FindPlayer();
    if (player != nullptr && (player->GetFullScreen() || player->GetImageWidth() > 0))
        player->SetFullScreen(!player->GetFullScreen());
}

void TuneHiveRemote::OpenWebForm()
{
    window_.OpenMusicCabinet();
}

void TuneHiveRemote::SetMusicServer(const String& hostAndPort)
{
    tunehive::SetMusicServer(hostAndPort);
}

void TuneHiveRemote::OnPlayerState(ITuneHive_AsyncCallbackParam* param)
{
    const Released<ITuneHive_AsyncCallbackParam> owned(param);
    listeners_.Notify(static_cast<ITuneHive_PlayerState*>(param)->state);
}

} // namespace kivo::tunehive
