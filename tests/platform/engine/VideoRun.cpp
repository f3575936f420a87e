#include "tests/platform/engine/VideoRun.h"

#include "tests/platform/engine/EngineRun.h"

#include <chrono>
#include <cstdint>
#include <cstring>

namespace kivo::test {

namespace {

using Clock = std::chrono::steady_clock;

double SecondsSince(Clock::time_point start)
{
    return std::chrono::duration<double>(Clock::now() - start).count();
}

CoreSettings Silent()
{
    CoreSettings settings;
    settings.silent = true;
    return settings;
}

} // namespace

VideoRun::VideoRun(int width, int height)
    : width_(width)
    , height_(height)
    , core_(MakeCore(Silent()))
    , thread_(core_.get(), [this] {
        isWaiting_ = true;
        isWaiting_.notify_one();
    })
{
    SetVisible(true);
}

bool VideoRun::Start(const std::string& name)
{
    SendCommand(core_.get(), 0, {"loadfile", GetMediaPath(name), "replace"});
    const Clock::time_point start = Clock::now();
    while (mpv_wait_event(core_.get(), /*timeout=*/1)->event_id != MPV_EVENT_PLAYBACK_RESTART)
        if (SecondsSince(start) > 20)
            return false;
    thread_.SetOpen(true);
    return Watch(0.5).shown > 0;
}

VideoRun::Count VideoRun::Watch(double seconds)
{
    Count count;
    const std::int64_t before = GetDropped();
    const Clock::time_point start = Clock::now();
    while (SecondsSince(start) < seconds) {
        // Also keeps the core's queue of events empty; it wakes more often than pictures come.
        mpv_wait_event(core_.get(), /*timeout=*/0.002);
        if (!isWaiting_.exchange(false))
            continue;
        const bool isPainted = thread_.PaintFrame([this](const VideoFrame& frame) {
            const auto size =
                static_cast<std::size_t>(frame.stride) * static_cast<std::size_t>(frame.height);
            window_.resize(size);
            std::memcpy(window_.data(), frame.bits, size);
        });
        count.shown += isPainted ? 1 : 0;
    }
    count.seconds = SecondsSince(start);
    count.dropped = GetDropped() - before;
    return count;
}

void VideoRun::SetVisible(bool visible)
{
    thread_.SetSurface(width_, height_, visible);
}

std::int64_t VideoRun::GetDropped() const
{
    std::int64_t all = 0;
    for (const char* const name : {"frame-drop-count", "decoder-frame-drop-count"}) {
        std::int64_t number = 0;
        if (mpv_get_property(core_.get(), name, MPV_FORMAT_INT64, &number) >= 0)
            all += number;
    }
    return all;
}

} // namespace kivo::test
