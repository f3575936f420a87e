#include "host/StopSignals.h"

#include <QSocketNotifier>
#include <sys/eventfd.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdint>
#include <utility>

namespace kivo::host {

namespace {

constexpr std::array kSignals{SIGTERM, SIGINT, SIGHUP};

std::atomic<int> wakeDescriptor = -1;

// Only what may be done inside a signal.
extern "C" void OnStopSignal(int /*number*/)
{
    const int before = errno;
    const std::uint64_t one = 1;
    static_cast<void>(!write(wakeDescriptor, &one, sizeof one));
    errno = before;
}

bool IsIgnored(int number)
{
    struct sigaction action {};
    return sigaction(number, nullptr, &action) == 0 && action.sa_handler == SIG_IGN;
}

void SetHandler(int number, void (*handler)(int))
{
    struct sigaction action {};
    action.sa_handler = handler;
    action.sa_flags = SA_RESTART;
    sigaction(number, &action, nullptr);
}

} // namespace

struct StopSignals::Impl {
    explicit Impl(std::function<void()> stopper)
        : stop(std::move(stopper))
        , descriptor(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK))
        , notifier(descriptor, QSocketNotifier::Read)
    {
        wakeDescriptor = descriptor;
        QObject::connect(&notifier, &QSocketNotifier::activated, [this] {
            std::uint64_t count = 0;
            if (read(descriptor, &count, sizeof count) > 0)
                stop();
        });
    }

    std::function<void()> stop;
    int descriptor;
    QSocketNotifier notifier;
};

StopSignals::StopSignals(std::function<void()> stop)
    : impl_(std::make_unique<Impl>(std::move(stop)))
{
    SetHandler(SIGPIPE, SIG_IGN);
    for (const int number : kSignals) {
        if (number != SIGHUP || !IsIgnored(number))
            SetHandler(number, OnStopSignal);
    }
}

StopSignals::~StopSignals()
{
    for (const int number : kSignals) {
        if (!IsIgnored(number))
            SetHandler(number, SIG_DFL);
    }
    impl_->notifier.setEnabled(false);
    close(wakeDescriptor.exchange(-1));
}

} // namespace kivo::host
