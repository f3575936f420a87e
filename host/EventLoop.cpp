#include "host/EventLoop.h"

#include "platform/base/PostQueue.h"
#include "platform/base/TimerService.h"
#include "shell/contracts/framework/Exception.h"

#include <QSocketNotifier>
#include <QTimer>

#include <algorithm>
#include <cstdint>
#include <limits>

namespace kivo::host {

namespace {

// A record that can't be packed ends as an exception of the platform's; it must not pass through
// the event loop.
template <class Work>
void Guard(Work work)
{
    try {
        work();
    } catch (CSimpleException* exception) {
        exception->Delete();
    }
}

} // namespace

struct EventLoop::Impl {
    Impl()
        : notifier(PostQueue::Get().GetWakeDescriptor(), QSocketNotifier::Read)
    {
        QObject::connect(&notifier, &QSocketNotifier::activated, [] {
            Guard([] { PostQueue::Get().RunWake(); });
        });
        timer.setSingleShot(true);
        timer.setTimerType(Qt::PreciseTimer); // The coarse ones lose a tick in a hundred.
        QObject::connect(
            &timer, &QTimer::timeout, [] { Guard([] { TimerService::Get().RunDue(); }); });
        TimerService::Get().SetArm([this](std::int64_t milliseconds) { Arm(milliseconds); });
    }
    Impl(const Impl&) = delete;
    Impl& operator=(const Impl&) = delete;
    ~Impl() { TimerService::Get().SetArm({}); }

    void Arm(std::int64_t milliseconds)
    {
        constexpr std::int64_t kLongest = std::numeric_limits<int>::max();
        if (milliseconds < 0)
            timer.stop();
        else
            timer.start(static_cast<int>(std::min(milliseconds, kLongest)));
    }

    QSocketNotifier notifier;
    QTimer timer;
};

EventLoop::EventLoop()
    : impl_(std::make_unique<Impl>())
{
}

EventLoop::~EventLoop() = default;

} // namespace kivo::host
