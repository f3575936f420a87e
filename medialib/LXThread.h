#pragma once

#include "shell/contracts/framework/Threads.h"

#include <memory>

namespace kivo::tunehive {

// A piece of work that runs beside the user interface: on the library's one worker, which takes
// what is urgent first. It is made suspended, so that a derived class can finish its own fields.
class LXThread : public IJob {
public:
    LXThread() = default;
    LXThread(const LXThread&) = delete;
    LXThread& operator=(const LXThread&) = delete;
    ~LXThread() override = default;

    // One slice of the work, on the worker's thread. True: there is more. Nothing here.
    virtual bool Run();

    // Gives the object to the worker, which runs it to its end and destroys it. Without a worker,
    // or when that takes nothing any more, it is destroyed unrun. Thread: any.
    static void
    ResumeThread(std::unique_ptr<LXThread> thread, CWorker* worker, JobPriority priority);

private:
    bool RunSlice() final { return Run(); }
};

} // namespace kivo::tunehive
