#include "player/VolForm.h"

#include "player/MediaPlayerManager.h"
#include "shell/base/Settings.h"
#include "shell/contracts/base/Beyond.h"
#include "shell/contracts/base/Released.h"
#include "shell/contracts/control/MediaEngineSettings.h"
#include "shell/contracts/ui/SkinManager.h"
#include "shell/contracts/ui/SkinSlider.h"
#include "tests/support/FakePage.h"
#include "tests/support/ScriptedControl.h"

#include <gtest/gtest.h>

namespace kivo::tunehive {

namespace {

class VolFormTest : public testing::Test {
public:
    VolFormTest()
    {
        ui::CSkinManager::GetInstance()->IncludeBuildText(
            "<build><form id='VolForm'><slider id='VolSlider'/></form></build>");
        CMediaPlayerManager::GetInstance().RegisterPlayers();
        isCreated = form->Create(nullptr);
    }
    ~VolFormTest() override
    {
        form.reset();
        CMediaPlayerManager::GetInstance().Destroy();
        ui::CSkinManager::GetInstance()->Clear();
    }

    [[nodiscard]] ui::CSkinSlider& Slider() const
    {
        return dynamic_cast<ui::CSkinSlider&>(*form->FindControlRecusive(u"VolSlider"));
    }
    void Activate(bool on) const { form->WindowProc(ui::wndmessage::kActivate, on ? 1 : 0, 0); }
    static void Play() { static_cast<void>(CMediaPlayerManager::FindPlayer(u"/a.mp3")); }

    test::ScriptedControl control;
    test::FakePage page;
    Released<CVolForm> form{new CVolForm(&page)};
    int isCreated = 0;
};

TEST_F(VolFormTest, IsBuiltHiddenAndOpensOnThePlayersVolumeOnceThereIsOne)
{
    EXPECT_EQ(isCreated, 1);
    EXPECT_FALSE(form->IsWindowVisible());
    EXPECT_EQ(Slider().GetMinimum(), 0);
    EXPECT_EQ(Slider().GetMaximum(), 100);
    control.volume = 35;
    Activate(true);
    EXPECT_EQ(Slider().GetPosition(), 0);
    Play();
    Activate(true);
    EXPECT_EQ(Slider().GetPosition(), 35);
}

TEST_F(VolFormTest, HidesWhenItLosesTheActivationOrIsClosedAndOpensAgain)
{
    for (const bool byClose : {false, true}) {
        SCOPED_TRACE(byClose);
        form->ShowWindow(5);
        EXPECT_TRUE(form->IsWindowVisible());
        if (byClose)
            form->WindowProc(ui::wndmessage::kClose, 0, 0);
        else
            Activate(false);
        EXPECT_FALSE(form->IsWindowVisible());
    }
    EXPECT_EQ(page.volFormsForgotten, 0);
}

TEST_F(VolFormTest, EachMoveOfTheSliderSetsTheVolumeAndRemembersIt)
{
    Slider().SetPosition(20);
    Slider().OnKeyDown(ui::SliderKey::StepForward); // Nobody plays yet.
    Play();
    for (const int step : {24, 26, 28}) {
        Slider().OnKeyDown(ui::SliderKey::StepForward);
        EXPECT_EQ(control.volume, step);
        EXPECT_EQ(GetRememberedVolume(), step);
    }
    control.calls.clear();
    form->FireEvent(ui::kControlEvent, nullptr); // Not the slider's.
    EXPECT_EQ(control.CountCalls("SetVolume"), 0);
}

// Otherwise it would stand at the bottom on the first day, and what the user sets would be lost.
TEST_F(VolFormTest, BeyondItShowsAndSetsWhatTheFirstTrackStartsWith)
{
    MediaEngineVolume kept{35, true};
    MediaEngineSettings settings;
    settings.loadVolume = [&kept] { return kept; };
    settings.storeVolume = [&kept](const MediaEngineVolume& volume) { kept = volume; };
    SetMediaEngineSettings(settings);
    SetBeyond(true);
    Activate(true);
    EXPECT_EQ(Slider().GetPosition(), 35);
    Slider().OnKeyDown(ui::SliderKey::StepForward);
    EXPECT_EQ(kept, (MediaEngineVolume{37, true}));
    SetBeyond(false);
    SetMediaEngineSettings({});
}

TEST_F(VolFormTest, AskedToCloseForGoodItTellsThePageAndGoes)
{
    EXPECT_EQ(form.release()->OnQueryCloseForm(), 0);
    EXPECT_EQ(page.volFormsForgotten, 1);
}

} // namespace

} // namespace kivo::tunehive
