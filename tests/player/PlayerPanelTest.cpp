#include "player/PlayerPanel.h"

#include "medialib/IMediaLibManager.h"
#include "platform/base/TimerService.h"
#include "player/MediaPlayerManager.h"
#include "player/MediaSliderBar.h"
#include "shell/base/Settings.h"
#include "shell/contracts/base/Beyond.h"
#include "shell/contracts/base/Released.h"
#include "shell/contracts/common/Language.h"
#include "shell/contracts/common/Text.h"
#include "shell/contracts/ui/SkinButton.h"
#include "shell/contracts/ui/SkinManager.h"
#include "tests/support/FakeHost.h"
#include "tests/support/FakePage.h"
#include "tests/support/ScriptedPlayer.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <string>

namespace kivo::tunehive {

namespace {

constexpr const char* kBuildFile = R"(
<build><node key="KIVO Plugins TuneHiveWindow PlayerPanel">
  <panel id="ControlPanel" dock="top" height="60">
    <button id="PrevBtn"/><button id="PlayBtn"/><button id="PauseBtn"/><button id="NextBtn"/>
    <button id="StopBtn"/><button id="VolBtn"/><button id="LyricBtn"/><button id="PopBtn"/>
  </panel>
  <panel id="StatePanel" dock="bottom" height="22"><label id="StateLab" dock="fill"/></panel>
</node></build>)";

} // namespace

// A built panel over a scripted player, with a clock that the test turns.
class PlayerPanelTest : public testing::Test {
public:
    PlayerPanelTest()
    {
        TimerService::Get().SetClock([this] { return now_; });
        ui::CSkinManager::GetInstance()->IncludeBuildText(kBuildFile);
        manager_.AddPlayer(&player_);
        static_cast<void>(manager_.GetPlayer(u"any")); // From here on it is the current one.
        panel_.reset(new CPlayerPanel(&page_));
        panel_->Build(nullptr);
        panel_->AttachPlayer();
        for (const char* name : {"a.mp3", "b.mp3", "c.mp3"})
            page_.rows.push_back(WriteTrack(name));
        player_.calls.clear();
        SetPlayMode(2);
    }
    ~PlayerPanelTest() override
    {
        panel_.reset();
        host_.ReleasePosted();
        manager_.Destroy();
        ui::CSkinManager::GetInstance()->Clear();
        TimerService::Get().SetClock({});
        SetBeyond(false);
    }

    [[nodiscard]] String WriteTrack(const std::string& name) const
    {
        folder_.Write(name, "sound");
        return folder_.GetPath(name);
    }
    void Report(int state)
    {
        player_.state = state;
        page_.playState = state;
        manager_.NotifyState(state);
    }
    void Press(const char16_t* id)
    {
        ui::CSkinObject* control = panel_->FindControlRecusive(id);
        ASSERT_NE(control, nullptr);
        control->FireEvent(ui::kControlEvent, nullptr);
    }
    void PassSeconds(int seconds)
    {
        for (int i = 0; i < seconds; ++i) {
            now_ += 1000;
            TimerService::Get().RunDue();
        }
    }
    // The player opens what was set and reports as a file of that length does.
    void Start(double seconds)
    {
        Report(9);
        player_.duration = seconds;
        Report(3);
    }
    void PlayRow(int row, double seconds)
    {
        page_.mark = row;
        player_.url = page_.Current();
        Start(seconds);
    }

    [[nodiscard]] bool IsShown(const char16_t* id) const
    {
        return panel_->FindControlRecusive(id)->IsSetVisible();
    }
    [[nodiscard]] CMediaSliderBar& Bar() const
    {
        return dynamic_cast<CMediaSliderBar&>(*panel_->FindControlRecusive(u"ProcessBar"));
    }
    [[nodiscard]] String StateLine() const
    {
        return IsShown(u"StatePanel") ? panel_->FindControlRecusive(u"StateLab")->GetText()
                                      : String();
    }

protected:
    std::int64_t now_ = 0;
    test::FakeHost host_;
    test::TempFolder folder_;
    test::FakePage page_;
    test::ScriptedPlayer player_;
    CMediaPlayerManager& manager_ = CMediaPlayerManager::GetInstance();
    Released<CPlayerPanel> panel_;
};

