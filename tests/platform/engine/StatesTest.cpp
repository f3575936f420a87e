#include "platform/base/PostQueue.h"
#include "tests/platform/engine/EngineRun.h"
#include "tests/support/CaseName.h"
#include "tests/support/TempFolder.h"
#include "tests/support/TestLoop.h"

#include <gtest/gtest.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <string>
#include <utility>
#include <vector>

namespace kivo::test {

namespace {

// Long enough for the core to say what it still has to say.
constexpr int kSilence = 150;

TEST(States, WithoutAutoStartTheAddressWaitsReady)
{
    EngineRun run;
    run.Get().SetAutoStart(/*on=*/false);
    run.SetFile("tone.wav");
    run.RunToState(10);
    RunFor(kSilence);
    EXPECT_EQ(run.GetTrace(), "10");
    run.Get().Play();
    run.RunToState(8);
    EXPECT_EQ(run.GetTrace(), "10 9 3 8");
    run.SetFile("not-there.wav");
    run.RunToState(10);
    EXPECT_EQ(run.GetTrace(), "10 9 3 8 9 10");
}

TEST(States, PauseAndPlayTellNothingElse)
{
    EngineRun run;
    run.SetFile("long.mp3");
    run.RunToState(3);
    run.Get().Pause();
    run.Get().Pause();
    RunFor(kSilence);
    EXPECT_EQ(run.GetTrace(), "9 3 2");
    EXPECT_EQ(run.Get().GetPlayState(), 2);
    run.Get().Play();
    run.Get().Play();
    RunFor(kSilence);
    EXPECT_EQ(run.GetTrace(), "9 3 2 3");
}

TEST(States, PauseBeforeTheStartStillTellsTheStart)
{
    EngineRun run;
    run.SetFile("long.mp3");
    run.Get().Pause();
    run.RunToState(2);
    RunFor(kSilence);
    EXPECT_EQ(run.GetTrace(), "9 3 2");
    run.Get().Play();
    RunFor(kSilence);
    EXPECT_EQ(run.GetTrace(), "9 3 2 3");
}

TEST(States, ASeekTellsNothing)
{
    EngineRun run;
    run.SetFile("long.mp3");
    run.RunToState(3);
    run.Get().SetPosition(10);
    EXPECT_EQ(run.Get().GetPosition(), 10);
    RunFor(kSilence);
    EXPECT_GE(run.Get().GetPosition(), 9.5);
    run.Get().Pause();
    run.Get().SetPosition(5);
    RunFor(kSilence);
    EXPECT_EQ(run.GetTrace(), "9 3 2");
    EXPECT_NEAR(run.Get().GetPosition(), 5, 0.2);
}

TEST(States, ASeekBehindTheEndStopsShortOfIt)
{
    EngineRun run;
    run.SetFile("long.mp3");
    run.RunToState(3);
    run.Get().SetPosition(1e6);
    EXPECT_NEAR(run.Get().GetPosition(), 29.8, 0.2);
    run.Get().SetPosition(-5);
    EXPECT_EQ(run.Get().GetPosition(), 0);
    run.Get().SetPosition(29.9);
    run.RunToState(8, 3'000);
    EXPECT_EQ(run.GetTrace(), "9 3 8");
}

TEST(States, StopTellsOnceAndOnlyWhatPlays)
{
    EngineRun run;
    run.Get().Stop();
    run.SetFile("long.mp3");
    run.RunToState(3);
    run.Get().Stop();
    run.Get().Stop();
    RunFor(kSilence);
    run.Get().Stop();
    RunFor(kSilence);
    EXPECT_EQ(run.GetTrace(), "9 3 1");
    EXPECT_EQ(run.Get().GetPosition(), 0);
    run.Get().Play();
    run.RunToState(3);
    EXPECT_EQ(run.GetTrace(), "9 3 1 9 3");
}

TEST(States, AStopInsideTheEndTellsNothing)
{
    EngineRun run;
    run.onState = [&](int state) {
        if (state == 8)
            run.Get().Stop();
    };
    run.SetFile("tiny.wav");
    run.RunToState(8);
    RunFor(kSilence);
    EXPECT_EQ(run.GetTrace(), "9 3 8");
}

TEST(States, AStopBeforeTheEndIsDeliveredTakesItsPlace)
{
    EngineRun run;
    run.SetFile("tone.wav");
    run.RunToState(3);
    RunFor(20);
    // Entry by entry, until the engine has heard of the end and its listener hasn't.
    while (run.Get().GetPosition() > 0) {
        if (!PostQueue::Get().RunOne())
            poll(nullptr, 0, 1);
    }
    EXPECT_EQ(run.GetTrace(), "9 3");
    run.Get().Stop();
    RunFor(kSilence);
    EXPECT_EQ(run.GetTrace(), "9 3 1");
}

struct ReplaceCase {
    const char* name;
    int during;
    const char* trace;
};

constexpr ReplaceCase kReplaceCases[] = {
    {"Transitioning", 9, "9 1 9 3"    },
    {"Playing",       3, "9 3 1 9 3"  },
    {"Paused",        2, "9 3 2 1 9 3"},
    {"Ended",         8, "9 3 8 9 3"  },
    {"Stopped",       1, "9 3 1 9 3"  },
};

class ReplaceTest : public testing::TestWithParam<ReplaceCase> {};

// Inside each state's delivery, as an impatient listener would.
TEST_P(ReplaceTest, ANewAddressEndsTheOldOneFirst)
{
    const ReplaceCase& row = GetParam();
    EngineRun run;
    bool isReplaced = false;
    run.onState = [&](int state) {
        if (state == 3 && row.during == 2 && !isReplaced)
            run.Get().Pause();
        if (state == 3 && row.during == 1 && !isReplaced)
            run.Get().Stop();
        if (state != row.during || std::exchange(isReplaced, true))
            return;
        run.SetFile("long.mp3");
        EXPECT_EQ(run.Get().GetDuration(), 0);
    };
    run.SetFile(row.during == 8 ? "tiny.wav" : "tone.flac");
    const std::string trace = row.trace;
    run.RunToCount(static_cast<std::size_t>(std::count(trace.begin(), trace.end(), ' ')) + 1);
    RunFor(kSilence);
    EXPECT_EQ(run.GetTrace(), trace);
    EXPECT_NEAR(run.Get().GetDuration(), 30, 0.2);
}

INSTANTIATE_TEST_SUITE_P(States,
                         ReplaceTest,
                         testing::ValuesIn(kReplaceCases),
                         CaseName<ReplaceCase>);

TEST(States, OfTenAddressesInOneTurnTheLastPlays)
{
    EngineRun run;
    run.SetFile("long.mp3");
    run.RunToState(3);
    for (const char* file : {"tone.ogg",
                             "tone.mp3",
                             "not-there.mp3",
                             "tone.mp4",
                             "text.mp3",
                             "tone.wav",
                             "empty.mp3",
                             "tone.opus",
                             "tone.wma",
                             "long.mp4"})
        run.SetFile(file);
    run.RunToState(3);
    RunFor(kSilence);
    EXPECT_EQ(run.GetTrace(), "9 3 1 9 3");
    EXPECT_EQ(run.Get().GetImageWidth(), 320);
    EXPECT_NEAR(run.Get().GetDuration(), 20, 0.2);
}

TEST(States, AStopRightAfterTheAddressLeavesSilence)
{
    EngineRun run;
    run.SetFile("tone.mp3");
    run.Get().Stop();
    RunFor(2 * kSilence);
    EXPECT_EQ(run.GetTrace(), "");
    run.SetFile("tone.mp3");
    run.RunToState(3);
    EXPECT_EQ(run.GetTrace(), "9 3");
}

TEST(States, ThroughAListOfGoodGoneAndBrokenFiles)
{
    EngineRun run;
    std::vector<std::string> list = {
        "tiny.mp3", "not-there.mp3", "text.mp3", "empty.mp3", "tiny.wav"};
    run.onState = [&](int state) {
        if ((state != 8 && state != 10) || list.empty())
            return;
        run.SetFile(list.front());
        list.erase(list.begin());
    };
    run.SetFile("tiny.wav");
    run.RunToCount(15);
    RunFor(kSilence);
    EXPECT_EQ(run.GetTrace(), "9 3 8 9 3 8 9 10 9 8 9 8 9 3 8");
}

TEST(States, ABrokenFileThatIsRepeatedComesToRest)
{
    EngineRun run;
    run.onState = [&](int state) {
        if (state == 8)
            run.SetFile("text.mp3");
    };
    run.SetFile("text.mp3");
    run.RunToState(1);
    RunFor(kSilence);
    EXPECT_EQ(run.GetTrace(), "9 8 9 1");
    // After something has played the file gets its chance again.
    run.onState = {};
    run.SetFile("tiny.wav");
    run.RunToState(8);
    run.Clear();
    run.SetFile("text.mp3");
    run.RunToState(8);
    EXPECT_EQ(run.GetTrace(), "9 8");
}

struct OddCase {
    const char* name;
    bool (*make)(const std::string& path);
};

const OddCase kOddCases[] = {
    {"Fifo",         [](const std::string& path) { return mkfifo(path.c_str(), 0600) == 0; }        },
    {"Device",       [](const std::string& path) { return symlink("/dev/zero", path.c_str()) == 0; }},
    {"Folder",       [](const std::string& path) { return mkdir(path.c_str(), 0700) == 0; }         },
    {"Socket",
     [](const std::string& path) {
         sockaddr_un address{};
         address.sun_family = AF_UNIX;
         path.copy(std::data(address.sun_path), sizeof address.sun_path - 1);
         const int server = socket(AF_UNIX, SOCK_STREAM, 0);
         const bool isBound =
             bind(server, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
         close(server);
         return isBound;
     }                                                                                              },
    {"LinkToItself",
     [](const std::string& path) { return symlink(path.c_str(), path.c_str()) == 0; }               },
};

TEST(States, WhatIsNoRegularFileIsRefusedUnopened)
{
    const TempFolder folder;
    for (const OddCase& row : kOddCases) {
        SCOPED_TRACE(row.name);
        const std::string path = folder.GetNative() / row.name;
        ASSERT_TRUE(row.make(path));
        EngineRun run;
        run.SetBytes(path);
        run.RunToState(8, 2'000);
        EXPECT_EQ(run.GetTrace(), "9 8");
    }
}

TEST(States, ARelativePathIsTakenFromTheCurrentFolder)
{
    const std::string before = std::filesystem::current_path();
    std::filesystem::current_path(GetMediaPath(""));
    EngineRun run;
    run.SetBytes("tiny.wav");
    run.RunToState(8);
    std::filesystem::current_path(before);
    EXPECT_EQ(run.GetTrace(), "9 3 8");
}

TEST(States, NoneIsDeliveredAfterTheEnd)
{
    int count = 0;
    for (int i = 0; i < 20; ++i) {
        EngineRun run;
        run.onState = [&](int) { ++count; };
        run.SetFile(i % 2 == 0 ? "long.mp4" : "tiny.wav");
        if (i > 4)
            run.RunToState(i > 12 ? 3 : 9);
        count = 0;
        run.End();
        PostQueue::Get().RunPending();
        EXPECT_EQ(count, 0);
    }
}

TEST(States, AListenerMayEndTheEngine)
{
    EngineRun run;
    run.onState = [&](int state) {
        if (state == 3)
            run.End();
    };
    run.SetFile("long.mp4");
    EXPECT_TRUE(run.RunToState(3));
    RunFor(kSilence);
    EXPECT_EQ(run.GetTrace(), "9 3");
}

} // namespace

} // namespace kivo::test
