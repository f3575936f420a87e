#pragma once

#include "shell/contracts/base/Export.h"
#include "shell/contracts/framework/Timers.h"

#include <cstdint>
#include <functional>
#include <memory>

namespace kivo {

// The timers behind SetTimer and KillTimer: a list of due times over a clock. Whoever runs an event
// loop installs the hook and calls RunDue when it said so; a test turns a clock of its own and
// calls RunDue. Thread: user interface.
class KIVO_API TimerService {
public:
    using Clock = std::function<std::int64_t()>;                // Milliseconds; never goes back.
    using Arm = std::function<void(std::int64_t milliseconds)>; // Until RunDue is due; -1: never.

    static constexpr unsigned kShortest = 10; // Periods below it count as it, 0 included.

    // The process's own, behind SetTimer and KillTimer.
    [[nodiscard]] static TimerService& Get();

    TimerService();
    TimerService(const TimerService&) = delete;
    TimerService& operator=(const TimerService&) = delete;
    ~TimerService();

    void SetClock(Clock clock); // An empty one restores the system's. Running timers start anew.
    void SetArm(Arm arm);       // Called at once, and whenever the next due time changes.

    TimerId Start(unsigned periodMs, TimerProc callback); // 0: there is no callback.
    int Kill(TimerId handle);                             // 1: it ran and is gone.

    // Runs each timer that is due, once however often it was missed, the earliest first. A callback
    // may start and kill any timer; what it starts is not due in the same call.
    void RunDue();

    [[nodiscard]] std::int64_t GetNextDelay() const; // As the hook is told.

    // Kills the timers whose callback lies in the library that `address` lies in.
    void KillOfLibrary(const void* address);

private:
    struct Impl;
    std::unique_ptr<Impl> impl_;
};

} // namespace kivo
