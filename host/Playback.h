#pragma once

#include "shell/contracts/base/LifeToken.h"
#include "shell/contracts/base/String.h"

#include <functional>
#include <vector>

namespace kivo {
class ITuneHiveRemote;
}

namespace kivo::host {

class Terminal;

// One line on what plays: "Playing: Title  0:05 / 3:20". UTF-8, harmless for a terminal; empty
// while nothing is open. Negative seconds leave the times out.
[[nodiscard]] std::string
ComposeStatus(int state, const String& title, double position, double length);

// Follows the player on behalf of a run: hands it what the command line named, tells the terminal
// how it goes, and ends the run where that was asked for. Thread: user interface.
class Playback {
public:
    struct Rules {
        bool showsStatus = false;          // There is no window: the terminal shows what plays.
        bool quitsAtEnd = false;           // The run ends when the player has come to rest.
        bool quitsIfNothingPlayed = false; // It ends at rest if nothing could be played.
    };

    // `remote` and `terminal` are borrowed. `quit` gets the exit status, from the queue of posts,
    // at most once.
    Playback(ITuneHiveRemote& remote,
             Terminal& terminal,
             const Rules& rules,
             std::function<void(int)> quit);
    Playback(const Playback&) = delete;
    Playback& operator=(const Playback&) = delete;
    ~Playback();

    // Adds the items to the end of "playing"; the first of them plays.
    void Open(const std::vector<String>& items);

    [[nodiscard]] bool HasPlayed() const { return hasPlayed_; }

    // The items' turn is over: the first one plays, or none can.
    [[nodiscard]] bool HasSettled() const { return hasPlayed_ || hasRested_; }
    void SetSettledListener(std::function<void()> listener) { onSettled_ = std::move(listener); }

    // Looks whether the run is to end. It looks by itself after each state; an import that brings
    // nothing ends without one, so call it now and then.
    void CheckRest();

    void ShowStatus(); // Now; where there is a status line it also follows each state by itself.

private:
    void OnState(int state);
    void PostRestCheck();
    void Settle();

    ITuneHiveRemote& remote_;
    Terminal& terminal_;
    Rules rules_;
    std::function<void(int)> quit_;
    std::function<void()> onSettled_;
    String opening_; // What is being opened and hasn't played yet.
    bool hasPlayed_ = false;
    bool hasRested_ = false;
    bool hasQuit_ = false;
    LifeToken life_;
};

} // namespace kivo::host
