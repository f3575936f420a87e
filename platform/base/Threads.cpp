#include "shell/contracts/framework/Threads.h"

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <map>
#include <mutex>
#include <system_error>
#include <thread>

namespace kivo {
namespace {

struct SuspendedThread {
    ThreadEntry entry = nullptr; // Null: it has been resumed.
    void* argument = nullptr;
};

// Never destroyed: a thread that was given up may end after `main`.
struct ThreadRegistry {
    std::mutex mutex;
    std::condition_variable ended;
    std::map<ThreadHandle, SuspendedThread> threads;
    ThreadHandle last = 0;
    int running = 0;

    void Begin()
    {
        const std::lock_guard lock(mutex);
        ++running;
    }
    void End()
    {
        const std::lock_guard lock(mutex);
        --running;
        ended.notify_all();
    }
};

ThreadRegistry& Registry()
{
    static auto* registry = new ThreadRegistry;
    return *registry;
}

} // namespace

ThreadId GetCurrentThreadId()
{
    static std::atomic<ThreadId> last{0};
    thread_local const ThreadId id = ++last;
    return id;
}

struct CriticalSection::Impl {
    std::mutex mutex;
};

CriticalSection::CriticalSection()
    : impl_(std::make_unique<Impl>())
{
}

CriticalSection::~CriticalSection() = default;

void CriticalSection::Enter()
{
    impl_->mutex.lock();
}

void CriticalSection::Leave()
{
    impl_->mutex.unlock();
}

ThreadHandle CreateSuspendedThread(ThreadEntry entry, void* argument)
{
    if (entry == nullptr)
        return 0;
    ThreadRegistry& registry = Registry();
    const std::lock_guard lock(registry.mutex);
    registry.threads[++registry.last] = {entry, argument};
    return registry.last;
}

int ResumeThread(ThreadHandle thread)
{
    ThreadRegistry& registry = Registry();
    SuspendedThread start;
    {
        const std::lock_guard lock(registry.mutex);
        const auto found = registry.threads.find(thread);
        if (found == registry.threads.end() || found->second.entry == nullptr)
            return 0;
        std::swap(start, found->second);
    }
    registry.Begin();
    try {
        std::thread([start] {
            start.entry(start.argument);
            Registry().End();
        }).detach();
    } catch (const std::system_error&) {
        registry.End();
        return 0;
    }
    return 1;
}

int CloseThreadHandle(ThreadHandle thread)
{
    ThreadRegistry& registry = Registry();
    const std::lock_guard lock(registry.mutex);
    return registry.threads.erase(thread) != 0 ? 1 : 0;
}

bool WaitForAllThreads(int timeoutMs)
{
    ThreadRegistry& registry = Registry();
    std::unique_lock lock(registry.mutex);
    return registry.ended.wait_for(
        lock, std::chrono::milliseconds(timeoutMs), [&registry] { return registry.running == 0; });
}

} // namespace kivo
