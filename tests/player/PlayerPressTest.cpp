// The buttons of CPlayerPanel, and other hands on the player.

#include "platform/base/TimerService.h"
#include "shell/base/Settings.h"
#include "shell/contracts/base/Beyond.h"
#include "shell/contracts/ui/SkinButton.h"
#include "tests/player/BuiltPanel.h"
#include "tests/support/CaseName.h"

#include <gtest/gtest.h>

#include <string_view>
#include <utility>
#include <vector>

namespace kivo::test {

namespace {

using tunehive::SetPlayMode;

class PlayerPressTest : public testing::Test, public TracksPanel {};

struct PressCase {
    const char* name;
    const char16_t* button;
    int mode;
    int from;     // The marked row of a, gone, c, film; -1: none.
    int before;   // A state that is reported first; 0: none.
    int selected; // What the list says when it is asked to play its selection.
    const char* calls;
};

constexpr PressCase kPresses[] = {
    {"PlayResumesWhateverIsSelected",       u"PlayBtn",  2, 0,  2, 1, "play"        },
    {"PlayLeavesTheSelectionToTheList",     u"PlayBtn",  2, 0,  0, 1, ""            },
    {"PlayTakesTheMarked",                  u"PlayBtn",  2, 2,  0, 0, "set 2"       },
    {"PlayTakesTheMarkedThoughItHasGone",   u"PlayBtn",  2, 1,  0, 0, "set 1"       },
    {"PlayOpensThePaneForAFilm",            u"PlayBtn",  2, 3,  0, 0, "set 3 pane 2"},
    {"PlayWithoutAMarkDoesNothing",         u"PlayBtn",  2, -1, 0, 0, ""            },
    {"PauseReachesThePlayer",               u"PauseBtn", 2, 0,  3, 0, "pause"       },
    {"StopReachesThePlayer",                u"StopBtn",  2, 0,  3, 0, "stop"        },
    {"NextInModeTrackTakesTheNext",         u"NextBtn",  0, 0,  0, 0, "stop set 1"  },
    {"NextInModeRepeatStopsAtTheLast",      u"NextBtn",  1, 3,  0, 0, "stop"        },
    {"NextInSequenceStopsAtTheLast",        u"NextBtn",  2, 3,  0, 0, "stop"        },
    {"NextInModeGroupWraps",                u"NextBtn",  3, 3,  0, 0, "stop set 0"  },
    {"NextInModeRandomIsRandom",            u"NextBtn",  4, 0,  0, 0, "stop set 2"  },
    {"PreviousInSequenceStopsAtTheTop",     u"PrevBtn",  2, 0,  0, 0, "stop"        },
    {"PreviousInSequenceTakesTheOneBefore", u"PrevBtn",  2, 2,  2, 0, "stop set 1"  },
    {"PreviousInModeGroupWraps",            u"PrevBtn",  3, 0,  0, 0, "stop set 3"  },
    {"PreviousInModeRandomIsRandom",        u"PrevBtn",  4, 0,  0, 0, "stop set 2"  },
    {"ThePaneOpens",                        u"LyricBtn", 2, 0,  0, 0, "pane 1"      },
    {"NobodyListensToTheLast",              u"PopBtn",   2, 0,  3, 0, ""            },
};

class PressTest : public PlayerPressTest, public testing::WithParamInterface<PressCase> {};

TEST_P(PressTest, Does)
{
    const PressCase& row = GetParam();
    page.rows[1] = u"/nowhere/gone.mp3";
    page.rows.push_back(WriteTrack("film.avi"));
    page.mark = row.from;
    page.randomRow = 2;
    page.selected = row.selected;
    player.url = page.Current();
    player.duration = 50;
    SetPlayMode(row.mode);
    if (row.before != 0)
        Report(row.before);
    Press(row.button);
    EXPECT_EQ(TakeCalls(), row.calls);
    if (std::string_view(row.calls).starts_with("stop")) {
        EXPECT_TRUE(Bar().IsLocked());
        EXPECT_EQ(TimerService::Get().GetNextDelay(), -1);
    }
    if (std::string_view(row.calls).starts_with("stop set")) {
        EXPECT_EQ(panel->GetPausedFlag(), 0);
    }
}

INSTANTIATE_TEST_SUITE_P(Cases, PressTest, testing::ValuesIn(kPresses), CaseName<PressCase>);

TEST_F(PlayerPressTest, OtherButtonsReachTheirPlaces)
{
    page.paneVisible = true;
    Press(u"LyricBtn");
    EXPECT_EQ(page.paneModes, std::vector<int>{0});
    Press(u"VolBtn");
    EXPECT_EQ(page.volActions, std::vector<int>{2});
    Press(u"StopBtn");
    EXPECT_EQ(panel->GetUserStopMark(), 1);
    Press(u"PlayBtn");
    EXPECT_EQ(panel->GetUserStopMark(), 0);
    PlayRow(0, 100);
    Bar().SetPosition(40);
    Bar().FireEvent(ui::kControlEvent, nullptr);
    EXPECT_EQ(player.position, 40);
}

TEST_F(PlayerPressTest, ASeekFromElsewhereMovesTheCountedPositionToo)
{
    panel->SeekTo(30); // Nothing is open yet: the bar is locked.
    EXPECT_EQ(Bar().GetPosition(), 0);
    PlayRow(0, 100);
    for (const auto& [seconds, position] : {
             std::pair{60.9,  60 },
             {20.0,  20 },
             {-5.0,  0  },
             {1e300, 100},
             {97.0,  97 }
    }) {
        panel->SeekTo(seconds);
        EXPECT_EQ(player.position, seconds);
        EXPECT_EQ(Bar().GetPosition(), position);
    }
    PassSeconds(6); // Three to the counted end, three to wait there.
    EXPECT_EQ(host.CountPosted(), 1U);
}

TEST_F(PlayerPressTest, TheWheelOverTheVolumeButtonTurnsTheVolume)
{
    auto& button = dynamic_cast<ui::CSkinButton&>(*panel->FindControlRecusive(u"VolBtn"));
    // The third is half a notch, the fourth the other half.
    for (const auto& [angle, volume] : {
             std::pair{120,        62 },
             {-240,       58 },
             {60,         58 },
             {60,         60 },
             {2'000'000,  100},
             {-9'999'999, 0  }
    }) {
        EXPECT_TRUE(button.OnPeerWheel(angle));
        EXPECT_EQ(player.volume, volume) << angle;
    }
    button.SetEnabled(0);
    EXPECT_FALSE(button.OnPeerWheel(120));
    EXPECT_EQ(player.volume, 0);
}

TEST_F(PlayerPressTest, BeyondPlayWithoutAMarkDoesWhatANewcomerMeans)
{
    SetBeyond(true);
    Press(u"PlayBtn");
    EXPECT_EQ(TakeCalls(), "set 0");
    page.rows.clear();
    page.mark = -1;
    page.selectedElsewhere = 1;
    Press(u"PlayBtn");
    EXPECT_EQ(page.playedElsewhere, 1);
    EXPECT_EQ(page.addMenus, 0);
    page.selectedElsewhere = 0;
    Press(u"PlayBtn");
    EXPECT_EQ(page.addMenus, 1);
}

TEST_F(PlayerPressTest, BeyondTheButtonTellsTheTruth)
{
    SetBeyond(true);
    PlayRow(0, 10);
    Press(u"NextBtn");
    Report(1); // The old track's end, behind the new address.
    EXPECT_FALSE(IsShown(u"PlayBtn"));

    PlayRow(2, 10);
    Press(u"NextBtn"); // There is none.
    EXPECT_TRUE(IsShown(u"PlayBtn"));

    page.mark = 0;
    Press(u"PlayBtn");
    Start(0); // Without a length: stopped.
    Report(1);
    EXPECT_TRUE(IsShown(u"PlayBtn"));

    PlayRow(0, 10);
    page.rows = {u"/nowhere/gone.mp3"};
    player.url = page.rows[0];
    Report(10);
    EXPECT_TRUE(IsShown(u"PlayBtn"));
}

TEST_F(PlayerPressTest, BeyondStopIsThereForWhatIsOpen)
{
    SetBeyond(true);
    const auto canStop = [this] { return panel->FindControlRecusive(u"StopBtn")->IsEnabled(); };
    Report(1);
    EXPECT_FALSE(canStop());
    page.mark = 0;
    Press(u"PlayBtn");
    EXPECT_TRUE(canStop()) << "An address is on its way.";
    for (const int state : {9, 3, 2, 6, 3}) {
        Report(state);
        EXPECT_TRUE(canStop()) << state;
    }
    Press(u"StopBtn");
    Report(1);
    EXPECT_FALSE(canStop());
    PlayRow(2, 10); // From elsewhere, as the tree plays its rows.
    EXPECT_TRUE(canStop());
    Report(8); // The last track's end.
    EXPECT_FALSE(canStop());
}

TEST_F(PlayerPressTest, BeyondTheButtonsOfWhatIsOpenStayPressedIn)
{
    for (const bool isBeyond : {false, true}) {
        SetBeyond(isBeyond);
        for (const bool isOpen : {true, false}) {
            panel->ShowPaneOpen(isOpen);
            panel->ShowVolumeOpen(isOpen);
            for (const char16_t* id : {u"LyricBtn", u"VolBtn"})
                EXPECT_EQ(
                    dynamic_cast<ui::CSkinButton&>(*panel->FindControlRecusive(id)).IsChecked(),
                    isBeyond && isOpen);
        }
    }
}

TEST_F(PlayerPressTest, BeyondNobodyWaitsWhenStoppedOrPausedInMidBuffering)
{
    SetBeyond(true);
    player.url = u"http://127.0.0.1/radio";
    for (const int state : {1, 2}) {
        SCOPED_TRACE(state);
        Report(6);
        Pass(100);
        ASSERT_TRUE(IsShown(u"StatePanel"));
        Report(state);
        EXPECT_FALSE(IsShown(u"StatePanel"));
        EXPECT_EQ(TimerService::Get().GetNextDelay(), -1);
    }
}

} // namespace

} // namespace kivo::test
