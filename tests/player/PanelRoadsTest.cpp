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
        EXPECT_TRUE(run.Panel().IsAtRest());
        // Joined tracks keep the device a moment for the last of the sound.
        EXPECT_TRUE(run.RunUntil([] { return TimerService::Get().GetNextDelay() == -1; }, 2'000));
    }

    Radio radio;
    PanelRun run;
};

struct ModeCase {
    const char* name;
    int mode;
    const char* started; // Rows, the first four.
    bool rests;          // After these.
};

class ModeTest : public PanelRoadsTest, public testing::WithParamInterface<ModeCase> {};

TEST_P(ModeTest, ThroughThreeFilesToTheirNaturalEnds)
{
    const ModeCase& row = GetParam();
    tunehive::SetPlayMode(row.mode);
    for (const char* file : {"tone.mp3", "tone.wav", "tone.mp4"})
        run.AddFile(file);
    run.page.randomRow = 2;
    run.Press(u"PlayBtn");
    const std::string expected = row.started;
    run.RunToStarts((expected.size() + 1) / 2);
    EXPECT_EQ(run.GetStarted(), expected);
    if (row.rests) {
        ExpectRest();
        EXPECT_EQ(run.GetStarted(), expected);
        return;
    }
    EXPECT_TRUE(run.IsShown(u"PauseBtn"));
    EXPECT_EQ(run.host.signs.size(), 1U);
    EXPECT_FALSE(run.Bar().IsLocked());
}

constexpr ModeCase kModes[] = {
    {"Track",       0, "0",       true },
    {"RepeatTrack", 1, "0 0 0",   false},
    {"Sequence",    2, "0 1 2",   true },
    {"RepeatGroup", 3, "0 1 2 0", false},
    {"Random",      4, "0 2 2",   false},
};
INSTANTIATE_TEST_SUITE_P(Modes, ModeTest, testing::ValuesIn(kModes), CaseName<ModeCase>);

TEST_F(PanelRoadsTest, PauseResumeAndSeekToANaturalEnd)
{
    run.AddFile("long.mp3");
    run.AddFile("tone.wav");
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
    run.Panel().SeekTo(29.6);
    EXPECT_TRUE(run.RunToStarts(2));
    EXPECT_EQ(run.GetTrace(), "9 3 2 3 8 9 3");
    ExpectRest();
}