TEST_F(PlayerPanelTest, AStartShowsPauseCountsSecondsAndPublishesTheSign)
{
    PlayRow(0, 200.7);
    EXPECT_FALSE(IsShown(u"PlayBtn"));
    EXPECT_TRUE(IsShown(u"PauseBtn"));
    EXPECT_FALSE(Bar().IsLocked());
    EXPECT_EQ(Bar().GetMaximum(), 200);
    PassSeconds(3);
    EXPECT_EQ(Bar().GetPosition(), 3);
    ASSERT_EQ(host_.signs.size(), 1U);
    EXPECT_EQ(host_.signs[0].kind, u"music");
    EXPECT_TRUE(page_.paneModes.empty());
}

TEST_F(PlayerPanelTest, APauseStopsTheCounterAndAResumeGoesOnWhereItStood)
{
    PlayRow(0, 200.0);
    PassSeconds(5);
    Report(2);
    EXPECT_TRUE(IsShown(u"PlayBtn"));
    EXPECT_EQ(panel_->GetPausedFlag(), 1);
    PassSeconds(5);
    EXPECT_EQ(Bar().GetPosition(), 5);

    Press(u"PlayBtn");
    EXPECT_EQ(player_.TakeCalls(), std::vector<String>{u"play"});
    player_.duration = 999.0; // Not read again.
    Report(3);
    PassSeconds(1);
    EXPECT_EQ(Bar().GetPosition(), 6);
    EXPECT_EQ(Bar().GetMaximum(), 200);
    EXPECT_EQ(host_.signs.size(), 1U);
    EXPECT_EQ(host_.CountCalls("_KivoAPI_PluginSetStateSign"), 1U);
}

TEST_F(PlayerPanelTest, AnEndStopsAndPostsTheNextTrack)
{
    PlayRow(0, 100.0);
    player_.calls.clear();
    Report(8);
    EXPECT_EQ(player_.TakeCalls(), std::vector<String>{u"stop"});
    EXPECT_TRUE(Bar().IsLocked());
    EXPECT_TRUE(host_.signs.empty());
    EXPECT_FALSE(panel_->IsAtRest());
    EXPECT_EQ(host_.RunPosted(), 1);
    EXPECT_EQ(player_.TakeCalls(), std::vector<String>{u"set " + page_.rows[1]});
    Report(9);
    EXPECT_TRUE(panel_->IsAtRest());
}

TEST_F(PlayerPanelTest, AStopOrAnotherTrackOvertakesThePostedOne)
{
    for (const char16_t* button : {u"StopBtn", u"NextBtn"}) {
        PlayRow(0, 100.0);
        Report(8);
        Press(button);
        player_.calls.clear();
        host_.RunPosted();
        EXPECT_TRUE(player_.calls.empty());
    }
}

TEST_F(PlayerPanelTest, TheCountedEndWaitsThreeSecondsForTheReportedOne)
{
    PlayRow(0, 4.0);
    PassSeconds(4);
    EXPECT_EQ(Bar().GetPosition(), 4);
    PassSeconds(2);
    EXPECT_EQ(host_.CountPosted(), 0U);
    PassSeconds(1);
    EXPECT_EQ(host_.CountPosted(), 1U);
    host_.RunPosted();

    // A report of the end clears the count.
    Start(4.0);
    PassSeconds(6);
    Report(8);
    host_.RunPosted();
    Start(4.0);
    PassSeconds(6);
    EXPECT_EQ(host_.CountPosted(), 0U);
}

