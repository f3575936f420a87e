#include "tests/platform/engine/EngineRun.h"
#include "tests/support/TestLoop.h"
#include "tests/support/Threads.h"

#include <gtest/gtest.h>

namespace kivo::test {

namespace {

// Over two seconds, once everything has come to rest.
long CountWhileResting()
{
    RunFor(1'500);
    const long before = CountWakeUps();
    RunFor(2'000);
    return CountWakeUps() - before;
}

TEST(Quiet, PausedOrStoppedNothingWakesUp)
{
    EngineRun run;
    run.Get().SetSurface(64, 48, /*visible=*/true);
    run.Do("long.mp4 @3 pause");
    EXPECT_LE(CountWhileResting(), 4);
    run.Do("stop");
    EXPECT_LE(CountWhileResting(), 4);
}

// A picture stands for four seconds, but the sound beside it moves.
TEST(Quiet, ASlideShowIsNoStall)
{
    EngineRun run;
    run.Do("slides.mp4 @3");
    RunFor(3'500);
    EXPECT_EQ(run.GetTrace(), "9 3");
}

} // namespace

} // namespace kivo::test
