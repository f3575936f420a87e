#include "shell/contracts/framework/Threads.h"

#include <gtest/gtest.h>

#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <set>
#include <string>
#include <thread>
#include <vector>

namespace kivo {
namespace {

constexpr int kLong = 20000; // Milliseconds until a test counts as hung.

// A gate between threads: the one side waits until the other has opened it.
class Gate {
public:
    void Open()
    {
        const std::lock_guard lock(mutex_);
        open_ = true;
        opened_.notify_all();
    }
    bool Wait()
    {
        std::unique_lock lock(mutex_);
        return opened_.wait_for(lock, std::chrono::milliseconds(kLong), [this] { return open_; });
    }
    [[nodiscard]] bool IsOpen()
    {
        const std::lock_guard lock(mutex_);
        return open_;
    }

private:
    std::mutex mutex_;
    std::condition_variable opened_;
    bool open_ = false;
};

TEST(Threads, EachHasAnIdOfItsOwn)
{
    std::set<ThreadId> ids{0, GetCurrentThreadId(), GetCurrentThreadId()};
    for (int i = 0; i < 20; ++i)
        std::thread([&ids] { ids.insert(GetCurrentThreadId()); }).join();
    EXPECT_EQ(ids.size(), 22U); // Also when one begins after another has ended.
}

struct Suspended {
    Gate entered;
    Gate leave;

    static unsigned Run(void* self)
    {
        auto* suspended = static_cast<Suspended*>(self);
        suspended->entered.Open();
        suspended->leave.Wait();
        return 0;
    }
};

TEST(SuspendedThread, RunsOnceItIsResumedAndOutlivesItsHandle)
{
    Suspended suspended;
    const ThreadHandle thread = CreateSuspendedThread(Suspended::Run, &suspended);
    EXPECT_TRUE(WaitForAllThreads(0)); // It doesn't run yet.
    EXPECT_EQ(ResumeThread(thread), 1);
    EXPECT_EQ(ResumeThread(thread), 0); // It runs already.
    EXPECT_TRUE(suspended.entered.Wait());
    EXPECT_EQ(CloseThreadHandle(thread), 1);
    EXPECT_EQ(CloseThreadHandle(thread), 0);
    EXPECT_FALSE(WaitForAllThreads(1));
    suspended.leave.Open();
    EXPECT_TRUE(WaitForAllThreads(kLong));
}

TEST(SuspendedThread, ClosedBeforeItsStartNeverRuns)
{
    Suspended suspended;
    const ThreadHandle thread = CreateSuspendedThread(Suspended::Run, &suspended);
    EXPECT_EQ(CloseThreadHandle(thread), 1);
    EXPECT_EQ(ResumeThread(thread), 0);
    EXPECT_EQ(CreateSuspendedThread(nullptr, &suspended), 0U);
    EXPECT_TRUE(WaitForAllThreads(0));
    EXPECT_FALSE(suspended.entered.IsOpen());
}

// A job of so many slices; each tells its name.
class Job final : public IJob {
public:
    using Told = std::function<void(const char*)>;
    Job(const char* name, int slices, Told tell)
        : name_(name)
        , slices_(slices)
        , tell_(std::move(tell))
    {
    }
    ~Job() override { tell_("-"); }
    bool RunSlice() override
    {
        tell_(name_);
        return --slices_ > 0;
    }

private:
    const char* name_;
    int slices_;
    Told tell_;
};

class Worker : public testing::Test {
protected:
    // Keeps the thread in a first job until `start` opens, so that the queue fills before it runs.
    void Hold()
    {
        worker_.Post(JobPriority::RowOnScreen, MakeJob("", 1, [this](const char*) {
                         holding_.Open();
                         start_.Wait();
                     }));
        ASSERT_TRUE(holding_.Wait());
    }
    static std::unique_ptr<IJob> MakeJob(const char* name, int slices, Job::Told tell)
    {
        return std::make_unique<Job>(name, slices, std::move(tell));
    }
    void Post(JobPriority priority,
              const char* name,
              int slices = 1,
              const std::function<void()>& onSlice = {})
    {
        worker_.Post(priority, MakeJob(name, slices, [this, onSlice](const char* told) {
                         told_ += told;
                         if (onSlice)
                             onSlice();
                     }));
    }

