#include "forms/LyricPanel.h"

#include "forms/LyricWnd.h"
#include "player/IMediaPlayer.h"
#include "player/MediaPlayerManager.h"
#include "shell/contracts/base/Released.h"
#include "shell/contracts/common/AppPath.h"
#include "shell/contracts/ui/SkinManager.h"
#include "shell/contracts/ui/SkinPhoto.h"
#include "tests/support/FakeHost.h"
#include "tests/support/FakePage.h"
#include "tests/support/ScriptedControl.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace kivo::tunehive {
namespace {

class LyricPanelTest : public testing::Test {
protected:
    ~LyricPanelTest() override
    {
        panel_.reset();
        CMediaPlayerManager::GetInstance().Destroy();
        ui::CSkinManager::GetInstance()->Clear();
    }
    // Builds it from a node with these controls.
    void Build(const std::string& controls)
    {
        ui::CSkinManager::GetInstance()->IncludeBuildText(
            "<build><node key=\"KIVO Plugins TuneHiveWindow LyricPanel\">" + controls +
            "</node></build>");
        panel_->Build(nullptr);
    }
    void BuildWhole()
    {
        Build("<label id='LyricCaption'/><button id='CloseBtn'/><photo id='PhotoDefault'/>");
    }

    test::FakeHost host_;
    test::ScriptedControl control_;
    test::ScriptedSurface surface_;
    test::FakePage page_;
    Released<CLyricPanel> panel_{new CLyricPanel(&page_)};
};

TEST_F(LyricPanelTest, NothingIsBuiltWithoutANodeOrAControl)
{
    panel_->Build(nullptr);
    EXPECT_EQ(panel_->GetCaption(), nullptr);
    for (const char* controls :
         {"<label id='LyricCaption'/><button id='CloseBtn'/>",
          "<button id='CloseBtn'/><photo id='PhotoDefault'/>",
          "<label id='LyricCaption'/><photo id='PhotoDefault'/>",
          "<label id='LyricCaption'/><button id='CloseBtn'/><label id='PhotoDefault'/>"}) {
        SCOPED_TRACE(controls);
        panel_.reset(new CLyricPanel(&page_));
        Build(controls);
        EXPECT_EQ(panel_->GetVideoWindow(), nullptr);
    }
}

TEST_F(LyricPanelTest, TheVideoWindowLiesHiddenOnThePicture)
{
    common::SetAppPath(u"/app/");
    CMediaPlayerManager::GetInstance().RegisterPlayers();
    BuildWhole();
    CLyricWnd* const video = panel_->GetVideoWindow();
    ASSERT_NE(video, nullptr);
    EXPECT_EQ(panel_->GetPhoto()->GetPicture(), u"/app/plugin/tunehive/skin/player.png");
    EXPECT_EQ(video->GetParent(), panel_->GetPhoto());
    EXPECT_EQ(video->GetObjectID(), u"LyricWnd");
    EXPECT_EQ(video->GetAnchorStyle(), 106);
    EXPECT_EQ(video->IsSelfRender(), 0);
    EXPECT_FALSE(video->IsSetVisible());
    ASSERT_NE(CMediaPlayerManager::GetInstance().GetPlayer(u"/a.avi"), nullptr);
    EXPECT_EQ(surface_.parent, video); // Players make their surface inside it.
}

TEST_F(LyricPanelTest, WithoutAPlayerItsWindowWorksAlone)
{
    BuildWhole();
    panel_->CalculateBounds({0, 0, 300, 200});
    panel_->GetVideoWindow()->SetVisible(1);
    panel_->GetVideoWindow()->SetVisible(0);
    EXPECT_TRUE(control_.calls.empty());
    EXPECT_EQ(CMediaPlayerManager::FindInstance(),
              nullptr); // And none was made in order to be asked.
}

TEST_F(LyricPanelTest, OnlyTheCloseButtonClosesThePane)
{
    BuildWhole();
    panel_->GetCaption()->FireEvent(ui::kControlEvent, nullptr);
    panel_->FireEvent(ui::kControlEvent, nullptr);
    EXPECT_TRUE(page_.paneModes.empty());
    panel_->FindControlRecusive(u"CloseBtn")->FireEvent(ui::kControlEvent, nullptr);
    EXPECT_EQ(page_.paneModes, std::vector<int>{0});
}

} // namespace
} // namespace kivo::tunehive
