#include "shell/TuneHiveWindow.h"

#include "forms/LyricPanel.h"
#include "forms/LyricWnd.h"
#include "platform/ui/NullPeers.h"
#include "player/IMediaPlayer.h"
#include "player/MediaPlayerManager.h"
#include "player/PlayerPanel.h"
#include "player/VolForm.h"
#include "shell/contracts/base/Released.h"
#include "shell/contracts/common/Language.h"
#include "shell/contracts/ui/SkinForm.h"
#include "shell/contracts/ui/SkinManager.h"
#include "shell/contracts/ui/SkinPhoto.h"
#include "shell/contracts/ui/SkinSplitter.h"
#include "shell/contracts/ui/SkinWndManager.h"
#include "tests/support/CaseName.h"
#include "tests/support/FakeHost.h"
#include "tests/support/ScriptedControl.h"
#include "tree/MediaTree.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace kivo::tunehive {
namespace {

// The lower pane as the user sees it; `caption` is the short form of one of the three texts.
struct Pane {
    bool isOpen = false;
    bool showsVideo = false;
    bool showsPhoto = false;
    String caption;
    friend bool operator==(const Pane&, const Pane&) = default;
};

// Watches the form that was made last.
class WatchingFactory final : public ui::NullPeerFactory {
public:
    std::unique_ptr<ui::IFormPeer> MakeForm(ui::CSkinForm& form) override
    {
        lastForm = form.Watch();
        return NullPeerFactory::MakeForm(form);
    }
    LifeWatch lastForm;
};

class TuneHiveWindowTest : public testing::Test {
protected:
    TuneHiveWindowTest()
    {
        ui::CSkinManager::GetInstance()->IncludeSkinBuildFile(u"" KIVO_DATA_DIR "/build.xml");
        auto* const language = common::CMutiLanSupport::GetInstance();
        language->AddText(u"TIP_TUNEHIVE", u"Tip");
        language->AddText(u"STRID_TUNEHIVE_KIVO", u"kivo");
        language->AddText(u"STRID_TUNEHIVE_LYRIC", u"lyric");
        language->AddText(u"STRID_TUNEHIVE_VIDEO", u"video");
        CMediaPlayerManager::GetInstance().RegisterPlayers();
        window_.reset(new TuneHiveWindow(&form_, nullptr));
        form_.CreateHandle();
        form_.RegisterControl(window_.get());
        ui::CSkinWndManager::GetInstance()->SetMainForm(&form_);
    }
    ~TuneHiveWindowTest() override
    {
        form_.UnregisterControl(window_.get());
        window_.reset();
        CMediaPlayerManager::GetInstance().Destroy();
        ui::CSkinWndManager::GetInstance()->SetMainForm(nullptr);
        ui::CSkinManager::GetInstance()->Clear();
        common::CMutiLanSupport::GetInstance()->Clear();
    }
    void CreatePage(int height = 900)
    {
        EXPECT_EQ(window_->CreatePage(), 1);
        window_->CalculateBounds({0, 0, 400, height});
    }
    [[nodiscard]] Pane GetPane() const
    {
        const CLyricPanel& panel = *window_->GetLyricPanel();
        EXPECT_EQ(window_->GetSplitter()->IsBarVisible(), window_->IsPaneVisible() != 0);
        return {window_->IsPaneVisible() != 0,
                panel.GetVideoWindow()->IsSetVisible(),
                panel.GetPhoto()->IsSetVisible(),
                panel.GetCaption()->GetText()};
    }
    [[nodiscard]] int GetPaneHeight() const
    {
        return window_->GetSplitter()->GetPane(1)->GetHeight();
    }

