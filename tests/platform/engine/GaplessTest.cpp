// What joining tracks could break beyond what all scripts show: whole rows of tracks, and the core
// that waits at an end for the next.

#include "tests/platform/engine/EngineRun.h"
#include "tests/support/TestLoop.h"
#include "tests/support/Threads.h"

#include <gtest/gtest.h>

#include <string>

namespace kivo::test {

namespace {

TEST(Gapless, ManyKindsOneAfterAnother)
{
    EngineRun run;
    run.Do("on8=stop tone.wav");
    for (const char* next : {"mono.wav",
                             "tone.mp4",
                             "tone.mp3",
                             "text.mp3",
                             "tone.ogg",
                             "silent.mp4",
                             "tiny.wav",
                             "nolength.mkv",
                             "tone.flac"})
        run.Do(std::string("@8 quiet ") + next + " @9");
    run.Do("@8");
    EXPECT_EQ(run.GetTrace(), "9 3 8 9 3 8 9 3 8 9 3 8 9 8 9 3 8 9 3 8 9 3 8 9 3 8 9 3 8");
}

// With the sound device open the core has threads beside those that it rests with.
TEST(Gapless, WhatCannotBePlayedAfterAnEndStillLetsGoOfTheDevice)
{
    EngineRun run;
    run.Do("tone.wav @3 stop @1 quiet");
    const long resting = CountThreads();
    for (const char* next : {"hls", "not-there.mp3", "text.mp3"}) {
        SCOPED_TRACE(next);
        run.Clear();
        run.Do(std::string("tone.wav @8 ") + next);
        EXPECT_TRUE(RunUntil([&] { return CountThreads() <= resting; }, 10'000));
        EXPECT_TRUE(run.GetTrace().starts_with("9 3 8 9 ")) << run.GetTrace();
    }
}

} // namespace

} // namespace kivo::test
