// The roads of the player's panel on the real engine, with short real files and a server that
// misbehaves.

#include "platform/base/TimerService.h"
#include "player/IMediaPlayer.h"
#include "shell/base/Settings.h"
#include "tests/platform/engine/EngineRun.h"
#include "tests/platform/engine/Radio.h"
#include "tests/player/PanelRun.h"
#include "tests/support/CaseName.h"
#include "tests/support/TempFolder.h"
#include "tests/support/TestLoop.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <sstream>
#include <string>
#include <string_view>

namespace kivo::test {

namespace {

class PanelRoadsTest : public testing::Test {
public:
    void ExpectRest()
    {
        EXPECT_TRUE(run.RunToRest());
        EXPECT_TRUE(run.IsShown(u"PlayBtn"));
        EXPECT_FALSE(run.IsShown(u"PauseBtn"));
        EXPECT_TRUE(run.Bar().IsLocked());
        EXPECT_TRUE(run.host.signs.empty());
        EXPECT_EQ(run.GetStateLine(), u"");
        EXPECT_TRUE(run.panel->IsAtRest());
        // Joined tracks keep the device a moment for the last of the sound.
        EXPECT_TRUE(run.RunUntil([] { return TimerService::Get().GetNextDelay() == -1; }, 2'000));
    }

    void AddRows(const std::string& rows)
    {
        std::istringstream words(rows);
        for (std::string word; words >> word;) {
            if (word == "gone")
                run.Add("/nowhere/gone.mp3");
            else if (word.front() == '/')
                run.Add(radio.GetUrl(word));
            else
                run.AddFile(word);
        }
    }

    Radio radio;
    PanelRun run;
};

// A road from the play button on.
struct RoadCase {
    const char* name;
    int mode;
    const char* rows;    // Files, addresses below the radio's with a slash in front, "gone".
    const char* trace;   // All states, or the first ones.
    const char* started; // Rows, in order.
    bool rests;          // Then nothing more comes.
};

constexpr RoadCase kRoads[] = {
    {"ModeTrackEndsWithIt",              0, "tone.mp3 tone.wav tone.mp4",                        "9 3 8",           "0",       true },
    {"ModeRepeatTrackRepeatsIt",         1, "tone.mp3 tone.wav",                                 "9 3 8 9 3 8 9 3", "0 0 0",   false},
    {"ModeSequenceGoesThroughOnce",
     2,                                     "tone.mp3 tone.wav tone.mp4",
     "9 3 8 9 3 8 9 3 8",                                                                                           "0 1 2",
     true                                                                                                                           },
    {"ModeRepeatGroupWraps",
     3,                                     "tone.mp3 tone.wav tone.mp4",
     "9 3 8 9 3 8 9 3 8 9 3",                                                                                       "0 1 2 0",
     false                                                                                                                          },
    {"ModeRandomTakesTheChosen",
     4,                                     "tone.mp3 tone.wav tone.mp4",
     "9 3 8 9 3 8 9 3",                                                                                             "0 2 2",
     false                                                                                                                          },
    {"AGoneFileIsPassedOverUnopened",    2, "tone.mp3 gone tone.wav",                            "9 3 8 9 3 8",     "0 2",     true },
    {"AGoneFileAtTheStartIsTried",       2, "gone tone.wav",                                     "9 10 9 3 8",      "1",       true },
    {"AFileWithoutALengthPlaysToItsEnd", 2, "nolength.mkv tone.wav",                             "9 3 8 9 3 8",     "0 1",     true },
    {"GarbageIsPassedOver",
     2,                                     "text.mp3 empty.mp3 zeros.mp3 picture.mp3 tone.wav",
     "9 8 9 8 9 8 9 8 9 3 8",                                                                                       "4",
     true                                                                                                                           },
    {"GarbageThatIsRepeatedRests",       1, "text.mp3",                                          "9 8 9 1",         "",        true },
    {"AGroupOfGarbageRests",             3, "text.mp3 zeros.mp3",                                "9 8 9 8 9 1",     "",        true },
    {"AStreamThatDiesLeadsToAFile",      2, "/dies /dies tone.wav",                              "9 6 3 8 9 3 8",   "0 2",     true },
    {"AStreamThatIsNotThereToo",         2, "/nowhere tone.wav",                                 "9 8 9 3 8",       "1",       true },
    {"AFileOnAServerHasItsLength",       2, "/file.mp3",                                         "9 6 7 3 8",       "0",       true },
};

class RoadTest : public PanelRoadsTest, public testing::WithParamInterface<RoadCase> {};

TEST_P(RoadTest, LeadsToItsEnd)
{
    const RoadCase& row = GetParam();
    tunehive::SetPlayMode(row.mode);
    AddRows(row.rows);
    run.page.randomRow = 2;
    run.Press(u"PlayBtn");
    if (row.rests) {
        ExpectRest();
    } else {
        run.RunToStarts((std::string_view(row.started).size() + 1) / 2);
        EXPECT_TRUE(run.IsShown(u"PauseBtn"));
        EXPECT_EQ(run.host.signs.size(), 1U);
        EXPECT_FALSE(run.Bar().IsLocked());
    }
    EXPECT_EQ(run.GetTrace(), row.trace);
    EXPECT_EQ(run.GetStarted(), row.started);
}

INSTANTIATE_TEST_SUITE_P(Roads, RoadTest, testing::ValuesIn(kRoads), CaseName<RoadCase>);

TEST_F(PanelRoadsTest, PauseResumeAndSeekToANaturalEnd)
{
    AddRows("long.mp3 tone.wav");
    run.Press(u"PlayBtn");
    ASSERT_TRUE(run.RunUntil([&] { return run.Bar().GetPosition() == 1; }));
    EXPECT_EQ(run.Bar().GetMaximum(), 30);
    run.Press(u"PauseBtn");
    ASSERT_TRUE(run.RunToState(2));
    EXPECT_TRUE(run.IsShown(u"PlayBtn"));
    run.RunFor(1'200);
    EXPECT_EQ(run.Bar().GetPosition(), 1);
    run.Bar().SetPosition(20); // Dropped there while paused.
    run.Bar().FireEvent(ui::kControlEvent, nullptr);
    run.Press(u"PlayBtn");
    ASSERT_TRUE(run.RunUntil([&] { return run.Bar().GetPosition() == 21; }));
    EXPECT_NEAR(run.Player().GetPosition(), 21, 0.5);
    EXPECT_EQ(run.host.CountCalls("_KivoAPI_PluginSetStateSign"), 1U);
    run.panel->SeekTo(29.6);
    EXPECT_TRUE(run.RunToStarts(2));
    EXPECT_EQ(run.GetTrace(), "9 3 2 3 8 9 3");
    ExpectRest();
}

TEST_F(PanelRoadsTest, TheUsersWishIsTriedThoughTheFileHasGone)
{
    AddRows("tone.mp3 gone tone.wav");
    run.Press(u"PlayBtn");
    ASSERT_TRUE(run.RunToStarts(2));
    run.Press(u"PrevBtn");
    ASSERT_TRUE(run.RunToStarts(3));
    EXPECT_EQ(run.GetTrace(), "9 3 8 9 3 1 9 10 9 3");
    EXPECT_EQ(run.GetStarted(), "0 2 2");
}

TEST_F(PanelRoadsTest, ATrackThatGoesWhileItPlaysIsNotRepeated)
{
    const TempFolder folder;
    folder.Write("a.mp3", ReadMedia("tone.mp3"));
    run.Add(folder.GetNative() / "a.mp3");
    tunehive::SetPlayMode(1);
    run.Press(u"PlayBtn");
    ASSERT_TRUE(run.RunToState(3));
    std::filesystem::remove(folder.GetNative() / "a.mp3");
    ExpectRest();
    EXPECT_EQ(run.GetTrace(), "9 3 8");
}

TEST_F(PanelRoadsTest, AStreamThatStallsSaysSoAndGoesOn)
{
    AddRows("/stalls tone.wav");
    const int height = run.panel->GetHeight();
    run.Press(u"PlayBtn");
    EXPECT_TRUE(run.RunUntil([&] { return run.GetStateLine() == u"opening"; }));
    ASSERT_TRUE(run.RunToState(3));
    EXPECT_EQ(run.GetStateLine(), u"");
    EXPECT_EQ(run.panel->GetHeight(), height);
    ASSERT_TRUE(run.RunToState(6));
    EXPECT_TRUE(run.RunUntil([&] { return run.GetStateLine().ends_with(u" percent"); }));
    EXPECT_GT(run.panel->GetHeight(), height);
    ASSERT_TRUE(run.RunToState(3));
    EXPECT_EQ(run.GetStateLine(), u"");
    EXPECT_EQ(run.panel->GetHeight(), height);
    EXPECT_TRUE(run.RunToStarts(2));
    EXPECT_EQ(run.GetTrace(), "9 6 3 6 3 8 9 3") << "It ended, and the next one plays.";
}

TEST_F(PanelRoadsTest, ARadiosSongTitlesChangeWhileItPlays)
{
    AddRows("/titles");
    run.Press(u"PlayBtn");
    const auto title = [&] { return run.Player().GetItemInfo(u"Title"); };
    EXPECT_TRUE(run.RunUntil([&] { return title() == u"First"; }));
    EXPECT_TRUE(run.RunUntil([&] { return title() == u"Second"; }));
    EXPECT_EQ(run.GetTrace(), "9 6 3");
    EXPECT_EQ(run.host.signs.size(), 1U);
    run.Press(u"PauseBtn");
    ASSERT_TRUE(run.RunToState(2));
    run.Press(u"PlayBtn");
    ASSERT_TRUE(run.RunToState(3));
    run.Press(u"StopBtn");
    ExpectRest();
}

TEST_F(PanelRoadsTest, NextTwentyTimesInASecondPlaysTheLast)
{
    tunehive::SetPlayMode(3);
    AddRows("long.mp3 tone.wav long.mp4");
    run.Press(u"PlayBtn");
    ASSERT_TRUE(run.RunToState(3));
    ResetLongestTurn();
    for (int i = 0; i < 20; ++i) {
        run.Press(u"NextBtn");
        run.RunFor(45);
    }
    ASSERT_TRUE(run.RunToState(3));
    EXPECT_EQ(run.page.mark, 2);
    EXPECT_EQ(run.Player().GetURL(), run.page.rows[2]);
    EXPECT_LT(GetLongestTurn(), 50);
    EXPECT_EQ(run.Bar().GetMaximum(), 20);
    // One timer counts, however many have been started.
    ASSERT_TRUE(run.RunUntil([&] { return run.Player().GetPosition() > 2.5; }));
    EXPECT_NEAR(run.Bar().GetPosition(), 2, 1);
    EXPECT_EQ(run.host.signs.size(), 1U);
}

struct UnloadCase {
    const char* name;
    const char* row; // As a road's.
    int state;       // That must have been reported before; 0: at once.
    bool isFull;     // Screen.
};

class UnloadTest : public PanelRoadsTest, public testing::WithParamInterface<UnloadCase> {};

TEST_P(UnloadTest, LeavesNothingBehind)
{
    const UnloadCase& row = GetParam();
    AddRows(std::string(row.row) + " tone.wav");
    run.Press(u"PlayBtn");
    if (row.state != 0) {
        ASSERT_TRUE(run.RunToState(row.state == 2 ? 3 : row.state));
    }
    if (row.state == 2) {
        run.Press(u"PauseBtn");
        ASSERT_TRUE(run.RunToState(2));
    }
    run.Player().SetFullScreen(row.isFull);
    const std::string trace = run.GetTrace();
    ResetLongestTurn();
    run.Unload();
    EXPECT_EQ(TimerService::Get().GetNextDelay(), -1);
    test::RunFor(200);
    EXPECT_EQ(run.GetTrace(), trace) << "Nobody tells any more.";
    EXPECT_EQ(run.host.CountPosted(), 0U);
    EXPECT_TRUE(run.host.watches.empty());
    EXPECT_LT(GetLongestTurn(), 50);
}

constexpr UnloadCase kUnloads[] = {
    {"BeforeTheFirstState", "long.mp3", 0,  false},
    {"WhileOpening",        "long.mp3", 9,  false},
    {"WhilePlaying",        "long.mp3", 3,  false},
    {"InAVideo",            "long.mp4", 3,  false},
    {"InFullScreen",        "long.mp4", 3,  true },
    {"WhilePaused",         "long.mp3", 2,  false},
    {"AtTheEnd",            "tone.wav", 8,  false},
    {"AtAGoneFile",         "gone",     10, false},
    {"AtGarbage",           "text.mp3", 8,  false},
    {"WhileBuffering",      "/hangs",   6,  false},
    {"AtADeadStream",       "/dies",    8,  false},
    {"InARadio",            "/titles",  3,  false},
};
INSTANTIATE_TEST_SUITE_P(Cases, UnloadTest, testing::ValuesIn(kUnloads), CaseName<UnloadCase>);

} // namespace

} // namespace kivo::test
