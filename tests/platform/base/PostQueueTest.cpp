#include "platform/base/PostQueue.h"

#include <gtest/gtest.h>
#include <poll.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <functional>
#include <numeric>
#include <thread>
#include <vector>

namespace kivo {
namespace {

using Ran = std::vector<int>;

// Counts how many events exist, and runs what it was given.
class Event final : public ISDKEvent {
public:
    explicit Event(std::function<void()> run)
        : run_(std::move(run))
    {
        ++alive;
    }
    void Execute() override { run_(); }
    void Release() override { delete this; }

    static std::atomic<int> alive;

private:
    ~Event() { --alive; }

    std::function<void()> run_;
};
std::atomic<int> Event::alive = 0;

bool IsReadable(const PostQueue& queue)
{
    pollfd wake = {queue.GetWakeDescriptor(), POLLIN, 0};
    return poll(&wake, 1, 0) == 1;
}

std::atomic<int> disposed = 0;

void Dispose(WPARAM wParam, LPARAM lParam)
{
    disposed += static_cast<int>(wParam) + static_cast<int>(lParam);
}

class Window final : public CWnd {
public:
    LPARAM WindowProc(unsigned message, WPARAM wParam, LPARAM lParam) override
    {
        ran.push_back(static_cast<int>(wParam));
        EXPECT_EQ(lParam, -1);
        EXPECT_EQ(message, 11014U);
        if (onMessage)
            onMessage();
        return 0;
    }

    Ran ran;
    std::function<void()> onMessage;
};

class PostQueueTest : public testing::Test {
protected:
    void TearDown() override
    {
        queue_.Close();
        EXPECT_EQ(Event::alive, 0); // Whatever the road, each event is freed, once.
    }

    void Post(int number, const std::function<void()>& more = {})
    {
        queue_.Post(new Event([this, number, more] {
            ran_.push_back(number);
            if (more)
                more();
        }));
    }

    PostQueue queue_;
    Ran ran_;
};

// The first event opens a modal loop that only the second can end: it must find the second.
TEST_F(PostQueueTest, ANestedLoopGoesOnWithTheNextEntry)
{
    Post(1, [this] {
        EXPECT_TRUE(IsReadable(queue_)); // The inner loop is woken,
        EXPECT_TRUE(queue_.RunOne());    // and runs one turn.
        ran_.push_back(-1);
    });
    Post(2);
    Post(3);
    queue_.RunWake();
    EXPECT_EQ(ran_, (Ran{1, 2, -1, 3}));
}

TEST_F(PostQueueTest, AWakeRunsSixtyFourInOrderAndLeavesTheDescriptorReadable)
{
    EXPECT_FALSE(IsReadable(queue_));
    Ran all(65);
    std::iota(all.begin(), all.end(), 0);
    for (const int i : all)
        Post(i);
    EXPECT_EQ(ran_, Ran{});
    queue_.RunWake();
    EXPECT_EQ(ran_.size(), 64U);
    EXPECT_TRUE(IsReadable(queue_));
    queue_.RunWake();
    EXPECT_EQ(ran_, all);
    EXPECT_FALSE(IsReadable(queue_));
    EXPECT_FALSE(queue_.RunOne());
}

TEST_F(PostQueueTest, AClosedQueueFreesWhatWaitsAndWhatComes)
{
    struct Chain final : ISDKEvent {
        explicit Chain(PostQueue& to)
            : queue(to)
        {
        }
        void Execute() override {}
        void Release() override
        {
            queue.Post(new Event([] {})); // Under no lock: it would never return.
            delete this;
        }
        PostQueue& queue;
    };
    Post(1);
    queue_.Post(new Chain(queue_));
    queue_.Close();
    EXPECT_EQ(queue_.Post(new Event([] {})), 0);
    EXPECT_EQ(Event::alive, 0);
    queue_.Reopen();
    Post(2);
    queue_.RunPending();
    EXPECT_EQ(ran_, Ran{2});
    EXPECT_EQ(queue_.Post(nullptr), 0);
}

TEST_F(PostQueueTest, ReleasesTheEntriesOfOneLibraryAlone)
{
    Post(1);
    queue_.ReleaseOfLibrary(reinterpret_cast<const void*>(&poll)); // The C library has none here.
    EXPECT_EQ(queue_.GetCount(), 1U);
    queue_.ReleaseOfLibrary(&Event::alive);
    EXPECT_EQ(queue_.GetCount(), 0U);
    EXPECT_EQ(Event::alive, 0);
}

TEST_F(PostQueueTest, ThreadsKeepTheirOrder)
{
    constexpr int kThreads = 3;
    constexpr int kPosts = 2000;
    std::array<int, kThreads> next{};
    bool inOrder = true;
    std::vector<std::thread> threads;
    for (std::size_t t = 0; t < kThreads; ++t)
        threads.emplace_back([this, t, &next, &inOrder] {
            for (int i = 0; i < kPosts; ++i)
                queue_.Post(new Event([&next, &inOrder, t, i] {
                    inOrder = inOrder && next[t] == i;
                    next[t] = i + 1;
                }));
        });
    pollfd wake = {queue_.GetWakeDescriptor(), POLLIN, 0};
    const auto isDone = [&next] {
        return std::all_of(next.begin(), next.end(), [](int n) { return n == kPosts; });
    };
    while (!isDone() && poll(&wake, 1, 10000) == 1)
        queue_.RunWake();
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_TRUE(isDone());
    EXPECT_TRUE(inOrder);
}

TEST_F(PostQueueTest, ThreadsMayPostWhileItCloses)
{
    std::thread poster([this] {
        while (queue_.Post(new Event([] {})) != 0) {
        }
    });
    queue_.Close();
    poster.join();
    EXPECT_EQ(Event::alive, 0);
}

class Messages : public testing::Test {
protected:
    void SetUp() override
    {
        disposed = 0;
        ASSERT_TRUE(window_.CreateHandle());
    }
    int Post(HWND window, int number)
    {
        return queue_.PostMessage(window, 11014, static_cast<WPARAM>(number), -1, Dispose);
    }