    test::FakeHost host_;
    test::ScriptedControl control_;
    test::ScriptedSurface surface_;
    ui::CSkinForm form_;
    Released<TuneHiveWindow> window_;
};

TEST_F(TuneHiveWindowTest, KnowsItsNames)
{
    EXPECT_EQ(window_->GetObjectID(), u"TuneHiveWindow");
    EXPECT_EQ(window_->GetPageTip(), u"Tip");
    EXPECT_EQ(window_->GetPageKey(), u"plugin_tunehive");
    EXPECT_EQ(window_->GetSkinName(), u"pluginwnd");
    EXPECT_EQ(window_->GetBuildName(), u"Plugins TuneHiveWindow");
    EXPECT_EQ(window_->GetPluginId(), 100000U);
    EXPECT_EQ(window_->GetPageWord(), 0);
}

TEST_F(TuneHiveWindowTest, IsHarmlessBeforeItsPageAndAfterIt)
{
    const auto useAll = [this] {
        window_->ShowVolForm(2, 1, 1);
        window_->StopPlayer();
        window_->RemoveSign();
        window_->InterruptChildModalFormByForce();
        EXPECT_EQ(window_->GetPlayState(), 0);
    };
    useAll();
    EXPECT_EQ(window_->SetPaneMode(1), 0);
    EXPECT_EQ(window_->IsPaneVisible(), 0);
    EXPECT_EQ(window_->ClosePage(), 1);
    CreatePage();
    EXPECT_EQ(window_->ClosePage(), 1);
    EXPECT_EQ(window_->GetVolForm(), nullptr);
    useAll();
}

struct ModeCase {
    const char* name;
    std::initializer_list<int> modes;
    Pane pane;
};

const ModeCase kModeCases[] = {
    {"AtFirst",                   {},        {false, false, true, u"kivo"} },
    {"VideoUnderTheFirstCaption", {1},       {true, true, true, u"kivo"}   },
    {"Picture",                   {2},       {true, false, true, u"kivo"}  },
    {"Sound",                     {3},       {true, true, true, u"lyric"}  },
    {"Video",                     {4},       {true, true, true, u"video"}  },
    {"OnlyOpen",                  {5},       {true, false, true, u"kivo"}  },
    {"OnlyOpenKeepsTheRest",      {4, 99},   {true, true, true, u"video"}  },
    {"ClosedKeepsTheCaption",     {3, 0},    {false, false, true, u"lyric"}},
    {"ReopenedAsItWas",           {4, 0, 1}, {true, true, true, u"video"}  },
    {"PictureAfterVideo",         {4, 2},    {true, false, true, u"kivo"}  },
};

class PaneModeTest : public TuneHiveWindowTest, public testing::WithParamInterface<ModeCase> {};

TEST_P(PaneModeTest, Shows)
{
    CreatePage();
    for (const int mode : GetParam().modes) {
        const int result = window_->SetPaneMode(mode);
        EXPECT_EQ(result, window_->IsPaneVisible());
    }
    EXPECT_EQ(GetPane(), GetParam().pane);
    if (GetParam().pane.isOpen) {
        EXPECT_EQ(GetPaneHeight(), 164);
    }
}

INSTANTIATE_TEST_SUITE_P(Modes,
                         PaneModeTest,
                         testing::ValuesIn(kModeCases),
                         test::CaseName<ModeCase>);

TEST_F(TuneHiveWindowTest, AnOpenPaneKeepsItsHeightAndModeOneRaisesALowOne)
{
    CreatePage();
    window_->SetPaneMode(1);
    window_->GetSplitter()->SetFixedPaneSize(300);
    window_->CalculateBounds({0, 0, 400, 1200}); // More height goes to the tree.
    for (const int mode : {1, 2, 3, 4, 7}) {
        window_->SetPaneMode(mode);
        EXPECT_EQ(GetPaneHeight(), 300);
    }
    window_->SetPaneMode(0);
    window_->SetPaneMode(1); // Shown again as it was left.
    EXPECT_EQ(GetPaneHeight(), 300);
    window_->SetPaneMode(0);
    window_->SetPaneMode(4); // Opened for a track: at its first height.
    EXPECT_EQ(GetPaneHeight(), 164);
    window_->GetSplitter()->SetFixedPaneSize(300);
    window_->CalculateBounds({0, 0, 400, 250}); // So low that the pane gets less than it wants.
    ASSERT_LT(GetPaneHeight(), 164);
    window_->SetPaneMode(1);
    window_->CalculateBounds({0, 0, 400, 900});
    EXPECT_EQ(GetPaneHeight(), 164);
}

TEST_F(TuneHiveWindowTest, TheVideoFollowsItsWindow)
{
    CreatePage();
    ASSERT_NE(CMediaPlayerManager::GetInstance().GetPlayer(u"/a.avi"), nullptr);
    control_.state = 6;
    EXPECT_EQ(window_->GetPlayState(), 6);
    window_->SetPaneMode(4);
    EXPECT_TRUE(surface_.visible);
    const Rect bounds = window_->GetLyricPanel()->GetVideoWindow()->GetBoundsRect();
    EXPECT_EQ(surface_.bounds,
              (Rect{0, 0, bounds.right - bounds.left, bounds.bottom - bounds.top}));
    window_->GetSplitter()->SetFixedPaneSize(400);
    EXPECT_GT(surface_.bounds.bottom, bounds.bottom - bounds.top);

    control_.calls.clear();
    window_->GetLyricPanel()->FindControlRecusive(u"CloseBtn")->FireEvent(1, nullptr);
    EXPECT_EQ(window_->IsPaneVisible(), 0);
    EXPECT_FALSE(surface_.visible);
    EXPECT_EQ(control_.CountCalls("Stop") + control_.CountCalls("Pause"), 0); // It plays on.
}

struct VolCase {
    const char* name;
    int action;
    bool wasVisible;
    bool isVisible;
    bool isMoved;
};

constexpr VolCase kVolCases[] = {
    {"HiddenHide",      0,  false, false, false},
    {"HiddenShow",      1,  false, true,  true },
    {"HiddenToggle",    2,  false, true,  true },
    {"VisibleHide",     0,  true,  false, false},
    {"VisibleShow",     1,  true,  true,  false},
    {"VisibleToggle",   2,  true,  false, false},
    {"VisibleAnyOther", -1, true,  false, false},
};

TEST_F(TuneHiveWindowTest, TheVolumeForm)
{
    CreatePage();
    CVolForm& form = *window_->GetVolForm();
    EXPECT_FALSE(form.IsWindowVisible());
    for (const VolCase& row : kVolCases) {
        SCOPED_TRACE(row.name);
        form.ShowWindow(row.wasVisible ? 5 : 0);
        form.MoveWindow({10, 20, 110, 220});
        window_->ShowVolForm(row.action, 300, 400);
        EXPECT_EQ(form.IsWindowVisible(), row.isVisible);
        const Rect place = form.GetWindowRect();
        EXPECT_EQ(place, row.isMoved ? (Rect{300, 400, 400, 600}) : (Rect{10, 20, 110, 220}));
    }
}

TEST_F(TuneHiveWindowTest, BeingShownIsCountedAndGivesTheTreeTheFocus)
{
    CreatePage();
    form_.SetDefaultFocusObj(window_->GetPlayerPanel());
    window_->ShowPage(0);
    EXPECT_FALSE(window_->IsSetVisible());
    EXPECT_TRUE(host_.tags.empty());
    EXPECT_EQ(form_.GetDefaultFocusObj(), window_->GetPlayerPanel());
    window_->ShowPage(1);
    EXPECT_TRUE(window_->IsSetVisible());
    EXPECT_EQ(host_.tags, std::vector<int>{2103});
    ASSERT_NE(window_->GetTree(), nullptr);
    EXPECT_EQ(form_.GetDefaultFocusObj(), window_->GetTree());
}

TEST_F(TuneHiveWindowTest, TakesItsOpenWebFormAlong)
{
    WatchingFactory factory;
    ui::SetPeerFactory(&factory);
    CreatePage();
    window_->OpenMusicCabinet();
    EXPECT_TRUE(factory.lastForm.IsAlive());
    form_.UnregisterControl(window_.get());
    window_.reset(); // By a host that closes no page first.
    EXPECT_FALSE(factory.lastForm.IsAlive());
    ui::SetPeerFactory(nullptr);
}

TEST_F(TuneHiveWindowTest, AModalFormAboveIsInterruptedWhileThePageIsShown)
{
    form_.ShowWindow(5);
    for (const bool isShown : {true, false}) {
        SCOPED_TRACE(isShown);
        window_->SetVisible(isShown ? 1 : 0);
        ui::CSkinForm modal;
        modal.CreateHandle();
        ui::GetNullPeerFactory().QueueModal([this](ui::CSkinForm& open) {
            window_->InterruptChildModalFormByForce();
            open.DoCancelWndModal(5); // Too late, if it was interrupted.
        });
        EXPECT_EQ(modal.DoWndModal(), isShown ? 0 : 5);
    }
}

} // namespace
} // namespace kivo::tunehive