TEST_F(PlayerPanelTest, ATrackOfOneSecondIsNeverCountedToItsEnd)
{
    PlayRow(0, 1.9);
    PassSeconds(30);
    EXPECT_EQ(host_.CountPosted(), 0U);
}

TEST_F(PlayerPanelTest, AFileWithoutALengthIsStoppedWithoutASign)
{
    page_.mark = 0;
    player_.url = page_.Current();
    Start(0.0);
    EXPECT_EQ(player_.TakeCalls(), std::vector<String>{u"stop"});
    EXPECT_TRUE(Bar().IsLocked());
    EXPECT_TRUE(host_.signs.empty());
    EXPECT_EQ(host_.CountPosted(), 0U);
}

TEST_F(PlayerPanelTest, AStreamWithoutALengthPlaysWithoutACounter)
{
    player_.url = u"mms://127.0.0.1/radio";
    Start(0.0);
    EXPECT_TRUE(player_.TakeCalls().empty());
    EXPECT_EQ(Bar().GetMaximum(), 0);
    EXPECT_EQ(TimerService::Get().GetNextDelay(), -1);
    EXPECT_EQ(host_.signs.size(), 1U);
}

TEST_F(PlayerPanelTest, ABufferingStreamKeepsTheLengthAndShowsItsProgress)
{
    common::CMutiLanSupport::GetInstance()->AddText(u"STRID_TUNEHIVE_STATE_BUFFER", u"%d percent");
    player_.url = u"http://127.0.0.1/radio";
    const int lowHeight = panel_->GetHeight();
    Report(9);
    EXPECT_TRUE(IsShown(u"StatePanel"));
    EXPECT_EQ(panel_->GetHeight(), 82);
    Report(6);
    Report(6); // Twice in a row: still one timer.
    player_.buffering = 40;
    now_ += 100;
    TimerService::Get().RunDue();
    EXPECT_EQ(StateLine(), u"40 percent");
    Report(3);
    EXPECT_FALSE(IsShown(u"StatePanel"));
    EXPECT_EQ(panel_->GetHeight(), 60);
    EXPECT_NE(lowHeight, 82);
    EXPECT_EQ(TimerService::Get().GetNextDelay(), -1);
    EXPECT_EQ(Bar().GetMaximum(), 100); // As it was built: nothing has been opened freshly.
    EXPECT_EQ(host_.signs.size(), 1U);
}

TEST_F(PlayerPanelTest, AGoneFileLeadsToTheNextThatIsThere)
{
    page_.rows[1] = u"/nowhere/gone.mp3";
    page_.mark = 0;
    player_.url = u"/nowhere/first.mp3";
    Report(9);
    Report(10);
    EXPECT_EQ(host_.RunPosted(), 1);
    EXPECT_EQ(player_.TakeCalls(), std::vector<String>{u"set " + page_.rows[2]});
}

TEST_F(PlayerPanelTest, AReadyAddressIsLeftAlone)
{
    player_.url = u"http://127.0.0.1/x";
    Report(10);
    EXPECT_EQ(host_.CountPosted(), 0U);
}

struct NextCase {
    const char* name;
    int mode;
    int from;         // -1: nothing is marked.
    const char* rows; // '+' exists, '-' is gone, 's' is a stream.
    int next;         // The row that is posted; -1: none.
    int markAfter;
};

class AutoNextTest : public PlayerPanelTest, public testing::WithParamInterface<NextCase> {};

TEST_P(AutoNextTest, Chooses)
{
    const NextCase& row = GetParam();
    page_.rows.clear();
    for (std::size_t i = 0; row.rows[i] != '\0'; ++i) {
        const std::string name = "t" + std::to_string(i) + ".mp3";
        if (row.rows[i] == '+')
            page_.rows.push_back(WriteTrack(name));
        else if (row.rows[i] == 's')
            page_.rows.push_back(u"http://127.0.0.1/" + common::PathToText(name));
        else
            page_.rows.push_back(u"/nowhere/" + common::PathToText(name));
    }
    page_.mark = row.from;
    page_.randomRow = 1;
    SetPlayMode(row.mode);
    Report(8);
    player_.calls.clear();
    host_.RunPosted();
    const auto expected =
        row.next < 0
            ? std::vector<String>{}
            : std::vector<String>{u"set " + page_.rows[static_cast<std::size_t>(row.next)]};
    EXPECT_EQ(player_.TakeCalls(), expected);
    EXPECT_EQ(page_.mark, row.markAfter);
}

