#pragma once

#include "bench/support/Measure.h"
#include "platform/engine/Core.h"

#include <algorithm>
#include <cstdlib>
#include <string>

namespace kivo::bench {

// The core with the engine's options and without a sound device: what the engine is held against.
class BareCore {
public:
    BareCore()
        : core_(MakeCore({.silent = true, .samplePath = {}, .volume = {}}))
    {
    }

    // From the command to the first sound, in seconds. Ends the program when it doesn't come.
    double Play(const std::string& path)
    {
        const double start = GetSeconds();
        SendCommand(core_.get(), 0, {"loadfile", path});
        WaitFor(MPV_EVENT_PLAYBACK_RESTART);
        return GetSeconds() - start;
    }

    void Stop()
    {
        SendCommand(core_.get(), 0, {"stop"});
        WaitFor(MPV_EVENT_IDLE);
    }

    // Takes what the core tells, for so long.
    void Pass(double seconds)
    {
        const double end = GetSeconds() + seconds;
        while (GetSeconds() < end)
            mpv_wait_event(core_.get(), std::max(end - GetSeconds(), 0.0));
    }

private:
    void WaitFor(mpv_event_id id)
    {
        constexpr double kLongestWait = 10; // Seconds.
        const double start = GetSeconds();
        while (mpv_wait_event(core_.get(), kLongestWait)->event_id != id)
            if (GetSeconds() - start > kLongestWait)
                std::abort();
    }

    CoreHandle core_;
};

} // namespace kivo::bench
