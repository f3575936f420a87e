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

#include <filesystem>
#include <iterator>
#include <string>

namespace kivo::test {

namespace {

struct ScriptCase {
    const char* name;
    const char* script; // As EngineRun::Do takes it.
    const char* trace;
};

constexpr ScriptCase kScripts[] = {
    {"WithoutAutoStartItWaitsReady",      "manual tone.wav @10 quiet",                     "10"                            },
    {"AndStartsWhenPlayed",               "manual tone.wav @10 play @8 tone.wav @10",      "10 9 3 8 10"                   },
    {"WithoutAutoStartAGoneFileIsTold",   "manual not-there.wav @10 quiet",                "9 10"                          },
    {"PauseAndPlayTellNothingElse",       "long.mp3 @3 pause pause quiet play play quiet", "9 3 2 3"                       },
    {"APauseBeforeTheStartStillTellsIt",  "long.mp3 pause @2 quiet play quiet",            "9 3 2 3"                       },
    {"ASeekTellsNothing",                 "long.mp3 @3 seek=10 quiet pause seek=5 quiet",  "9 3 2"                         },
    {"ASeekBehindTheEndStopsShortOfIt",   "long.mp3 @3 seek=60 @8",                        "9 3 8"                         },
    {"OrEndsOnceItPlaysOn",
     "long.mp3 @3 pause seek=60 quiet seek=29 seek=60 quiet play @8",                      "9 3 2 3 8"                     },
    {"StopTellsOnceAndOnlyWhatPlays",     "stop long.mp3 @3 stop stop quiet stop quiet",   "9 3 1"                         },
    {"AStoppedAddressStartsAnew",         "long.mp3 @3 stop @1 play @3",                   "9 3 1 9 3"                     },
    {"AnEndedAddressStartsAnew",          "tone.wav @8 play @3 @8",                        "9 3 8 9 3 8"                   },
    {"AStopRightAfterTheAddressIsSilent", "tone.mp3 stop quiet quiet tone.mp3 @3",         "9 3"                           },
    {"AStopInsideTheEndTellsNothing",     "on8=stop tiny.wav @8 quiet",                    "9 3 8"                         },
    {"AStopRightAfterItNeither",          "tone.wav @8 stop tone.flac @3 @8",              "9 3 8 9 3 8"                   },
    {"ReplacedInTransition",              "once9=long.mp3 tone.flac #4 quiet",             "9 1 9 3"                       },
    {"ReplacedWhilePlaying",              "once3=long.mp3 tone.flac #5 quiet",             "9 3 1 9 3"                     },
    {"ReplacedWhilePaused",               "once3=pause once2=long.mp3 tone.flac #6 quiet", "9 3 2 1 9 3"                   },
    {"ReplacedAtTheEnd",                  "once8=long.mp3 tiny.wav #5 quiet",              "9 3 8 9 3"                     },
    {"ReplacedWhenStopped",               "once3=stop once1=long.mp3 tone.flac #5 quiet",  "9 3 1 9 3"                     },
    {"ASongAfterAFilm",                   "long.mp4 @3 long.mp3 quiet @3 quiet stop @1",   "9 3 1 9 3 1"                   },
    {"OfManyInOneTurnTheLastPlays",
     "long.mp3 @3 tone.ogg not-there.mp3 tone.mp4 text.mp3 empty.mp3 tone.wma long.mp4 quiet @3 "
     "quiet",                                                                              "9 3 1 9 3"                     },
    {"ThroughGoodGoneAndBrokenFiles",
     "once8=tiny.mp3 once8=not-there.mp3 once10=text.mp3 once8=empty.mp3 once8=tiny.wav tiny.wav "
     "#14 quiet",                                                                          "9 3 8 9 3 8 9 10 9 8 9 8 9 3 8"},
    {"ABrokenFileThatIsRepeatedRests",    "on8=text.mp3 text.mp3 @1 quiet",                "9 8 9 1"                       },
    {"AndGetsItsChanceAfterAnother",
     "text.mp3 @8 text.mp3 @1 tiny.wav @8 text.mp3 #9",                                    "9 8 9 1 9 3 8 9 8"             },
};

class StatesTest : public testing::TestWithParam<ScriptCase> {};

TEST_P(StatesTest, Tells)
{
    EngineRun run;
    run.Do(GetParam().script);
    EXPECT_EQ(run.GetTrace(), GetParam().trace);
    // What is told of an address comes with it: its length, its picture, nothing when it rests.
    const String url = run.Get().GetURL();
    if (run.Get().GetPlayState() == 3) {
        const bool isFilm = url.ends_with(u"long.mp4");
        EXPECT_EQ(run.Get().GetImageWidth(), isFilm ? 320 : 0);
        if (url.find(u"long") != String::npos) {
            EXPECT_NEAR(run.Get().GetDuration(), isFilm ? 20 : 30, 0.2);
        }
    } else if (run.Get().GetPlayState() != 2) {
        EXPECT_EQ(run.Get().GetPosition(), 0);
    }
}

INSTANTIATE_TEST_SUITE_P(Scripts, StatesTest, testing::ValuesIn(kScripts), CaseName<ScriptCase>);

TEST(States, PositionsFollowASeekAtOnceAndStayInside)
{
    EngineRun run;
    run.Do("long.mp3 @3 seek=10");
    EXPECT_EQ(run.Get().GetPosition(), 10);
    run.Do("quiet");
    EXPECT_GE(run.Get().GetPosition(), 9.5);
    run.Do("pause seek=5 quiet");
    EXPECT_NEAR(run.Get().GetPosition(), 5, 0.2);
    run.Get().SetPosition(1e300);
    EXPECT_NEAR(run.Get().GetPosition(), 29.8, 0.2);
    run.Get().SetPosition(-5);
    EXPECT_EQ(run.Get().GetPosition(), 0);
}

TEST(States, AStopBeforeTheEndIsDeliveredTakesItsPlace)
{
    EngineRun run;
    run.Do("tone.wav @3");
    RunFor(20);
    // Entry by entry, until the engine has heard of the end and its listener hasn't.
    while (run.Get().GetPosition() > 0) {
        if (!PostQueue::Get().RunOne())
            poll(nullptr, 0, 1);
    }
    EXPECT_EQ(run.GetTrace(), "9 3");
    run.Do("stop quiet");
    EXPECT_EQ(run.GetTrace(), "9 3 1");
}

struct OddCase {
    const char* name;
    bool (*make)(const std::string& path);
};

bool MakeSocket(const std::string& path)
{
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    path.copy(std::data(address.sun_path), sizeof address.sun_path - 1);
    const int server = socket(AF_UNIX, SOCK_STREAM, 0);
    const bool isBound =
        bind(server, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
    close(server);
    return isBound;
}

constexpr OddCase kOddCases[] = {
    {"Fifo",       [](const std::string& path) { return mkfifo(path.c_str(), 0600) == 0; }        },
    {"Device",     [](const std::string& path) { return symlink("/dev/zero", path.c_str()) == 0; }},
    {"Folder",     [](const std::string& path) { return mkdir(path.c_str(), 0700) == 0; }         },
    {"ItsOwnLink",
     [](const std::string& path) { return symlink(path.c_str(), path.c_str()) == 0; }             },
    {"Socket",     MakeSocket                                                                     },
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
            run.RunToCount(i > 12 ? 2 : 1);
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
    run.Do("long.mp4 @3 quiet");
    EXPECT_EQ(run.GetTrace(), "9 3");
}

} // namespace

} // namespace kivo::test