constexpr NextCase kNextCases[] = {
    {"ModeTrackStopsAndKeepsTheMark",      0, 0,  "+++", -1, 0 },
    {"ModeRepeatTakesTheSame",             1, 1,  "+++", 1,  1 },
    {"ModeRepeatOfAGoneFileStops",         1, 1,  "+-+", -1, 1 },
    {"ModeRepeatOfAStreamStops",           1, 0,  "s",   -1, 0 },
    {"SequenceGoesOn",                     2, 0,  "+++", 1,  1 },
    {"SequencePassesOverAGoneFile",        2, 0,  "+-+", 2,  2 },
    {"SequenceEndsAtTheLast",              2, 2,  "+++", -1, -1},
    {"SequenceWithoutAMarkStartsAtTheTop", 2, -1, "+++", 0,  0 },
    {"GroupWraps",                         3, 2,  "+++", 0,  0 },
    {"GroupOfOneRepeatsIt",                3, 0,  "+",   0,  0 },
    {"GroupOfStreamsStopsWhereItBegan",    3, 0,  "sss", -1, 0 },
    {"RandomTakesTheChosen",               4, 0,  "+++", 1,  1 },
    {"AModeOfNoMeaningStops",              7, 0,  "+++", -1, 0 },
    {"AnEmptyGroupStops",                  3, -1, "",    -1, -1},
};
INSTANTIATE_TEST_SUITE_P(Cases, AutoNextTest, testing::ValuesIn(kNextCases), [](const auto& row) {
    return std::string(row.param.name);
});

struct StepCase {
    const char* name;
    int mode;
    int from;
    const char16_t* button;
    int played; // -1: none.
};

class StepTest : public PlayerPanelTest, public testing::WithParamInterface<StepCase> {};

TEST_P(StepTest, Plays)
{
    const auto& [name, mode, from, button, played] = GetParam();
    page_.rows[1] = u"/nowhere/gone.mp3"; // A button plays what it gets, whether it exists or not.
    page_.mark = from;
    page_.randomRow = 2;
    SetPlayMode(mode);
    Press(button);
    std::vector<String> expected{u"stop"};
    if (played >= 0)
        expected.push_back(u"set " + page_.rows[static_cast<std::size_t>(played)]);
    EXPECT_EQ(player_.TakeCalls(), expected);
    EXPECT_TRUE(Bar().IsLocked());
}

constexpr StepCase kStepCases[] = {
    {"NextInModeTrackTakesTheNext",     0, 0, u"NextBtn", 1 },
    {"NextInModeRepeatStopsAtTheLast",  1, 2, u"NextBtn", -1},
    {"NextInModeGroupWraps",            3, 2, u"NextBtn", 0 },
    {"PreviousInSequenceStopsAtTheTop", 2, 0, u"PrevBtn", -1},
    {"PreviousInModeGroupWraps",        3, 0, u"PrevBtn", 2 },
    {"PreviousInModeRandomIsRandom",    4, 0, u"PrevBtn", 2 },
};
INSTANTIATE_TEST_SUITE_P(Cases, StepTest, testing::ValuesIn(kStepCases), [](const auto& row) {
    return std::string(row.param.name);
});

TEST_F(PlayerPanelTest, PlayTakesTheSelectionThenTheCurrentTrack)
{
    page_.selected = 1;
    Press(u"PlayBtn");
    EXPECT_TRUE(player_.TakeCalls().empty()); // The list plays its selection itself.
    page_.selected = 0;
    page_.mark = 1;
    Press(u"PlayBtn");
    EXPECT_EQ(player_.TakeCalls(), std::vector<String>{u"set " + page_.rows[1]});
    page_.mark = -1;
    Press(u"PlayBtn");
    EXPECT_TRUE(player_.TakeCalls().empty());
}

