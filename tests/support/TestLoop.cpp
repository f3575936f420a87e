#include "tests/support/TestLoop.h"

#include "platform/base/PostQueue.h"
#include "platform/base/TimerService.h"

#include <poll.h>

#include <algorithm>
#include <chrono>
#include <cstdint>

namespace kivo::test {

namespace {

using Clock = std::chrono::steady_clock;

int longestTurn = 0;

int MillisecondsSince(Clock::time_point start)
{
    const auto passed = Clock::now() - start;
    return static_cast<int>(std::chrono::duration_cast<std::chrono::milliseconds>(passed).count());
}

void Turn(int longestWait)
{
    const std::int64_t due = TimerService::Get().GetNextDelay();
    const int wait =
        due < 0 ? longestWait : static_cast<int>(std::min<std::int64_t>(due, longestWait));
    pollfd wake = {PostQueue::Get().GetWakeDescriptor(), POLLIN, 0};
    poll(&wake, 1, std::max(0, wait));
    const Clock::time_point start = Clock::now();
    if ((wake.revents & POLLIN) != 0)
        PostQueue::Get().RunWake();
    TimerService::Get().RunDue();
    longestTurn = std::max(longestTurn, MillisecondsSince(start));
}

} // namespace

bool RunUntil(const std::function<bool()>& isDone, int milliseconds)
{
    const Clock::time_point start = Clock::now();
    while (!isDone()) {
        const int left = milliseconds - MillisecondsSince(start);
        if (left <= 0)
            return isDone();
        Turn(left);
    }
    return true;
}

bool PollUntil(const std::function<bool()>& isDone, int milliseconds)
{
    constexpr int kSlice = 10;
    const Clock::time_point start = Clock::now();
    while (!RunUntil(isDone, kSlice)) {
        if (MillisecondsSince(start) >= milliseconds)
            return isDone();
    }
    return true;
}

void RunFor(int milliseconds)
{
    RunUntil([] { return false; }, milliseconds);
}

int GetLongestTurn()
{
    return longestTurn;
}

void ResetLongestTurn()
{
    longestTurn = 0;
}

} // namespace kivo::test
