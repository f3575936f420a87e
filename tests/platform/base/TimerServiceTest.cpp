#include "platform/base/TimerService.h"

#include <gtest/gtest.h>
#include <poll.h>

#include <functional>
#include <vector>

namespace kivo {
namespace {

using Ticks = std::vector<TimerId>;

// Callbacks are plain functions, so what they tell goes through here.
struct Heard {
    Ticks ticks;
    std::function<void(TimerId)> onTick;
};
Heard heard;

void Hear(HWND window, unsigned message, TimerId handle, std::uint32_t /*now*/)
{
    EXPECT_EQ(window, 0U);
    EXPECT_EQ(message, 0x0113U);
    heard.ticks.push_back(handle);
    if (heard.onTick)
        heard.onTick(handle);
}

class Timers : public testing::Test {
protected:
    Timers()
    {
        heard = {};
        service_.SetClock([this] { return now_; });
        service_.SetArm([this](std::int64_t delay) { armed_ = delay; });
    }
    void Turn(std::int64_t milliseconds)
    {
        now_ += milliseconds;
        service_.RunDue();
    }
    static Ticks Taken() { return std::exchange(heard.ticks, {}); }

    std::int64_t now_ = 1000;
    std::int64_t armed_ = -2;
    TimerService service_;
};

TEST_F(Timers, TickAtEachPeriodDropMissedTicksAndKeepTheBeat)
{
    EXPECT_EQ(armed_, -1);
    const TimerId timer = service_.Start(100, Hear);
    EXPECT_EQ(armed_, 100);
    Turn(99);
    EXPECT_EQ(Taken(), Ticks{});
    EXPECT_EQ(armed_, 1);
    Turn(1);
    EXPECT_EQ(Taken(), Ticks{timer});
    Turn(350);
    EXPECT_EQ(Taken(), Ticks{timer});
    EXPECT_EQ(service_.GetNextDelay(), 50);
    service_.RunDue();
    EXPECT_EQ(Taken(), Ticks{});
}

TEST_F(Timers, AreRunInTheOrderOfTheirDueTimes)
{
    const TimerId slow = service_.Start(300, Hear);
    const TimerId quick = service_.Start(100, Hear);
    Turn(300);
    EXPECT_EQ(Taken(), (Ticks{quick, slow}));
}

TEST_F(Timers, HandlesAreNeverGivenTwiceAndPeriodsHaveAShortest)
{
    const TimerId first = service_.Start(0, Hear);
    EXPECT_EQ(armed_, TimerService::kShortest);
    const TimerId second = service_.Start(100, Hear);
    EXPECT_NE(first, second);
    EXPECT_EQ(service_.Kill(first), 1);
    EXPECT_EQ(service_.Kill(first), 0);
    EXPECT_EQ(service_.Kill(0), 0);
    EXPECT_GT(service_.Start(100, Hear), second);
    EXPECT_EQ(service_.Start(100, nullptr), 0U);
}

TEST_F(Timers, ACallbackMayKillItselfAndOthers)
{
    const TimerId first = service_.Start(100, Hear);
    const TimerId second = service_.Start(100, Hear);
    heard.onTick = [&](TimerId) {
        EXPECT_EQ(service_.Kill(first), 1);
        EXPECT_EQ(service_.Kill(second), 1);
    };
    Turn(100);
    EXPECT_EQ(Taken(), Ticks{first});
    EXPECT_EQ(armed_, -1);
    Turn(1000);
    EXPECT_EQ(Taken(), Ticks{});
}

TEST_F(Timers, WhatACallbackStartsWaitsForItsOwnTime)
{
    service_.Start(100, Hear);
    TimerId started = 0;
    heard.onTick = [&](TimerId) {
        if (started == 0)
            started = service_.Start(10, Hear);
    };
    Turn(100);
    EXPECT_EQ(Taken().size(), 1U);
    EXPECT_EQ(armed_, 10);
    Turn(10);
    EXPECT_EQ(Taken(), Ticks{started});
}

// A callback that runs an event loop of its own: the other timers go on, it doesn't tick in itself.
TEST_F(Timers, AreArmedWhileACallbackRuns)
{
    const TimerId modal = service_.Start(1000, Hear);
    const TimerId other = service_.Start(1300, Hear);
    heard.onTick = [&](TimerId handle) {
        if (handle != modal)
            return;
        EXPECT_EQ(armed_, 300);
        Turn(300);
    };
    Turn(1000);
    EXPECT_EQ(Taken(), (Ticks{modal, other}));
    EXPECT_EQ(armed_, 700);
}

TEST_F(Timers, GoWithTheirLibrary)
{
    service_.Start(100, Hear);
    service_.KillOfLibrary(reinterpret_cast<const void*>(&poll));
    EXPECT_EQ(armed_, 100);
    service_.KillOfLibrary(&heard);
    EXPECT_EQ(armed_, -1);
}

TEST_F(Timers, StandBehindTheContract)
{
    TimerService& service = TimerService::Get();
    service.SetClock([this] { return now_; });
    const TimerId timer = SetTimer(0, 3, 1000, Hear);
    EXPECT_NE(SetTimer(0, 3, 2000, Hear), timer); // The id is ignored.
    now_ += 1000;
    service.RunDue();
    EXPECT_EQ(Taken(), Ticks{timer});
    EXPECT_EQ(KillTimer(0, timer), 1);
    EXPECT_EQ(KillTimer(0, timer), 0);
    service.KillOfLibrary(&heard);
    service.SetClock({});
}

} // namespace
} // namespace kivo
