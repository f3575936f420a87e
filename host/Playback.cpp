#include "host/Playback.h"

#include "host/CallLater.h"
#include "host/Terminal.h"
#include "shell/contracts/desktop/TuneHiveRemote.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <string>
#include <string_view>
#include <utility>

namespace kivo::host {

namespace {

enum State : int {
    kPaused = 2,
    kPlaying = 3,
    kBuffering = 6,
    kEnded = 8,
    kOpening = 9,
    kReady = 10
};

struct StateWord {
    int state;
    std::string_view word;
};
constexpr std::array kStateWords{
    StateWord{kPaused,    "Paused"   },
    StateWord{kPlaying,   "Playing"  },
    StateWord{kBuffering, "Buffering"},
    StateWord{kOpening,   "Opening"  },
};

std::string ComposeTime(double seconds)
{
    constexpr double kLongest = 359999.0; // 99:59:59
    const auto whole = static_cast<int>(std::clamp(std::floor(seconds), 0.0, kLongest));
    std::array<char, 16> text{};
    if (whole >= 3600)
        std::snprintf(
            text.data(), text.size(), "%d:%02d:%02d", whole / 3600, whole / 60 % 60, whole % 60);
    else
        std::snprintf(text.data(), text.size(), "%d:%02d", whole / 60, whole % 60);
    return text.data();
}

} // namespace

std::string ComposeStatus(int state, const String& title, double position, double length)
{
    const auto* const word =
        std::find_if(kStateWords.begin(), kStateWords.end(), [state](const StateWord& entry) {
            return entry.state == state;
        });
    if (word == kStateWords.end())
        return {};
    std::string line(word->word);
    line += ": " + ForTerminal(title);
    if (position >= 0 && state != kOpening) {
        line += "  " + ComposeTime(position);
        if (length >= 1)
            line += " / " + ComposeTime(length);
    }
    return line;
}

Playback::Playback(ITuneHiveRemote& remote,
                   Terminal& terminal,
                   const Rules& rules,
                   std::function<void(int)> quit)
    : remote_(remote)
    , terminal_(terminal)
    , rules_(rules)
    , quit_(std::move(quit))
{
    remote_.AddListener(Delegate<int>(this, &Playback::OnState));
}

Playback::~Playback()
{
    remote_.RemoveListener(Delegate<int>(this, &Playback::OnState));
}

void Playback::Open(const std::vector<String>& items)
{
    if (!items.empty())
        remote_.Open(items, u"playing", /*playFirst=*/true);
    PostRestCheck();
}

void Playback::CheckRest()
{
    if (hasQuit_ || !remote_.IsAtRest())
        return;
    hasRested_ = true;
    const LifeWatch life = life_.Watch();
    Settle();
    if (!life.IsAlive() || !(rules_.quitsAtEnd || (rules_.quitsIfNothingPlayed && !hasPlayed_)))
        return;
    hasQuit_ = true;
    if (!hasPlayed_)
        terminal_.PrintLine("nothing could be played");
    quit_(hasPlayed_ ? 0 : 1);
}

void Playback::ShowStatus()
{
    if (!rules_.showsStatus)
        return;
    // Elsewhere than on a terminal each change is a line, so the time isn't told there.
    const bool tellsTime = terminal_.IsTerminal();
    const String title = remote_.GetTitle();
    terminal_.ShowStatus(ComposeStatus(remote_.GetState(),
                                       title.empty() ? remote_.GetPath() : title,
                                       tellsTime ? remote_.GetPosition() : -1.0,
                                       remote_.GetLength()));
}

void Playback::OnState(int state)
{
    if (state == kOpening) {
        opening_ = remote_.GetPath();
    } else if (state == kPlaying) {
        opening_.clear();
        hasPlayed_ = true;
        Settle();
    } else if ((state == kEnded || state == kReady) && !opening_.empty()) {
        // It came to its end without having begun.
        terminal_.PrintLine(ForTerminal(std::exchange(opening_, String())) + " can't be played");
    }
    ShowStatus();
    PostRestCheck();
}

// Posted: an address that this very state leads to is set by an event before it.
void Playback::PostRestCheck()
{
    CallLater(life_.Watch(), [this] { CheckRest(); });
}

void Playback::Settle()
{
    if (const auto listener = std::exchange(onSettled_, nullptr))
        listener();
}

} // namespace kivo::host
