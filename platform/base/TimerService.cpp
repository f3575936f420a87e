#include "platform/base/TimerService.h"

#include "platform/base/CodeAddress.h"
#include "platform/base/OwnThread.h"

#include <algorithm>
#include <chrono>
#include <cstring>
#include <utility>
#include <vector>

namespace kivo {
namespace {

constexpr unsigned kTimerMessage = 0x0113;

std::int64_t SystemClock()
{
    using std::chrono::steady_clock;
    static const auto start = steady_clock::now();
    const auto passed = steady_clock::now() - start;
    return std::chrono::duration_cast<std::chrono::milliseconds>(passed).count();
}

struct Timer {
    TimerId handle;
    std::int64_t period;
    std::int64_t due;
    TimerProc callback;
};

} // namespace

struct TimerService::Impl {
    std::vector<Timer> timers;
    TimerId last = 0;
    Clock clock = SystemClock;
    Arm arm;
    OwnThread owner;

    [[nodiscard]] std::int64_t NextDue() const;
    Timer* FindDue(std::int64_t now, TimerId newest);
    void Rearm() const;
};

std::int64_t TimerService::Impl::NextDue() const
{
    const auto next = std::min_element(
        timers.begin(), timers.end(), [](const Timer& a, const Timer& b) { return a.due < b.due; });
    return next != timers.end() ? next->due : -1;
}

// The one that is due longest, among those that are not newer than `newest`.
Timer* TimerService::Impl::FindDue(std::int64_t now, TimerId newest)
{
    Timer* found = nullptr;
    for (Timer& timer : timers)
        if (timer.due <= now && timer.handle <= newest &&
            (found == nullptr || timer.due < found->due))
            found = &timer;
    return found;
}

void TimerService::Impl::Rearm() const
{
    if (!arm)
        return;
    const std::int64_t next = NextDue();
    arm(next < 0 ? -1 : std::max<std::int64_t>(0, next - clock()));
}

TimerService& TimerService::Get()
{
    static auto* service = new TimerService; // Never destroyed: so never too early.
    return *service;
}

TimerService::TimerService()
    : impl_(std::make_unique<Impl>())
{
}

TimerService::~TimerService() = default;

void TimerService::SetClock(Clock clock)
{
    impl_->clock = clock ? std::move(clock) : Clock(SystemClock);
    const std::int64_t now = impl_->clock();
    for (Timer& timer : impl_->timers)
        timer.due = now + timer.period;
    impl_->Rearm();
}

void TimerService::SetArm(Arm arm)
{
    impl_->arm = std::move(arm);
    impl_->Rearm();
}

TimerId TimerService::Start(unsigned periodMs, TimerProc callback)
{
    impl_->owner.Check();
    if (callback == nullptr)
        return 0;
    const std::int64_t period = std::max(periodMs, kShortest);
    const TimerId handle = ++impl_->last;
    impl_->timers.push_back({handle, period, impl_->clock() + period, callback});
    impl_->Rearm();
    return handle;
}

int TimerService::Kill(TimerId handle)
{
    impl_->owner.Check();
    const auto erased =
        std::erase_if(impl_->timers, [handle](const Timer& t) { return t.handle == handle; });
    if (erased != 0)
        impl_->Rearm();
    return erased != 0 ? 1 : 0;
}

void TimerService::RunDue()
{
    impl_->owner.Check();
    const std::int64_t now = impl_->clock();
    const TimerId newest = impl_->last;
    while (Timer* timer = impl_->FindDue(now, newest)) {
        // The next tick keeps to the beat; those that were missed are dropped.
        timer->due += ((now - timer->due) / timer->period + 1) * timer->period;
        const Timer ticked = *timer; // The callback may free the timer's place,
        impl_->Rearm();              // and run an event loop of its own.
        ticked.callback(
            /*window=*/0, kTimerMessage, ticked.handle, static_cast<std::uint32_t>(now));
    }
    impl_->Rearm();
}

std::int64_t TimerService::GetNextDelay() const
{
    const std::int64_t next = impl_->NextDue();
    return next < 0 ? -1 : std::max<std::int64_t>(0, next - impl_->clock());
}

void TimerService::KillOfLibrary(const void* address)
{
    std::erase_if(impl_->timers, [address](const Timer& timer) {
        const void* code = nullptr;
        std::memcpy(&code, &timer.callback, sizeof code);
        return IsSameLibrary(code, address);
    });
    impl_->Rearm();
}

TimerId SetTimer(HWND /*window*/, TimerId /*id*/, unsigned periodMs, TimerProc callback)
{
    return TimerService::Get().Start(periodMs, callback);
}

int KillTimer(HWND /*window*/, TimerId handle)
{
    return TimerService::Get().Kill(handle);
}

} // namespace kivo
