#pragma once

#include "shell/contracts/base/Delegate.h"
#include "shell/contracts/base/LifeToken.h"
#include "shell/contracts/base/String.h"
#include "shell/contracts/framework/Windows.h"

#include <map>
#include <vector>

namespace kivo::tunehive {

class IMediaPlayer;
class ITuneHive_AsyncCallbackParam;

// Hears of the player's states. The argument is an ITuneHive_PlayerState of the listener's own, to
// be released by it. Thread: user interface.
using PlayerStateListener = Delegate<ITuneHive_AsyncCallbackParam*>;

// Owns the players, decides which one serves a URL, and hands their states to its listeners.
// Thread: user interface.
class CMediaPlayerManager {
public:
    // The one manager, made at first use.
    [[nodiscard]] static CMediaPlayerManager& GetInstance();

    // The one manager if it is there; late callers use this, so that none is made in order to be
    // asked. Null before the load and after Destroy.
    [[nodiscard]] static CMediaPlayerManager* FindInstance();

    // As GetPlayer of the one manager; null without one.
    [[nodiscard]] static IMediaPlayer* FindPlayer(const String& url = String());

    // Drops the listeners, releases every player, and deletes the manager itself.
    void Destroy();

    void RegisterPlayers();          // Enters the players that there are; at load.
    void SetParentWnd(CWnd* parent); // Where players create their surface; borrowed, may be null.

    // The bounds of the surface, for the current player and those that become it.
    void SetBounds(int left, int top, int right, int bottom);

    // The player that serves `url`, made ready and shown, from now on the current one; null when
    // none can. The empty string asks for the current player, null if there is none, and changes
    // nothing.
    [[nodiscard]] IMediaPlayer* GetPlayer(const String& url);

    void AddListener(const PlayerStateListener& listener);    // An equal pair is not added again.
    void RemoveListener(const PlayerStateListener& listener); // Harmless when it isn't listed.

    // A player's new state: each listener gets it in order, one that leaves meanwhile does not.
    void NotifyState(int state);

    // Enters a player of one's own, which the manager owns from here on; one with the same id is
    // kept and the new one released.
    void AddPlayer(IMediaPlayer* player);

    CMediaPlayerManager() = default;
    CMediaPlayerManager(const CMediaPlayerManager&) = delete;
    CMediaPlayerManager& operator=(const CMediaPlayerManager&) = delete;
    virtual ~CMediaPlayerManager();

private:
    [[nodiscard]] IMediaPlayer* TakePlayer(const String& url);

    std::vector<PlayerStateListener> listeners_; // In order of addition.
    std::map<int, IMediaPlayer*> players_;       // Owned, freed through Release.
    CWnd* parent_ = nullptr;
    IMediaPlayer* current_ = nullptr;
    Rect bounds_;
    LifeToken life_;
};

} // namespace kivo::tunehive
