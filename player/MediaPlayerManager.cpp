#include "player/MediaPlayerManager.h"

#include "player/IMediaPlayer.h"
#include "player/KivoPlayerWnd.h"
#include "player/PlayerState.h"
#include "player/PlayTurn.h"

#include <algorithm>

namespace kivo::tunehive {

namespace {

CMediaPlayerManager* theInstance = nullptr;

} // namespace

CMediaPlayerManager& CMediaPlayerManager::GetInstance()
{
    if (theInstance == nullptr)
        theInstance = new CMediaPlayerManager;
    return *theInstance;
}

CMediaPlayerManager* CMediaPlayerManager::FindInstance()
{
    return theInstance;
}

IMediaPlayer* CMediaPlayerManager::FindPlayer(const String& url)
{
    return theInstance != nullptr ? theInstance->GetPlayer(url) : nullptr;
}

CMediaPlayerManager::~CMediaPlayerManager()
{
    listeners_.clear();
    for (const auto& [id, player] : players_)
        player->Release();
    players_.clear();
    current_ = nullptr;
}

void CMediaPlayerManager::Destroy()
{
    if (theInstance == this)
        theInstance = nullptr;
    delete this;
    SetStartUnderWay(/*underWay=*/false); // What the players were starting went with them.
}

void CMediaPlayerManager::RegisterPlayers()
{
    AddPlayer(new CKivoPlayerWnd);
}

void CMediaPlayerManager::AddPlayer(IMediaPlayer* player)
{
    if (players_.emplace(player->GetPlayerId(), player).second)
        player->SetManager(this);
    else
        player->Release();
}

void CMediaPlayerManager::SetParentWnd(CWnd* parent)
{
    parent_ = parent;
}

void CMediaPlayerManager::SetBounds(int left, int top, int right, int bottom)
{
    bounds_ = {left, top, right, bottom};
    if (current_ != nullptr)
        current_->SetBounds(left, top, right, bottom);
}

IMediaPlayer* CMediaPlayerManager::GetPlayer(const String& url)
{
    if (url.empty())
        return current_;
    IMediaPlayer* const player = TakePlayer(url);
    if (player != nullptr) {
        if (current_ != nullptr && current_ != player)
            current_->Show(0);
        player->Show(1);
        player->SetBounds(bounds_.left, bounds_.top, bounds_.right, bounds_.bottom);
    }
    current_ = player;
    return player;
}

IMediaPlayer* CMediaPlayerManager::TakePlayer(const String& url)
{
    for (const auto& [id, player] : players_) {
        if (player->CanPlay(url) && (player->IsInited() != 0 || player->Init(parent_) != 0))
            return player;
    }
    return nullptr;
}

void CMediaPlayerManager::AddListener(const PlayerStateListener& listener)
{
    if (std::find(listeners_.begin(), listeners_.end(), listener) == listeners_.end())
        listeners_.push_back(listener);
}

void CMediaPlayerManager::RemoveListener(const PlayerStateListener& listener)
{
    const auto found = std::find(listeners_.begin(), listeners_.end(), listener);
    if (found != listeners_.end())
        listeners_.erase(found);
}

void CMediaPlayerManager::NotifyState(int state)
{
    const LifeWatch life = life_.Watch();
    const auto listeners = listeners_;
    for (const PlayerStateListener& listener : listeners) {
        if (!life.IsAlive())
            return;
        const bool isListed =
            std::find(listeners_.begin(), listeners_.end(), listener) != listeners_.end();
        // A delegate without an object would not run, and nobody would release the state.
        if (isListed && listener.GetObject() != nullptr)
            listener(new ITuneHive_PlayerState(state));
    }
}

} // namespace kivo::tunehive
