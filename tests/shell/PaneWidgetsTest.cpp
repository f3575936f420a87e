#include "forms/LyricPanel.h"
#include "forms/LyricWnd.h"
#include "platform/ui/qt/QtDesktop.h"
#include "platform/ui/qt/WidgetPeer.h"
#include "player/MediaPlayerManager.h"
#include "shell/contracts/base/Released.h"
#include "shell/contracts/common/AppPath.h"
#include "shell/contracts/common/Text.h"
#include "shell/contracts/ui/SkinForm.h"
#include "shell/contracts/ui/SkinManager.h"
#include "shell/contracts/ui/SkinPhoto.h"
#include "shell/contracts/ui/SkinSplitter.h"
#include "shell/contracts/ui/SkinWndManager.h"
#include "shell/TuneHiveWindow.h"
#include "tests/support/FakeHost.h"
#include "tests/support/ScriptedControl.h"

#include <gtest/gtest.h>
#include <QApplication>

#include <memory>

namespace kivo::tunehive {
namespace {

// The page with its real widgets, off-screen.
class PaneWidgetsTest : public testing::Test {
protected:
    PaneWidgetsTest()
    {
        common::SetAppPath(common::utf8_to_CString(KIVO_APP_FOLDER));
        ui::CSkinManager& skin = *ui::CSkinManager::GetInstance();
        skin.IncludeSkinFile(common::utf8_to_CString(KIVO_PLUGIN_FOLDER "skin.xml"));
        skin.IncludeSkinBuildFile(common::utf8_to_CString(KIVO_PLUGIN_FOLDER "build.xml"));
        desktop_ = std::make_unique<ui::qt::QtDesktop>(ui::qt::DesktopOptions());
        form_ = std::make_unique<ui::CSkinForm>();
        form_->Create(
            ui::wndstyle::kPopup, u"Form", u"Form", Rect{0, 0, 340, 680}, /*parent=*/nullptr, 0);
        CMediaPlayerManager::GetInstance().RegisterPlayers();
        window_.reset(new TuneHiveWindow(form_.get(), nullptr));
        window_->SetAnchorStyle(ui::anchor::kFill);
        form_->RegisterControl(window_.get());
        window_->CreatePeer();
        ui::CSkinWndManager::GetInstance()->SetMainForm(form_.get());
        window_->CreatePage();
        window_->SetVisible(1);
        form_->RePositionSubControls();
        form_->ShowWindow(5);
        QApplication::processEvents();
    }
    ~PaneWidgetsTest() override
    {
        window_->ClosePage();
        form_->UnregisterControl(window_.get());
        window_.reset();
        CMediaPlayerManager::GetInstance().Destroy();
        ui::CSkinWndManager::GetInstance()->SetMainForm(nullptr);
        form_.reset();
        desktop_.reset();
        ui::CSkinManager::GetInstance()->Clear();
    }

    static bool Shows(const ui::CSkinObject* object)
    {
        const QWidget* const widget = ui::qt::WidgetOf(object);
        return widget != nullptr && widget->isVisible() && !widget->size().isEmpty();
    }
    [[nodiscard]] int GetPaneHeight() const
    {
        return ui::qt::WidgetOf(window_->GetLyricPanel())->height();
    }

    test::FakeHost host_;
    test::ScriptedControl control_;
    test::ScriptedSurface surface_;
    std::unique_ptr<ui::qt::QtDesktop> desktop_;
    std::unique_ptr<ui::CSkinForm> form_;
    Released<TuneHiveWindow> window_;
};

struct Step {
    int mode;
    bool showsPane;
    bool showsPhoto; // Under the video, which lies on it.
    bool showsVideo;
};

TEST_F(PaneWidgetsTest, EachModeShowsWhatItShould)
{
    constexpr Step kSteps[] = {
        {1,  true,  true,  true },
        {0,  false, false, false},
        {2,  true,  true,  false},
        {3,  true,  true,  true },
        {4,  true,  true,  true },
        {77, true,  true,  true },
        {0,  false, false, false},
    };
    const CLyricPanel& panel = *window_->GetLyricPanel();
    EXPECT_FALSE(Shows(&panel));
    for (const auto& [mode, showsPane, showsPhoto, showsVideo] : kSteps) {
        SCOPED_TRACE(mode);
        window_->SetPaneMode(mode);
        QApplication::processEvents();
        EXPECT_EQ(Shows(&panel), showsPane);
        EXPECT_EQ(Shows(panel.GetPhoto()), showsPhoto);
        EXPECT_EQ(Shows(panel.GetVideoWindow()), showsVideo);
        if (showsPane) {
            EXPECT_EQ(GetPaneHeight(), 164);
        }
    }
}

} // namespace
} // namespace kivo::tunehive

int main(int argc, char** argv)
{
    // The build asks for the names of the tests, also where there is no display.
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
