#pragma once

#include "shell/contracts/base/Export.h"

#include <cstdint>
#include <functional>
#include <memory>

namespace kivo {

using ThreadId = std::uint64_t;

// The id of the calling thread; never 0, never given twice in a run. Thread: any.
KIVO_API ThreadId GetCurrentThreadId();

// One lock. Not recursive. Hold it by CriticalSection::Guard. Thread: any.
class KIVO_API CriticalSection {
public:
    CriticalSection();
    CriticalSection(const CriticalSection&) = delete;
    CriticalSection& operator=(const CriticalSection&) = delete;
    ~CriticalSection();

    void Enter();
    void Leave();

    class Guard {
    public:
        explicit Guard(CriticalSection& section)
            : section_(section)
        {
            section_.Enter();
        }
        Guard(const Guard&) = delete;
        Guard& operator=(const Guard&) = delete;
        ~Guard() { section_.Leave(); }

    private:
        CriticalSection& section_;
    };

private:
    struct Impl;
    std::unique_ptr<Impl> impl_;
};

// A thread by number; never given twice in a run. 0: none.
using ThreadHandle = std::uint64_t;
using ThreadEntry = unsigned (*)(void* argument); // The result is dropped.

// A thread that waits for ResumeThread. 0: there is no entry. Thread: any.
[[nodiscard]] KIVO_API ThreadHandle CreateSuspendedThread(ThreadEntry entry, void* argument);

// Lets the thread run. 1: it runs now. 0: no such handle, it ran already, or the system has no
// thread to give: then the entry never runs. Thread: any.
KIVO_API int ResumeThread(ThreadHandle thread);

// Gives the handle up; a thread that runs goes on, one that was never resumed never will. 1: done.
// 0: no such handle. Thread: any.
KIVO_API int CloseThreadHandle(ThreadHandle thread);

// Waits until every thread that was resumed has ended, at most `timeoutMs`. True: they have. False:
// some still run. Thread: any but theirs.
[[nodiscard]] KIVO_API bool WaitForAllThreads(int timeoutMs);

// Which job runs first. Lower values go first; equal ones in order of arrival.
enum class JobPriority : int { RowOnScreen = 0, FolderImport = 1, RowInBackground = 2 };

// One job of the worker. It runs on the worker's thread.
class IJob {
public:
    virtual ~IJob() = default;
    // Does a slice of the work; true: there is more, and jobs of higher priority come first.
    virtual bool RunSlice() = 0;
};

// A thread with a queue by priority: folder imports and row look-ups share one.
// Thread: Post and RequestStop any; Stop by the owner alone.
class KIVO_API CWorker {
public:
    CWorker();
    CWorker(const CWorker&) = delete;
    CWorker& operator=(const CWorker&) = delete;
    ~CWorker(); // As Stop with 5000.

    // The thread starts with the first job. True: it will run the job. False: after a stop the job
    // is dropped, unrun; where the system has no thread to give it waits for one with the next.
    bool Post(JobPriority priority, std::unique_ptr<IJob> job);

    // Jobs see it by IsStopping and finish early; waiting jobs still get their turn to give up what
    // they hold.
    void RequestStop();
    [[nodiscard]] bool IsStopping() const;

    // Requests the stop and waits at most `timeoutMs`. False: the thread hangs; it was given up and
    // leaks on purpose.
    bool Stop(int timeoutMs);

private:
    struct Impl;
    // Shared by the owner and the thread, which may outlive a stop that timed out.
    std::shared_ptr<Impl> impl_;
};

} // namespace kivo