    PostQueue queue_;
    Window window_;
};

TEST_F(Messages, ReachTheWindowWhichOwnsThePayloadFromTheEntryOn)
{
    EXPECT_EQ(Post(window_.GetHandle(), 11), 1);
    window_.onMessage = [this] { window_.DestroyWindow(); };
    queue_.RunPending();
    EXPECT_EQ(window_.ran, Ran{11});
    EXPECT_EQ(disposed, 0);
}

TEST_F(Messages, ThatCantBeDeliveredAreFreedOnce)
{
    EXPECT_EQ(Post(window_.GetHandle(), 11), 1); // Its window goes before the delivery:
    window_.DestroyWindow();
    queue_.RunPending();
    EXPECT_EQ(disposed, 10);
    EXPECT_EQ(Post(window_.GetHandle(), 101), 0); // no window at the post,
    EXPECT_EQ(disposed, 110);
    ASSERT_TRUE(window_.CreateHandle());
    EXPECT_EQ(Post(window_.GetHandle(), 1001), 1); // the queue closes,
    queue_.Close();
    EXPECT_EQ(disposed, 1110);
    EXPECT_EQ(Post(window_.GetHandle(), 10001), 0); // and is closed.
    EXPECT_EQ(disposed, 11110);
    EXPECT_EQ(window_.ran, Ran{});
    EXPECT_EQ(queue_.PostMessage(0, 11014, 1, 1, nullptr), 0);
}

TEST_F(Messages, NeverReachTheNextWindowOfTheSameSlot)
{
    const HWND before = window_.GetHandle();
    EXPECT_EQ(Post(before, 11), 1);
    window_.DestroyWindow();
    ASSERT_TRUE(window_.CreateHandle());
    EXPECT_EQ(before & 0xFFFFFFFFU, window_.GetHandle() & 0xFFFFFFFFU);
    EXPECT_NE(before, window_.GetHandle());
    queue_.RunPending();
    EXPECT_EQ(window_.ran, Ran{});
    EXPECT_EQ(disposed, 10);
}

TEST_F(Messages, OfOneNumberAreDeliveredAheadAndTheRestStays)
{
    Ran events;
    queue_.Post(new Event([&events] { events.push_back(1); }));
    EXPECT_EQ(Post(window_.GetHandle(), 11), 1);
    EXPECT_EQ(queue_.PostMessage(window_.GetHandle(), 1, 7, -1, Dispose), 1);
    EXPECT_EQ(Post(window_.GetHandle(), 12), 1);
    queue_.DeliverMessages(11014);
    EXPECT_EQ(window_.ran, (Ran{11, 12}));
    EXPECT_EQ(events, Ran{});
    EXPECT_EQ(queue_.GetCount(), 2U);
    queue_.Close();
    EXPECT_EQ(disposed, 6);
    EXPECT_EQ(Event::alive, 0);
}

TEST_F(Messages, WithoutADisposerCarryPlainNumbers)
{
    EXPECT_EQ(PostMessageW(window_.GetHandle(), 11014, 5, -1), 1);
    PostQueue::Get().RunPending();
    EXPECT_EQ(window_.ran, Ran{5});
}

TEST(WindowHandles, DieWithTheirObject)
{
    HWND handle = 0;
    {
        CWnd window;
        window.ShowWindow(5);
        EXPECT_FALSE(window.IsWindowVisible()); // There is no window to show.
        EXPECT_TRUE(window.CreateHandle());
        handle = window.GetHandle();
        EXPECT_TRUE(window.CreateHandle()); // A second time changes nothing.
        EXPECT_EQ(window.GetHandle(), handle);
        window.ShowWindow(5);
        EXPECT_TRUE(window.IsWindowVisible());
    }
    for (const HWND gone : {handle, handle + 1, ~HWND{0}})
        EXPECT_EQ(PostMessageW(gone, 1, 0, 0), 0);
}

} // namespace
} // namespace kivo