    Gate holding_;
    Gate start_;
    std::string told_; // Written on the worker's thread; read after the stop.
    CWorker worker_;
};

TEST_F(Worker, TakesTheMostUrgentAndEqualOnesInOrder)
{
    Hold();
    Post(JobPriority::RowInBackground, "x");
    Post(JobPriority::FolderImport, "i");
    Post(JobPriority::RowOnScreen, "a");
    Post(JobPriority::RowOnScreen, "b");
    start_.Open();
    EXPECT_TRUE(worker_.Stop(kLong));
    EXPECT_EQ(told_, "a-b-i-x-");
}

TEST_F(Worker, MoreUrgentJobsComeBetweenSlicesAndNoOthers)
{
    Hold();
    bool posted = false;
    Post(JobPriority::FolderImport, "i", 3, [this, &posted] {
        if (!std::exchange(posted, true))
            Post(JobPriority::RowOnScreen, "a");
    });
    Post(JobPriority::FolderImport, "j");
    Gate done;
    worker_.Post(JobPriority::RowInBackground,
                 MakeJob("", 1, [&done](const char*) { done.Open(); }));
    start_.Open();
    EXPECT_TRUE(done.Wait());
    EXPECT_TRUE(worker_.Stop(kLong));
    EXPECT_EQ(told_, "ia-ii-j-");
}

TEST_F(Worker, AtAStopWaitingJobsGetTheirTurnAndLaterOnesAreFreedUnrun)
{
    Hold();
    Post(JobPriority::FolderImport, "i", 2);
    EXPECT_FALSE(worker_.IsStopping());
    worker_.RequestStop();
    EXPECT_TRUE(worker_.IsStopping());
    std::string late;
    worker_.Post(JobPriority::RowOnScreen,
                 MakeJob("late", 1, [&late](const char* told) { late += told; }));
    EXPECT_EQ(late, "-");
    start_.Open();
    EXPECT_TRUE(worker_.Stop(kLong));
    EXPECT_EQ(told_, "ii-");
    EXPECT_TRUE(worker_.Stop(kLong));
}

TEST_F(Worker, AJobMayPostAndFreeingOneMayToo)
{
    bool posted = false;
    Gate done;
    worker_.Post(JobPriority::FolderImport, MakeJob("", 1, [&](const char* told) {
                     if (told[0] != '-' || std::exchange(posted, true))
                         return;
                     worker_.Post(JobPriority::RowOnScreen,
                                  MakeJob("", 1, [&done](const char*) { done.Open(); }));
                 }));
    EXPECT_TRUE(done.Wait());
    EXPECT_TRUE(worker_.Stop(kLong));
}

// The thread of a dead mount: the owner goes on without it, and so may the thread afterwards.
TEST(WorkerThatHangs, IsGivenUpAfterTheTimeout)
{
    struct Hang {
        Gate entered;
        Gate leave;
        Gate freed;
    } hang;
    {
        CWorker worker;
        worker.Post(JobPriority::RowOnScreen,
                    std::make_unique<Job>("", 1, [&hang](const char* told) {
                        if (told[0] == '-') {
                            hang.freed.Open();
                            return;
                        }
                        hang.entered.Open();
                        hang.leave.Wait();
                    }));
        ASSERT_TRUE(hang.entered.Wait());
        std::string waiting;
        worker.Post(JobPriority::RowOnScreen,
                    std::make_unique<Job>("w", 1, [&](const char* told) { waiting += told; }));
        EXPECT_FALSE(worker.Stop(1));
        EXPECT_EQ(waiting, "-"); // Freed, not run: its thread won't come back for it.
    }
    hang.leave.Open();
    EXPECT_TRUE(hang.freed.Wait());
}

} // namespace
} // namespace kivo
