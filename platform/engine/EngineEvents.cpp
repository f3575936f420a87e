#include "platform/engine/Clock.h"
#include "platform/engine/Engine.h"
#include "platform/engine/SampleFormat.h"

#include <algorithm>

namespace kivo {

namespace {

constexpr double kLongestPicture = 30; // Seconds that one picture may stand.
constexpr double kLargestPicture = 32'768;

int ToPixels(double number)
{
    return number > 0 ? static_cast<int>(std::min(number, kLargestPicture)) : 0;
}

std::int64_t FindEntry(const mpv_node& reply)
{
    return static_cast<std::int64_t>(GetNumber(FindInMap(reply, "playlist_entry_id"), 0));
}

} // namespace

void Engine::OnMessage(unsigned message)
{
    switch (static_cast<CoreMessage>(message)) {
    case CoreMessage::Events:
        parts_->ExpectEvents();
        TakeEvents();
        break;
    case CoreMessage::Deliver: Deliver(); break;
    case CoreMessage::Frame: frameListener_(); break;
    }
}

void Engine::TakeEvents()
{
    for (;;) {
        const mpv_event* const event = mpv_wait_event(GetCore(), /*timeout=*/0);
        if (event->event_id == MPV_EVENT_NONE)
            return;
        OnEvent(*event);
    }
}

void Engine::OnEvent(const mpv_event& event)
{
    switch (event.event_id) {
    case MPV_EVENT_COMMAND_REPLY: OnCommandReply(event); break;
    case MPV_EVENT_START_FILE:
        OnStartFile(static_cast<const mpv_event_start_file*>(event.data)->playlist_entry_id);
        break;
    case MPV_EVENT_HOOK: OnHook(static_cast<const mpv_event_hook*>(event.data)->id); break;
    case MPV_EVENT_FILE_LOADED: OnFileLoaded(); break;
    case MPV_EVENT_PLAYBACK_RESTART: OnRestart(); break;
    case MPV_EVENT_END_FILE: OnEndFile(*static_cast<const mpv_event_end_file*>(event.data)); break;
    case MPV_EVENT_PROPERTY_CHANGE:
    case MPV_EVENT_GET_PROPERTY_REPLY: OnAnswer(event); break;
    case MPV_EVENT_SHUTDOWN:
        if (stage_ != Stage::Resting)
            Finish();
        break;
    default: break;
    }
}

void Engine::OnCommandReply(const mpv_event& event)
{
    if (event.reply_userdata != serial_ || stage_ != Stage::Opening || entry_ != 0)
        return;
    if (event.error < 0)
        Fail();
    else
        entry_ = FindEntry(static_cast<const mpv_event_command*>(event.data)->result);
}

void Engine::OnStartFile(std::int64_t entry)
{
    eventEntry_ = entry;
    width_ = 0;
    height_ = 0;
}

// The core has read the head of the medium and waits; it is never left waiting.
void Engine::OnHook(std::uint64_t id)
{
    const bool isOurs = IsCurrent() && stage_ == Stage::Opening;
    if (isOurs)
        ReadFacts();
    mpv_hook_continue(GetCore(), id);
    if (isOurs && !facts_.hasAudio && !facts_.hasVideo)
        Fail();
}

void Engine::ReadFacts()
{
    facts_ = ReadMediaFacts(GetCore());
    duration_ = GetTellableLength(facts_, address_.kind == AddressKind::Network);
    const double standing = facts_.hasVideo ? std::min(facts_.frameSeconds, kLongestPicture) : 0;
    watchdog_.SetPatience(static_cast<std::int64_t>(1000 * standing));
    if (WaveFile* const wave = parts_->GetWave())
        PrepareSamples(GetCore(), facts_, *wave);
}

void Engine::OnFileLoaded()
{
    if (!IsCurrent() || stage_ != Stage::Opening || address_.kind != AddressKind::Network)
        return;
    Report(EngineState::Buffering);
    // A listener takes over the length only when buffering wasn't the last that it heard of.
    if (address_.isBroadcast || duration_ > 0)
        Report(EngineState::Waiting);
}

void Engine::OnRestart()
{
    if (!IsCurrent())
        return;
    watchdog_.Restart(GetSteadyTime());
    AskPosition();
    if (IsGapless())
        Ask(CoreProperty::EndReached, "eof-reached"); // It may have been there before.
    if (stage_ != Stage::Opening)
        return; // A seek.
    LeaveGapless();
    stage_ = Stage::Started;
    HoldPosition(position_);
    failedFiles_.clear();
    // Not earlier: until then the core may draw the last picture of the medium before.
    parts_->GetRender().SetOpen(facts_.hasVideo);
    Report(EngineState::Playing);
    if (isPaused_)
        RestPaused();
    else if (isCachePaused_)
        Report(EngineState::Buffering);
}

void Engine::OnEndFile(const mpv_event_end_file& end)
{
    if (entry_ == 0 || end.playlist_entry_id != entry_)
        return;
    // A redirect is a play list that was found after all: the core goes on to what stands in it.
    isCoreBusy_ = end.reason == MPV_END_FILE_REASON_REDIRECT;
    if (stage_ == Stage::Started && !isCoreBusy_)
        Finish();
    else
        Fail();
}

// The last of the sound is in the device's buffer.
void Engine::OnEndReached(bool on)
{
    constexpr std::int64_t kLongestTail = 600; // Milliseconds; more than devices buffer.
    if (!on || stage_ != Stage::Started || isPaused_)
        return;
    tailEnd_ = GetSteadyTime() + kLongestTail;
    isAtEnd_ = true;
    Rest();
    SetTimerRuns(/*on=*/true); // For the end of the tail.
    Report(EngineState::Ended);
}

// Once its sound has begun: earlier, it would cut off the tail of the track before.
void Engine::LeaveGapless()
{
    if (!IsGapless())
        return;
    if (isAppended_)
        SendCommand(GetCore(), 0, {"playlist-clear"}); // What has been played.
    if (address_.kind == AddressKind::LocalFile && facts_.hasAudio && !facts_.hasVideo)
        return;
    // The end of a picture or of a stream is its real end.
    WriteText(GetCore(), "file-local-options/keep-open", "no");
    WriteText(GetCore(), "file-local-options/gapless-audio", "no");
}

void Engine::OnAnswer(const mpv_event& event)
{
    const auto* const property = static_cast<const mpv_event_property*>(event.data);
    const auto id = static_cast<CoreProperty>(event.reply_userdata);
    if (id == CoreProperty::Position && ++answered_ <= stale_)
        return; // Where it stood before the seek.
    if (event.error < 0 || property == nullptr)
        return;
    static constexpr mpv_node kNone = {};
    const bool isThere = property->format == MPV_FORMAT_NODE;
    const mpv_node& value = isThere ? *static_cast<const mpv_node*>(property->data) : kNone;
    if (id == CoreProperty::Output)
        sound_.OnCurrent(GetText(&value));
    else if (IsCurrent())
        OnMediumAnswer(id, value);
}

void Engine::OnMediumAnswer(CoreProperty id, const mpv_node& value)
{
    switch (id) {
    case CoreProperty::CachePaused: OnCachePaused(GetFlag(&value)); break;
    case CoreProperty::EndReached: OnEndReached(GetFlag(&value)); break;
    case CoreProperty::Position: OnPosition(GetNumber(&value, position_)); break;
    case CoreProperty::AudioPosition:
        NoteChange(audioPosition_, GetNumber(&value, audioPosition_));
        break;
    case CoreProperty::CachePosition:
        NoteChange(cachePosition_, GetNumber(&value, cachePosition_));
        break;
    case CoreProperty::Buffering:
        buffering_ = static_cast<int>(std::clamp(GetNumber(&value, 0), 0.0, 100.0));
        break;
    case CoreProperty::Width: width_ = ToPixels(GetNumber(&value, 0)); break;
    case CoreProperty::Height: height_ = ToPixels(GetNumber(&value, 0)); break;
    case CoreProperty::Bitrate: tags_.bitrate = GetNumber(&value, 0); break;
    case CoreProperty::Title: tags_.title = GetText(&value); break;
    case CoreProperty::Metadata:
        tags_.author = FindTag(value, "artist");
        tags_.album = FindTag(value, "album");
        tags_.station = FindTag(value, "icy-name");
        break;
    default: break;
    }
}

void Engine::OnCachePaused(bool on)
{
    if (isCachePaused_ == on)
        return;
    HoldPosition(GetPosition());
    isCachePaused_ = on;
    if (stage_ != Stage::Started || isPaused_)
        return;
    isStalled_ = false;
    watchdog_.Restart(GetSteadyTime());
    Report(on ? EngineState::Buffering : EngineState::Playing);
}

void Engine::OnPosition(double seconds)
{
    HoldPosition(std::max(0.0, seconds));
    if (NoteChange(toldPosition_, position_) && isStalled_) {
        isStalled_ = false;
        if (!isCachePaused_)
            Report(EngineState::Playing);
    }
}

void Engine::HoldPosition(double seconds)
{
    position_ = seconds;
    positionTime_ = GetSteadyTime();
}

bool Engine::NoteChange(double& kept, double now)
{
    if (kept == now)
        return false;
    kept = now;
    watchdog_.NoteProgress(GetSteadyTime());
    return true;
}

} // namespace kivo