TEST_F(PlayerPanelTest, BeyondPlayWithoutAMarkDoesWhatANewcomerMeans)
{
    SetBeyond(true);
    Press(u"PlayBtn");
    EXPECT_EQ(player_.TakeCalls(), std::vector<String>{u"set " + page_.rows[0]});
    page_.rows.clear();
    page_.mark = -1;
    page_.selectedElsewhere = 1;
    Press(u"PlayBtn");
    EXPECT_EQ(page_.playedElsewhere, 1);
    EXPECT_EQ(page_.addMenus, 0);
    page_.selectedElsewhere = 0;
    Press(u"PlayBtn");
    EXPECT_EQ(page_.addMenus, 1);
}

TEST_F(PlayerPanelTest, BeyondTheButtonsTellTheTruth)
{
    SetBeyond(true);
    PlayRow(2, 10.0);
    Press(u"NextBtn"); // There is none.
    EXPECT_TRUE(IsShown(u"PlayBtn"));

    PlayRow(0, 10.0);
    Press(u"StopBtn");
    Report(1);
    EXPECT_TRUE(IsShown(u"PlayBtn"));

    page_.rows = {u"/nowhere/gone.mp3"};
    PlayRow(0, 10.0);
    Report(10);
    EXPECT_TRUE(IsShown(u"PlayBtn"));
}

TEST_F(PlayerPanelTest, BeyondStopIsThereForWhatIsOpen)
{
    SetBeyond(true);
    const auto canStop = [this] { return panel_->FindControlRecusive(u"StopBtn")->IsEnabled(); };
    Report(1);
    EXPECT_FALSE(canStop());
    page_.mark = 0;
    Press(u"PlayBtn");
    EXPECT_TRUE(canStop()) << "an address is on its way";
    for (const int state : {9, 3, 2, 6, 3}) {
        Report(state);
        EXPECT_TRUE(canStop()) << state;
    }
    Press(u"StopBtn");
    Report(1);
    EXPECT_FALSE(canStop());
    // From elsewhere, as the tree plays its rows.
    PlayRow(2, 10.0);
    EXPECT_TRUE(canStop());
    Report(8); // The last track's end.
    Report(1);
    EXPECT_FALSE(canStop());
}

TEST_F(PlayerPanelTest, BeyondTheButtonsOfWhatIsOpenStayPressedIn)
{
    const auto isIn = [this](const char16_t* id) {
        return dynamic_cast<ui::CSkinButton&>(*panel_->FindControlRecusive(id)).IsChecked();
    };
    panel_->ShowPaneOpen(true);
    EXPECT_FALSE(isIn(u"LyricBtn")) << "without the switch they look as ever";
    SetBeyond(true);
    panel_->ShowPaneOpen(true);
    EXPECT_TRUE(isIn(u"LyricBtn"));
    panel_->ShowVolumeOpen(true);
    EXPECT_TRUE(isIn(u"VolBtn"));
    panel_->ShowPaneOpen(false);
    panel_->ShowVolumeOpen(false);
    EXPECT_FALSE(isIn(u"LyricBtn"));
    EXPECT_FALSE(isIn(u"VolBtn"));
}

TEST_F(PlayerPanelTest, AStoppedStateBeforeTheNextStartLeavesThePauseButton)
{
    SetBeyond(true);
    PlayRow(0, 10.0);
    Press(u"NextBtn");
    Report(1); // The old track's end, behind the new address.
    EXPECT_FALSE(IsShown(u"PlayBtn"));
}

struct PictureCase {
    const char* name;
    const char16_t* url;
    bool buffers;
    int width;
    bool showsVideo;
};

