// What CPlayerPanel does beside its states: it counts seconds, tells the library, and chooses the
// next track.

#include "player/PlayerPanel.h"

#include "medialib/IMediaLibManager.h"
#include "platform/base/TimerService.h"
#include "shell/base/Settings.h"
#include "shell/contracts/common/Text.h"
#include "shell/contracts/ui/SkinManager.h"
#include "tests/player/BuiltPanel.h"
#include "tests/support/CaseName.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

namespace kivo::test {

namespace {

using tunehive::SetPlayMode;

class PlayerPanelTest : public testing::Test, public TracksPanel {};

struct CountCase {
    const char* name;
    double length;
    int seconds; // That pass after the start.
    int position;
    std::size_t posted;
};

constexpr CountCase kCounts[] = {
    {"EachSecondMovesTheBar",    200.7, 3,  3, 0},
    {"TheEndIsWaitedFor",        4.9,   6,  4, 0},
    {"AndComesInTheThirdSecond", 4.9,   7,  0, 1},
    {"ALengthOfTwoIsCounted",    2.0,   5,  0, 1},
    {"AShorterOneNever",         1.9,   30, 1, 0},
};

class CountTest : public PlayerPanelTest, public testing::WithParamInterface<CountCase> {};

TEST_P(CountTest, Counts)
{
    const CountCase& row = GetParam();
    PlayRow(0, row.length);
    PassSeconds(row.seconds);
    EXPECT_EQ(Bar().GetPosition(), row.position);
    EXPECT_EQ(host.CountPosted(), row.posted);
}

INSTANTIATE_TEST_SUITE_P(Cases, CountTest, testing::ValuesIn(kCounts), CaseName<CountCase>);

TEST_F(PlayerPanelTest, AReportedEndOrAStopClearsTheCountAtTheEnd)
{
    for (const int state : {8, 1}) {
        SCOPED_TRACE(state);
        PlayRow(0, 4);
        PassSeconds(6);
        EXPECT_EQ(host.CountPosted(), 0U);
        Report(state);
        host.ReleasePosted();
        PlayRow(0, 4);
        PassSeconds(6);
        EXPECT_EQ(host.CountPosted(), 0U);
        Report(1);
    }
}

TEST_F(PlayerPanelTest, BufferingTellsItsProgressAndLaysThePageOutOnce)
{
    player.url = u"http://127.0.0.1/radio";
    Report(6);
    for (const char16_t* line : {u"40 percent", u"75 percent"}) {
        player.buffering = line[0] == u'4' ? 40 : 75;
        Pass(100);
        EXPECT_EQ(GetStateLine(), line);
        EXPECT_EQ(panel->GetHeight(), 82);
    }
    EXPECT_EQ(page.layouts, 1);
}

TEST_F(PlayerPanelTest, TheLibraryIsToldTheLengthOfEachStartOnce)
{
    tunehive::GetMediaLibManager()->Initialize(folder.GetPath("lib/"));
    const auto getLength = [this] {
        tunehive::MediaInfo info;
        tunehive::GetMediaLibManager()->GetMediaInfo(page.rows[0], info);
        return tunehive::GetInfoText(info, tunehive::kInfoLength);
    };
    PlayRow(0, 200.7);
    EXPECT_EQ(getLength(), u"201");
    PassSeconds(5);
    Report(2);
    PassSeconds(5);
    player.duration = 999;
    Report(3);
    EXPECT_EQ(getLength(), u"201");
    PassSeconds(1);
    EXPECT_EQ(Bar().GetPosition(), 6) << "It goes on where it stood.";
    tunehive::DestroyMediaLibManager();
}

TEST_F(PlayerPanelTest, ANextIsSetByItsTaskUnlessItIsOvertaken)
{
    PlayRow(0, 100);
    Report(8);
    EXPECT_EQ(TakeCalls(), "stop");
    EXPECT_FALSE(panel->IsAtRest());
    host.RunPosted();
    EXPECT_EQ(TakeCalls(), "set 1");
    Report(9);
    EXPECT_TRUE(panel->IsAtRest());
    for (const char16_t* button : {u"StopBtn", u"NextBtn"}) {
        PlayRow(0, 100);
        Report(8);
        Press(button);
        static_cast<void>(TakeCalls());
        host.RunPosted();
        EXPECT_EQ(TakeCalls(), "");
    }
}

struct NextCase {
    const char* name;
    int mode;
    int from;         // -1: nothing is marked.
    const char* rows; // '+' exists, '-' is gone, 's' is a stream.
    int next;         // The row that is posted; -1: none.
    int markAfter;
};

constexpr NextCase kNexts[] = {
    {"ModeTrackStopsAndKeepsTheMark",      0,  0,  "+++", -1, 0 },
    {"ModeRepeatTakesTheSame",             1,  1,  "+++", 1,  1 },
    {"ModeRepeatOfAGoneFileStops",         1,  1,  "+-+", -1, 1 },
    {"ModeRepeatOfAStreamStops",           1,  0,  "s",   -1, 0 },
    {"SequenceGoesOn",                     2,  0,  "+++", 1,  1 },
    {"SequencePassesOverAGoneFile",        2,  0,  "+-+", 2,  2 },
    {"SequencePassesOverAStream",          2,  0,  "+s+", 2,  2 },
    {"SequenceEndsAtTheLast",              2,  2,  "+++", -1, -1},
    {"SequenceWithoutAMarkStartsAtTheTop", 2,  -1, "+++", 0,  0 },
    {"GroupWraps",                         3,  2,  "+++", 0,  0 },
    {"GroupOfOneRepeatsIt",                3,  0,  "+",   0,  0 },
    {"GroupOfStreamsStopsWhereItBegan",    3,  0,  "sss", -1, 0 },
    {"RandomTakesTheChosen",               4,  0,  "+++", 1,  1 },
    {"RandomOfOneRepeatsIt",               4,  0,  "+",   0,  0 },
    {"AModeOfNoMeaningStops",              7,  0,  "+++", -1, 0 },
    {"ANegativeModeStops",                 -1, 0,  "+++", -1, 0 },
    {"AnEmptyGroupStops",                  3,  -1, "",    -1, -1},
};

class AutoNextTest : public PlayerPanelTest, public testing::WithParamInterface<NextCase> {};

TEST_P(AutoNextTest, Chooses)
{
    const NextCase& row = GetParam();
    page.rows.clear();
    for (const char kind : std::string_view(row.rows)) {
        const std::string name = "t" + std::to_string(page.rows.size()) + ".mp3";
        if (kind == '+')
            page.rows.push_back(WriteTrack(name));
        else
            page.rows.push_back((kind == 's' ? u"http://127.0.0.1/" : u"/nowhere/") +
                                common::PathToText(name));
    }
    page.mark = row.from;
    page.randomRow = 1;
    SetPlayMode(row.mode);
    Report(8);
    host.RunPosted();
    EXPECT_EQ(TakeCalls(), row.next < 0 ? "stop" : "stop set " + std::to_string(row.next));
    EXPECT_EQ(page.mark, row.markAfter);
}

INSTANTIATE_TEST_SUITE_P(Cases, AutoNextTest, testing::ValuesIn(kNexts), CaseName<NextCase>);

TEST_F(PlayerPanelTest, AReleasedPanelLeavesNothingBehind)
{
    PlayRow(0, 100);
    panel.reset();
    EXPECT_EQ(TimerService::Get().GetNextDelay(), -1);
    EXPECT_TRUE(host.watches.empty());
    manager.NotifyState(3); // Nobody listens.
    EXPECT_EQ(tunehive::CPlayerPanel::GetInstance(), nullptr);
}

TEST_F(PlayerPanelTest, AnIncompletePanelIsNotBuiltAndBearsEveryState)
{
    ui::CSkinManager::GetInstance()->Clear();
    ui::CSkinManager::GetInstance()->IncludeBuildText(
        R"(<build><node key="KIVO Plugins TuneHiveWindow PlayerPanel">
           <button id="PlayBtn"/><button id="PauseBtn"/></node></build>)");
    panel.reset(new tunehive::CPlayerPanel(&page));
    panel->Build(nullptr);
    panel->AttachPlayer();
    EXPECT_EQ(tunehive::CPlayerPanel::GetInstance(), nullptr);
    panel->OnPlayerState(nullptr);
    for (const int state : {9, 6, 3, 2, 10, 1, 8})
        Report(state);
    panel->PressNext();
    panel->SeekTo(3);
    Pass(1'000);
}

// Fifty tracks with pauses, faults, a mode that changes and a user who skips.
TEST_F(PlayerPanelTest, AnEvening)
{
    page.rows.clear();
    for (int i = 0; i < 50; ++i) {
        const std::string name = "track" + std::to_string(i) + ".mp3";
        page.rows.push_back(i % 7 == 3 ? u"/nowhere/" + common::PathToText(name)
                                       : WriteTrack(name));
    }
    page.mark = 0;
    Press(u"PlayBtn");
    int played = 0;
    for (int turn = 0; turn < 60; ++turn) {
        SCOPED_TRACE(turn);
        // Through the group, repeating it near its end, and a while the same track.
        const bool isRepeated = turn % 20 == 10;
        SetPlayMode(isRepeated ? 1 : 2 + (page.mark > 40 ? 1 : 0));
        if (turn % 9 == 4) { // A file that can't be played ends at once.
            Report(9);
            Report(8);
        } else {
            Start(30.0 + turn);
            ++played;
            PassSeconds(10);
            if (turn % 4 == 1) {
                Press(u"PauseBtn");
                Report(2);
                PassSeconds(60);
                Press(u"PlayBtn");
                Report(3);
            }
            ASSERT_EQ(Bar().GetPosition(), 10);
            panel->SeekTo(15);
            if (turn % 5 == 2) {
                Press(u"NextBtn");
                Report(1);
                if (page.mark % 7 == 3) { // The button took a gone one.
                    Report(9);
                    Report(10);
                }
            } else if (turn % 5 == 3) {
                PassSeconds(18 + turn); // The control never reports the end.
            } else {
                Report(8);
            }
        }
        host.RunPosted();
        ASSERT_NE(page.mark, -1);
        ASSERT_NE(page.mark % 7, 3);
    }
    EXPECT_GT(played, 50);
    EXPECT_LE(host.signs.size(), 1U);
}

} // namespace

} // namespace kivo::test
