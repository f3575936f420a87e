#include "tests/platform/engine/EngineRun.h"
#include "tests/platform/engine/Radio.h"
#include "tests/support/CaseName.h"
#include "tests/support/TestLoop.h"

#include <gtest/gtest.h>

namespace kivo::test {

namespace {

class NetworkTest : public testing::Test {
public:
    NetworkTest() { run.base = radio.GetUrl(""); }

    Radio radio;
    EngineRun run;
};

struct StreamCase {
    const char* name;
    const char* script; // As EngineRun::Do takes it, with the paths of a Radio.
    const char* trace;
    double length;
    int width;
};

constexpr StreamCase kStreams[] = {
    {"AFileHasItsLength",            "/file.mp3 @8",                           "9 6 7 3 8",   0.6, 0 },
    {"AFilmHasItsPictureToo",        "/film.mp4 @3",                           "9 6 7 3",     0.6, 64},
    {"AClosedListOfSegmentsIsAFile", "/hls/list.m3u8 @8",                      "9 6 7 3 8",   3,   0 },
    {"ARedirectIsFollowed",          "/moved @8",                              "9 6 7 3 8",   0.6, 0 },
    {"ButNotToTheDisk",              "/moved-to-a-file @8",                    "9 8",         0,   0 },
    {"ASeekInAFileTellsNothing",     "/long.mp3 @3 seek=20 quiet quiet",       "9 6 7 3",     30,  0 },
    {"ARadioEndsWithItsConnection",  "/dies @8",                               "9 6 3 8",     0,   0 },
    {"ChunksAreARadio",              "/chunks @8",                             "9 6 3 8",     0,   0 },
    {"AStallIsToldAndItsEnd",        "/stalls @8",                             "9 6 3 6 3 8", 0,   0 },
    {"PausedInAStallItStalls",       "/waits #4 pause @2 quiet play @6 quiet", "9 6 3 6 2 6", 0,   0 },
};

class StreamTest : public NetworkTest, public testing::WithParamInterface<StreamCase> {};

TEST_P(StreamTest, Tells)
{
    const StreamCase& row = GetParam();
    run.Do(row.script);
    EXPECT_EQ(run.GetTrace(), row.trace);
    EXPECT_NEAR(run.Get().GetDuration(), row.length, 0.2);
    EXPECT_EQ(run.Get().GetImageWidth(), row.width);
}

INSTANTIATE_TEST_SUITE_P(Network, StreamTest, testing::ValuesIn(kStreams), CaseName<StreamCase>);

TEST_F(NetworkTest, ARadioThatWaitedGoesOn)
{
    run.Do("/waits #4");
    radio.GoOn();
    run.Do("@3");
    EXPECT_EQ(run.GetTrace(), "9 6 3 6 3");
}

TEST_F(NetworkTest, TheSongTitleOfARadioIsFollowed)
{
    run.Do("/titles");
    for (const char16_t* title : {u"First", u"Second"})
        EXPECT_TRUE(RunUntil([&] { return run.Get().GetItemInfo(u"Title") == title; }, 5'000));
    EXPECT_EQ(run.Get().GetItemInfo(u"Station"), u"Radio Loopback");
    EXPECT_EQ(run.GetTrace(), "9 6 3");
}

TEST_F(NetworkTest, AStopWhileAServerIsSilentReturnsAtOnce)
{
    run.Do("/silent @9"); // A stop before it has been told would take it back.
    RunUntil([&] { return radio.GetServer().CountRequests("/silent") == 1; }, 5'000);
    run.Do("stop @1");
    EXPECT_EQ(run.GetTrace(), "9 1");
    ResetLongestTurn();
    run.SetFile("tiny.wav");
    EXPECT_TRUE(run.RunToState(8, 3'000));
    EXPECT_LT(GetLongestTurn(), 50);
}

// Whoever accepts and says nothing: the wait is the core's own limit of 15 s.
TEST_F(NetworkTest, ASilentServerEndsByItself)
{
    run.Do("/silent");
    EXPECT_TRUE(run.RunToState(8, 25'000));
    EXPECT_EQ(run.GetTrace(), "9 8");
}

struct DeadCase {
    const char* name;
    const char* url; // "%" stands for the server.
    bool isTried;    // And each time anew: nobody chooses addresses by himself.
};

constexpr DeadCase kDeadCases[] = {
    {"NotFound",      "%/nothing",                            true },
    {"Page",          "%/page",                               true },
    {"Cut",           "%/cut",                                true },
    {"NobodyListens", "http://127.0.0.1:1/",                  true },
    {"NoHost",        "http:///",                             true },
    {"RtspNobody",    "rtsp://127.0.0.1:1/",                  true },
    {"LineBreak",     "%/a\r\nX-Evil: 1",                     false},
    {"File",          "file:///etc/passwd",                   false},
    {"Generator",     "av://lavfi:sine",                      false},
    {"Lavf",          "lavf://file:/etc/passwd",              false},
    {"Slice",         "slice://0-9@/etc/passwd",              false},
    {"Appending",     "appending:///etc/passwd",              false},
    {"Subfile",       "ffmpeg://subfile,,start,0,end,9,,:/x", false},
    {"Ftp",           "ftp://127.0.0.1:1/a.mp3",              false},
    {"Smb",           "smb://127.0.0.1/a.mp3",                false},
    {"Data",          "data://text/plain,x",                  false},
    {"Udp",           "udp://127.0.0.1:9",                    false},
    {"Memory",        "memory://RIFF",                        false},
    {"Fd",            "fd://0",                               false},
    {"EdlScheme",     "edl://%/a.mp3",                        false},
};

class DeadTest : public NetworkTest, public testing::WithParamInterface<DeadCase> {};

TEST_P(DeadTest, EndsAsATrackThatCannotBePlayed)
{
    std::string url = GetParam().url;
    const std::size_t at = url.find('%');
    if (at != std::string::npos)
        url.replace(at, 1, run.base);
    run.SetBytes(url);
    run.Do("@8");
    run.SetBytes(url);
    run.Do("#4");
    EXPECT_EQ(run.GetTrace(), GetParam().isTried ? "9 8 9 8" : "9 8 9 1");
}

INSTANTIATE_TEST_SUITE_P(Network, DeadTest, testing::ValuesIn(kDeadCases), CaseName<DeadCase>);

} // namespace

} // namespace kivo::test