class PictureTest : public PlayerPanelTest, public testing::WithParamInterface<PictureCase> {};

TEST_P(PictureTest, OpensThePaneForAMovingPicture)
{
    const auto& [name, url, buffers, width, showsVideo] = GetParam();
    player_.url = url;
    player_.width = width;
    player_.height = width;
    player_.duration = 10.0;
    Report(9);
    if (buffers)
        Report(6);
    Report(3);
    EXPECT_EQ(page_.paneModes, showsVideo ? std::vector<int>{4} : std::vector<int>{});
    ASSERT_EQ(host_.signs.size(), 1U);
    EXPECT_EQ(host_.signs[0].kind, width > 0 ? u"video" : u"music");
}

constexpr PictureCase kPictureCases[] = {
    {"OfALocalFile",               u"/a/b.avi",              false, 64, true },
    {"OfAStreamOnceItHasBuffered", u"mms://127.0.0.1/a.wmv", true,  64, true },
    {"NotOfAStreamThatHasNot",     u"mms://127.0.0.1/a.wmv", false, 64, false},
    {"NotForSound",                u"/a/b.mp3",              false, 0,  false},
};
INSTANTIATE_TEST_SUITE_P(Cases, PictureTest, testing::ValuesIn(kPictureCases), [](const auto& row) {
    return std::string(row.param.name);
});

TEST_F(PlayerPanelTest, AnOpenPaneTurnsToSoundAtAFreshStart)
{
    page_.paneVisible = true;
    PlayRow(0, 10.0);
    EXPECT_EQ(page_.paneModes, std::vector<int>{3});
}

TEST_F(PlayerPanelTest, TheOtherButtonsReachTheirPlaces)
{
    Press(u"LyricBtn");
    Press(u"LyricBtn");
    EXPECT_EQ(page_.paneModes, (std::vector<int>{1, 0}));
    Press(u"VolBtn");
    EXPECT_EQ(page_.volActions, std::vector<int>{2});
    Press(u"PauseBtn");
    Press(u"PopBtn");
    EXPECT_EQ(player_.TakeCalls(), std::vector<String>{u"pause"});
    PlayRow(0, 100.0);
    Bar().SetPosition(40);
    Bar().FireEvent(ui::kControlEvent, nullptr);
    EXPECT_EQ(player_.TakeCalls(), std::vector<String>{u"seek"});
    EXPECT_EQ(player_.position, 40.0);
    Press(u"StopBtn");
    EXPECT_EQ(panel_->GetUserStopMark(), 1);
    Press(u"PlayBtn");
    EXPECT_EQ(panel_->GetUserStopMark(), 0);
}

TEST_F(PlayerPanelTest, ASeekFromElsewhereMovesTheCountedPositionToo)
{
    panel_->SeekTo(30.0); // Nothing is open yet: the bar is locked.
    EXPECT_EQ(Bar().GetPosition(), 0);
    PlayRow(0, 100.0);
    for (const auto& [seconds, position] : {
             std::pair{60.9,  60 },
             {20.0,  20 },
             {-5.0,  0  },
             {1e300, 100}
    }) {
        panel_->SeekTo(seconds);
        EXPECT_EQ(player_.position, seconds);
        EXPECT_EQ(Bar().GetPosition(), position) << seconds;
    }
    panel_->SeekTo(97.0);
    PassSeconds(5);
    EXPECT_EQ(host_.CountPosted(), 0U);
    PassSeconds(1);
    EXPECT_EQ(host_.CountPosted(), 1U); // Three to the counted end, three to wait there.
}

