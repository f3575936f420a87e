#include "tests/platform/engine/EngineRun.h"
#include "tests/support/TestLoop.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>

namespace kivo::test {

namespace {

// How often the threads of the process have gone to sleep, and so were woken.
long CountWakeUps()
{
    constexpr std::string_view kName = "voluntary_ctxt_switches:";
    long count = 0;
    for (const auto& task : std::filesystem::directory_iterator("/proc/self/task")) {
        std::ifstream status(task.path() / "status");
        std::string line;
        while (std::getline(status, line)) {
            if (line.starts_with(kName))
                count += std::stol(line.substr(kName.size()));
        }
    }
    return count;
}

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
