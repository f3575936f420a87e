#include "shell/contracts/framework/Threads.h"

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <map>
#include <mutex>
#include <system_error>
#include <thread>
#include <utility>

namespace kivo {

struct CWorker::Impl {
    // Ordered by priority, then by arrival. A job keeps its place between its slices.
    using Place = std::pair<JobPriority, std::uint64_t>;

    mutable std::mutex mutex;
    std::condition_variable changed;
    std::map<Place, std::unique_ptr<IJob>> jobs;
    std::uint64_t arrivals = 0;
    bool stopping = false;
    bool ended = true;      // No thread runs.
    bool abandoned = false; // The owner waits no more.
    std::thread thread;

    void Run();
};

void CWorker::Impl::Run()
{
    std::unique_lock lock(mutex);
    while (!abandoned) {
        changed.wait(lock, [this] { return !jobs.empty() || stopping; });
        if (jobs.empty())
            break;
        auto first = jobs.extract(jobs.begin());
        lock.unlock();
        const bool more = first.mapped()->RunSlice();
        if (!more)
            first.mapped().reset(); // Outside the lock: what it frees may post in its turn.
        lock.lock();
        if (more)
            jobs.insert(std::move(first));
    }
    ended = true;
    changed.notify_all();
}

CWorker::CWorker()
    : impl_(std::make_shared<Impl>())
{
}

CWorker::~CWorker()
{
    static_cast<void>(Stop(5000));
}

bool CWorker::Post(JobPriority priority, std::unique_ptr<IJob> job)
{
    if (!job)
        return false;
    // Declared before the lock, so that a dropped job is freed after it.
    const std::shared_ptr<Impl> impl = impl_;
    const std::lock_guard lock(impl->mutex);
    if (impl->stopping)
        return false;
    impl->jobs.emplace(Impl::Place(priority, ++impl->arrivals), std::move(job));
    if (impl->ended) {
        impl->ended = false;
        try {
            impl->thread = std::thread([impl] { impl->Run(); });
        } catch (const std::system_error&) {
            impl->ended = true; // The next job tries again.
        }
    }
    impl->changed.notify_all();
    return !impl->ended;
}

void CWorker::RequestStop()
{
    const std::lock_guard lock(impl_->mutex);
    impl_->stopping = true;
    impl_->changed.notify_all();
}

bool CWorker::IsStopping() const
{
    const std::lock_guard lock(impl_->mutex);
    return impl_->stopping;
}

bool CWorker::Stop(int timeoutMs)
{
    RequestStop();
    std::unique_lock lock(impl_->mutex);
    if (impl_->abandoned)
        return false;
    const bool ended = impl_->changed.wait_for(
        lock, std::chrono::milliseconds(timeoutMs), [this] { return impl_->ended; });
    impl_->abandoned = !ended;
    std::thread thread = std::move(impl_->thread);
    auto dropped = std::exchange(impl_->jobs, {}); // Left only when no thread could be had.
    lock.unlock();
    if (thread.joinable() && ended)
        thread.join();
    else if (thread.joinable())
        thread.detach();
    return ended;
}

} // namespace kivo
