#include "platform/engine/Clock.h"
#include "platform/engine/Engine.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <map>

namespace kivo {

namespace {

constexpr double kEndGuard = 0.2; // A seek to the very end would end the track at once.
constexpr double kFarthest = 1e9; // Seconds, where no length says how far it goes.
constexpr unsigned kTickPeriod = 500;

// Whose a timer is: its callback is told no more than its handle.
std::map<TimerId, Engine*>& GetTimers()
{
    static std::map<TimerId, Engine*> timers;
    return timers;
}

} // namespace

void Engine::SetURL(const String& url)
{
    EndCurrent();
    url_ = url;
    facts_ = {};
    tags_ = {};
    duration_ = 0;
    width_ = 0;
    height_ = 0;
    if (autoStart_) {
        Begin();
        return;
    }
    StopCore();
    if (ClassifyAddress(url_).kind == AddressKind::Missing)
        Report(EngineState::Transitioning);
    Report(EngineState::Ready);
}

void Engine::Play()
{
    if (stage_ == Stage::Resting) {
        EndCurrent();
        if (!url_.empty())
            Begin();
        return;
    }
    if (!isPaused_)
        return;
    isPaused_ = false;
    SetPaused(/*on=*/false);
    HoldPosition(position_);
    if (IsGapless())
        Ask(CoreProperty::EndReached, "eof-reached"); // A change while paused isn't always told.
    if (stage_ != Stage::Started)
        return;
    watchdog_.Restart(GetSteadyTime());
    SetTimerRuns(/*on=*/true);
    Report(isCachePaused_ ? EngineState::Buffering : EngineState::Playing);
}

void Engine::Pause()
{
    if (stage_ == Stage::Resting || isPaused_)
        return;
    HoldPosition(GetPosition());
    isPaused_ = true;
    SetPaused(/*on=*/true);
    if (stage_ == Stage::Started)
        RestPaused();
}

void Engine::Stop()
{
    // A listener that is told of the end tidies up; anybody else wants silence now.
    if (!isEndDelivered_)
        tailEnd_ = 0;
    EndCurrent();
    StopCore();
}

void Engine::SetPosition(double seconds)
{
    if (stage_ != Stage::Started || !facts_.seekable || std::isnan(seconds))
        return;
    // A stream without a length can move within what it has kept, as far as the core allows.
    const double last = duration_ > 0 ? std::max(0.0, duration_ - kEndGuard) : kFarthest;
    HoldPosition(std::clamp(seconds, 0.0, last));
    stale_ = asked_;
    watchdog_.Restart(GetSteadyTime());
    std::array<char, 32> text{};
    const auto [end, error] = std::to_chars(
        text.data(), text.data() + text.size(), position_, std::chars_format::fixed, 3);
    if (error == std::errc())
        SendCommand(GetCore(), 0, {"seek", std::string(text.data(), end), "absolute+exact"});
}

// From here on nothing of the current address is told any more.
void Engine::EndCurrent()
{
    states_.Drop();
    if (states_.EndsActive())
        Report(EngineState::Stopped);
    Rest();
}

void Engine::Rest()
{
    stage_ = Stage::Resting;
    entry_ = 0;
    ++serial_;
    isPaused_ = false;
    isCachePaused_ = false;
    isStalled_ = false;
    isLoadHeld_ = false;
    position_ = 0;
    toldPosition_ = 0;
    buffering_ = 0;
    SetTimerRuns(/*on=*/false);
    parts_->GetRender().SetOpen(/*open=*/false);
}

// After Rest, which ends the clock that a tail needs.
void Engine::StopCore()
{
    if (!isCoreBusy_)
        return;
    if (IsTailLeft()) {
        SetTimerRuns(/*on=*/true); // Which stops it then.
        return;
    }
    isCoreBusy_ = false;
    isAtEnd_ = false;
    SendCommand(GetCore(), 0, {"stop"});
}

void Engine::Begin()
{
    address_ = ClassifyAddress(url_);
    Report(EngineState::Transitioning);
    stage_ = Stage::Opening;
    switch (address_.kind) {
    case AddressKind::LocalFile:
    case AddressKind::Network: LoadInTurn(); break;
    case AddressKind::NotPlayable: Fail(); break;
    case AddressKind::Missing:
        Rest();
        StopCore();
        Report(EngineState::Ready);
        break;
    }
}

bool Engine::IsTailLeft() const
{
    return GetSteadyTime() < tailEnd_;
}

// A file that follows at once is joined to the one that the core still holds; everything else waits
// until that has been heard to its end.
void Engine::LoadInTurn()
{
    isLoadHeld_ = IsTailLeft() && !(isAtEnd_ && address_.kind == AddressKind::LocalFile);
    if (isLoadHeld_)
        SetTimerRuns(/*on=*/true);
    else
        Load(address_.target);
}

void Engine::Load(const std::string& target)
{
    isAppended_ = isAtEnd_ && IsTailLeft();
    isAtEnd_ = false;
    isLoadHeld_ = false;
    target_ = target;
    sound_.Prepare(GetCore());
    SetPaused(isPaused_);
    ++serial_;
    entry_ = 0;
    isCoreBusy_ = true;
    SendCommand(GetCore(), serial_, {"loadfile", target_, isAppended_ ? "append" : "replace"});
    watchdog_.Restart(GetSteadyTime());
    SetTimerRuns(/*on=*/true);
}

void Engine::SetPaused(bool on)
{
    if (isCorePaused_ == on)
        return;
    isCorePaused_ = on;
    WriteFlag(GetCore(), "pause", on);
}

void Engine::RestPaused()
{
    isStalled_ = false;
    SetTimerRuns(/*on=*/false);
    Report(EngineState::Paused);
}

// The address could not be played, or not any longer.
void Engine::Fail()
{
    const bool hasPlayed = stage_ == Stage::Started;
    const std::string secondTry = hasPlayed ? std::string() : GetSecondTry(target_);
    if (!secondTry.empty() && address_.kind == AddressKind::Network) {
        Load(secondTry);
        return;
    }
    Rest();
    StopCore();
    const bool isLocal = address_.kind != AddressKind::Network;
    // A file that fails again and again would else be tried thousands of times a minute by whoever
    // repeats it.
    const bool isRepeated = isLocal && !hasPlayed && !failedFiles_.insert(url_).second;
    Report(isRepeated ? EngineState::Stopped : EngineState::Ended);
}

void Engine::Finish()
{
    isAtEnd_ = false;
    Rest();
    StopCore();
    Report(EngineState::Ended);
}

void Engine::Report(EngineState state)
{
    states_.Push(state);
    if (states_.IsEmpty() || isDeliveryPosted_)
        return;
    isDeliveryPosted_ = true;
    mailbox_.Post(CoreMessage::Deliver);
}

// One state a turn of the event loop, and none while the listener is still busy with the last.
void Engine::Deliver()
{
    const LifeWatch life = life_.Watch();
    if (const auto state = states_.Take()) {
        isEndDelivered_ = *state == EngineState::Ended;
        stateListener_(static_cast<int>(*state));
    }
    if (!life.IsAlive())
        return;
    isEndDelivered_ = false;
    isDeliveryPosted_ = !states_.IsEmpty();
    if (isDeliveryPosted_)
        mailbox_.Post(CoreMessage::Deliver);
}

void Engine::SetTimerRuns(bool on)
{
    if (on == (timer_ != 0))
        return;
    if (on) {
        timer_ = SetTimer(0, 0, kTickPeriod, &Engine::OnTimer);
        GetTimers()[timer_] = this;
    } else {
        KillTimer(0, timer_);
        GetTimers().erase(timer_);
        timer_ = 0;
    }
}

void Engine::OnTimer(HWND /*window*/, unsigned /*message*/, TimerId timer, std::uint32_t /*time*/)
{
    const auto found = GetTimers().find(timer);
    if (found != GetTimers().end())
        found->second->OnTick();
}

void Engine::OnTick()
{
    TakeEvents(); // What the core has told already counts.
    if (tailEnd_ != 0)
        OnTailTick();
    if (stage_ == Stage::Resting || isLoadHeld_)
        return;
    sound_.Check(GetCore());
    Watchdog::Phase phase = Watchdog::Phase::Opening;
    if (stage_ == Stage::Started && isPaused_)
        phase = Watchdog::Phase::Resting;
    else if (stage_ == Stage::Started)
        phase = isCachePaused_ ? Watchdog::Phase::Buffering : Watchdog::Phase::Playing;
    if (stage_ == Stage::Started) {
        AskPosition();
        Ask(CoreProperty::Bitrate, "audio-bitrate");
    }
    if (phase == Watchdog::Phase::Buffering)
        Ask(CoreProperty::CachePosition, "demuxer-cache-time");
    else if (phase == Watchdog::Phase::Playing && facts_.hasVideo)
        Ask(CoreProperty::AudioPosition, "audio-pts");
    OnVerdict(watchdog_.Check(GetSteadyTime(), phase));
}

void Engine::OnTailTick()
{
    if (IsTailLeft())
        return;
    tailEnd_ = 0;
    if (isLoadHeld_) {
        Load(address_.target);
    } else if (stage_ == Stage::Resting) {
        StopCore();
        SetTimerRuns(/*on=*/false);
    } else if (stage_ == Stage::Opening && isAppended_ && !IsCurrent()) {
        Load(target_); // The core didn't go on by itself.
    }
}

void Engine::Ask(CoreProperty property, const char* name)
{
    mpv_get_property_async(GetCore(), static_cast<std::uint64_t>(property), name, MPV_FORMAT_NODE);
}

void Engine::AskPosition()
{
    ++asked_;
    Ask(CoreProperty::Position, "time-pos");
}

void Engine::OnVerdict(Watchdog::Verdict verdict)
{
    switch (verdict) {
    case Watchdog::Verdict::Fine: break;
    case Watchdog::Verdict::Stalled:
        HoldPosition(toldPosition_);
        isStalled_ = true;
        Report(EngineState::Buffering);
        break;
    case Watchdog::Verdict::Dead: Fail(); break;
    }
}

} // namespace kivo