TEST_F(PlayerPanelTest, TheWheelOverTheVolumeButtonTurnsTheVolume)
{
    auto& button = dynamic_cast<ui::CSkinButton&>(*panel_->FindControlRecusive(u"VolBtn"));
    struct Turn {
        int angle;
        int volume;
    };
    for (const Turn& turn : {
             Turn{120,        62 },
             {-240,       58 },
             {60,         58 }, // Half a notch,
             {60,         60 }, // and the other half.
             {2'000'000,  100},
             {-9'999'999, 0  }
    }) {
        EXPECT_TRUE(button.OnPeerWheel(turn.angle));
        EXPECT_EQ(player_.volume, turn.volume) << turn.angle;
    }
    button.SetEnabled(0);
    EXPECT_FALSE(button.OnPeerWheel(120));
    EXPECT_EQ(player_.volume, 0);
}

TEST_F(PlayerPanelTest, BeyondNobodyWaitsWhenStoppedOrPausedInMidBuffering)
{
    SetBeyond(true);
    player_.url = u"http://127.0.0.1/radio";
    for (const int state : {1, 2}) {
        SCOPED_TRACE(state);
        Report(9);
        Report(6);
        now_ += 100;
        TimerService::Get().RunDue();
        ASSERT_TRUE(IsShown(u"StatePanel"));
        Report(state);
        EXPECT_FALSE(IsShown(u"StatePanel"));
        EXPECT_EQ(TimerService::Get().GetNextDelay(), -1);
    }
}

TEST_F(PlayerPanelTest, TheSignFollowsTheSetting)
{
    host_.showsMediaState = 0;
    PlayRow(0, 100.0);
    EXPECT_TRUE(host_.signs.empty());
    host_.showsMediaState = 1;
    host_.ChangeSetting(u"usign_setting");
    EXPECT_EQ(host_.signs.size(), 1U);
    host_.showsMediaState = 0;
    host_.ChangeSetting(u"usign_setting");
    EXPECT_TRUE(host_.signs.empty());
    Report(2);
    host_.showsMediaState = 1;
    host_.ChangeSetting(u"usign_setting");
    EXPECT_TRUE(host_.signs.empty()); // Paused: it comes back with the next start.
}

TEST_F(PlayerPanelTest, TheSignsTitleIsTheStoredNameIfThereIsOne)
{
    page_.currentName = u"my name for it";
    PlayRow(0, 100.0);
    ASSERT_EQ(host_.signs.size(), 1U);
    EXPECT_EQ(host_.signs[0].title, u"my name for it");
}

TEST_F(PlayerPanelTest, NothingIsLeftBehindByAReleasedPanel)
{
    PlayRow(0, 100.0);
    Report(6);
    panel_.reset();
    EXPECT_EQ(TimerService::Get().GetNextDelay(), -1);
    EXPECT_TRUE(host_.watches.empty());
    manager_.NotifyState(3); // Nobody listens.
    EXPECT_EQ(CPlayerPanel::GetInstance(), nullptr);
}

// Fifty tracks with pauses, faults, a mode that changes and a user who skips.
TEST_F(PlayerPanelTest, AnEvening)
{
    SetPlayMode(3);
    page_.rows.clear();
    for (int i = 0; i < 50; ++i) {
        const std::string name = "track" + std::to_string(i) + ".mp3";
        page_.rows.push_back(i % 7 == 3 ? u"/nowhere/" + common::PathToText(name)
                                        : WriteTrack(name));
    }
    page_.mark = 0;
    Press(u"PlayBtn");
    int played = 0;
    for (int turn = 0; turn < 60; ++turn) {
        ASSERT_FALSE(player_.url.empty());
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
            if (turn % 5 == 2) {
                Press(u"NextBtn");
                Report(1);
                if (page_.mark % 7 == 3) { // The button took a gone one.
                    Report(9);
                    Report(10);
                }
            } else if (turn % 5 == 3) {
                PassSeconds(23 + turn); // The control never reports the end.
            } else {
                Report(8);
            }
        }
        host_.RunPosted();
        ASSERT_NE(page_.mark, -1);
        ASSERT_NE(page_.mark % 7, 3);
    }
    EXPECT_GT(played, 50);
    EXPECT_LE(host_.signs.size(), 1U);
}

} // namespace kivo::tunehive
