#include "medialib/LXThread.h"

#include <utility>

namespace kivo::tunehive {

bool LXThread::Run()
{
    return false;
}

void LXThread::ResumeThread(std::unique_ptr<LXThread> thread, CWorker* worker, JobPriority priority)
{
    if (worker != nullptr)
        worker->Post(priority, std::move(thread));
}

} // namespace kivo::tunehive