TEST_F(PanelRoadsTest, FilesThatHaveGoneAreLeftBehind)
{
    run.AddFile("tone.mp3");
    run.Add("/nowhere/gone.mp3");
    run.AddFile("tone.wav");
    run.Press(u"PlayBtn");
    ASSERT_TRUE(run.RunToStarts(2));
    EXPECT_EQ(run.GetTrace(), "9 3 8 9 3") << "Passed over unopened.";
    run.Press(u"PrevBtn"); // The user's wish is tried.
    ASSERT_TRUE(run.RunToStarts(3));
    EXPECT_EQ(run.GetTrace(), "9 3 8 9 3 1 9 10 9 3");
    EXPECT_EQ(run.GetStarted(), "0 2 2");
    ExpectRest();
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

TEST_F(PanelRoadsTest, AFileWithoutALengthPlaysToItsEnd)
{
    run.AddFile("nolength.mkv");
    run.AddFile("tone.wav");
    run.Press(u"PlayBtn");
    ASSERT_TRUE(run.RunToState(3));
    EXPECT_EQ(run.Bar().GetMaximum(), 0);
    EXPECT_EQ(run.host.signs.size(), 1U);
    EXPECT_TRUE(run.RunToStarts(2));
    EXPECT_EQ(run.GetTrace(), "9 3 8 9 3");
}

TEST_F(PanelRoadsTest, GarbageIsPassedOver)
{
    for (const char* file : {"text.mp3", "empty.mp3", "zeros.mp3", "picture.mp3", "tone.wav"})
        run.AddFile(file);
    run.Press(u"PlayBtn");
    ASSERT_TRUE(run.RunToStarts(1));
    EXPECT_EQ(run.GetTrace(), "9 8 9 8 9 8 9 8 9 3");
    EXPECT_EQ(run.GetStarted(), "4");
}

TEST_F(PanelRoadsTest, GarbageThatIsRepeatedComesToRest)
{
    run.AddFile("text.mp3");
    run.AddFile("zeros.mp3");
    for (const int mode : {1, 3}) {
        SCOPED_TRACE(mode);
        tunehive::SetPlayMode(mode);
        run.Press(u"PlayBtn");
        ExpectRest();
        EXPECT_EQ(run.GetStarted(), "");
    }
}

TEST_F(PanelRoadsTest, AStreamThatStallsSaysSoAndGoesOn)
{
    run.Add(radio.GetUrl("/stalls"));
    run.AddFile("tone.wav");
    const int height = run.Panel().GetHeight();
    run.Press(u"PlayBtn");
    EXPECT_TRUE(run.RunUntil([&] { return run.GetStateLine() == u"..."; }));
    ASSERT_TRUE(run.RunToState(3));
    EXPECT_EQ(run.GetStateLine(), u"");
    EXPECT_EQ(run.Panel().GetHeight(), height);
    ASSERT_TRUE(run.RunToState(6));
    EXPECT_TRUE(run.RunUntil([&] { return run.GetStateLine().ends_with(u" percent"); }));
    EXPECT_GT(run.Panel().GetHeight(), height);
    ASSERT_TRUE(run.RunToState(3));
    EXPECT_EQ(run.GetStateLine(), u"");
    EXPECT_EQ(run.Panel().GetHeight(), height);
    EXPECT_TRUE(run.RunToStarts(2));
    EXPECT_EQ(run.GetTrace(), "9 6 3 6 3 8 9 3") << "It ended, and the next one plays.";
}

TEST_F(PanelRoadsTest, AStreamThatDiesLeadsToTheNextFile)
{
    run.Add(radio.GetUrl("/dies"));
    run.Add(radio.GetUrl("/nowhere"));
    run.AddFile("tone.wav");
    run.Press(u"PlayBtn");
    ASSERT_TRUE(run.RunToStarts(2));
    EXPECT_EQ(run.GetStarted(), "0 2") << "No stream is chosen without the user.";
    EXPECT_EQ(run.GetTrace(), "9 6 3 8 9 3");
    ExpectRest();
}

TEST_F(PanelRoadsTest, AFileOnAServerHasItsLengthAndCountsIt)
{
    run.Add(radio.GetUrl("/file.mp3"));
    run.Press(u"PlayBtn");
    ASSERT_TRUE(run.RunToState(3));
    EXPECT_EQ(run.Bar().GetMaximum(), 0) << "0.6 s.";
    ExpectRest();
    EXPECT_EQ(run.GetTrace(), "9 6 7 3 8");
}

TEST_F(PanelRoadsTest, ARadiosSongTitlesChangeWhileItPlays)
{
    run.Add(radio.GetUrl("/titles"));
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
    for (const char* file : {"long.mp3", "tone.wav", "long.mp4"})
        run.AddFile(file);
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
    const char* row; // A file, or a path of the server with a slash in front.
    int state;       // That must have been reported before; 0: at once.
    bool isFull;     // Screen.
};

class UnloadTest : public PanelRoadsTest, public testing::WithParamInterface<UnloadCase> {};

TEST_P(UnloadTest, LeavesNothingBehind)
{
    const UnloadCase& row = GetParam();
    if (row.row[0] == '/' && row.row[1] != 'n')
        run.Add(radio.GetUrl(row.row));
    else if (row.row[0] == '/')
        run.Add(row.row);
    else
        run.AddFile(row.row);
    run.AddFile("tone.wav");
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
    {"BeforeTheFirstState", "long.mp3",     0,  false},
    {"WhileOpening",        "long.mp3",     9,  false},
    {"WhilePlaying",        "long.mp3",     3,  false},
    {"InAVideo",            "long.mp4",     3,  false},
    {"InFullScreen",        "long.mp4",     3,  true },
    {"WhilePaused",         "long.mp3",     2,  false},
    {"AtTheEnd",            "tone.wav",     8,  false},
    {"AtAGoneFile",         "/nowhere.mp3", 10, false},
    {"AtGarbage",           "text.mp3",     8,  false},
    {"WhileBuffering",      "/hangs",       6,  false},
    {"AtADeadStream",       "/dies",        8,  false},
    {"InARadio",            "/titles",      3,  false},
};
INSTANTIATE_TEST_SUITE_P(Cases, UnloadTest, testing::ValuesIn(kUnloads), CaseName<UnloadCase>);

} // namespace

} // namespace kivo::test
