#include "player/KivoPlayerWnd.h"

#include "player/MediaPlayerManager.h"
#include "player/PlayerState.h"
#include "shell/base/Settings.h"
#include "shell/contracts/base/Released.h"
#include "shell/contracts/framework/Hooks.h"
#include "tests/support/ScriptedControl.h"

#include <gtest/gtest.h>

#include <vector>

namespace kivo::test {

namespace {

using tunehive::CKivoPlayerWnd;
using tunehive::IMediaPlayer;

class PlayerWndTest : public testing::Test {
public:
    void Init() const { ASSERT_NE(player->Init(nullptr), 0); }

    ScriptedControl control;
    ScriptedSurface surface;
    Released<CKivoPlayerWnd> player = Released<CKivoPlayerWnd>(new CKivoPlayerWnd);
};

TEST_F(PlayerWndTest, AnswersWithoutAControlAndTouchesNothing)
{
    IMediaPlayer& p = *player;
    tunehive::SetRememberedVolume(33);
    EXPECT_EQ(p.IsInited(), 0);
    EXPECT_FALSE(p.IsCreated());
    EXPECT_EQ(p.GetURL(), u"");
    EXPECT_EQ(p.SetURL(u"/a.mp3", /*autoplay=*/1), 1);
    EXPECT_EQ(p.Play(), 1);
    EXPECT_EQ(p.Stop(), 1);
    EXPECT_EQ(p.Pause(), 1);
    EXPECT_EQ(p.GetDuration(), -1.0);
    EXPECT_EQ(p.GetDurationString(), u"");
    EXPECT_EQ(p.GetVolume(), -1);
    EXPECT_EQ(p.SetVolume(50), 1);
    EXPECT_FALSE(p.GetMute());
    EXPECT_EQ(p.SetMute(/*on=*/true), 1);
    EXPECT_EQ(p.GetPosition(), -1.0);
    EXPECT_EQ(p.GetPositionString(), u"");
    EXPECT_EQ(p.SetPosition(3), 1);
    EXPECT_EQ(p.GetPlayState(), -1);
    EXPECT_EQ(p.GetBufferingProgress(), 0);
    EXPECT_FALSE(p.GetFullScreen());
    p.SetFullScreen(/*on=*/true);
    EXPECT_FALSE(p.GetFullScreen());
    EXPECT_EQ(RunHooks(WH_KEYBOARD, 27, 0), 0);
    EXPECT_EQ(p.GetItemInfo(u"Title"), u"");
    EXPECT_EQ(p.GetImageWidth(), 0);
    EXPECT_EQ(p.GetImageHeight(), 0);
    EXPECT_TRUE(p.CanPlay(u"anything"));
    EXPECT_EQ(p.GetPlayerId(), 55442);
    p.SetBounds(0, 0, 10, 10);
    p.Show(1);
    EXPECT_EQ(control.madeCount, 0);
    EXPECT_TRUE(control.calls.empty());
    EXPECT_EQ(tunehive::GetRememberedVolume(), 33);
}

TEST_F(PlayerWndTest, AnswersWhatTheControlSays)
{
    Init();
    control.duration = 12.5;
    control.position = 4;
    control.volume = 70;
    control.mute = true;
    control.state = 9;
    control.bufferingProgress = 44;
    control.itemInfo[u"Title"] = u"A Song";
    control.imageWidth = 320;
    control.imageHeight = 240;
    EXPECT_EQ(player->SetURL(u"/a.mp3", /*autoplay=*/1), 0);
    EXPECT_EQ(player->GetURL(), u"/a.mp3");
    EXPECT_EQ(player->GetDuration(), 12.5);
    EXPECT_EQ(player->GetDurationString(), u"12 s");
    EXPECT_EQ(player->GetPosition(), 4);
    EXPECT_EQ(player->GetPositionString(), u"4 s");
    EXPECT_EQ(player->GetVolume(), 70);
    EXPECT_TRUE(player->GetMute());
    EXPECT_EQ(player->GetPlayState(), 9);
    EXPECT_EQ(player->GetBufferingProgress(), 44);
    EXPECT_EQ(player->GetItemInfo(u"Title"), u"A Song");
    EXPECT_EQ(player->GetImageWidth(), 320);
    EXPECT_EQ(player->GetImageHeight(), 240);
}

TEST_F(PlayerWndTest, PassesEachCommandOnAndReportsItDone)
{
    Init();
    control.calls.clear();
    EXPECT_EQ(player->Play(), 0);
    EXPECT_EQ(player->Pause(), 0);
    EXPECT_EQ(player->Stop(), 0);
    EXPECT_EQ(player->SetMute(/*on=*/true), 0);
    EXPECT_EQ(player->SetPosition(7), 0);
    EXPECT_EQ(player->SetVolume(41), 0);
    const std::vector<std::string> expected = {
        "Play", "Pause", "Stop", "SetMute 1", "SetPosition 7", "SetVolume 41"};
    EXPECT_EQ(control.calls, expected);
    EXPECT_EQ(tunehive::GetRememberedVolume(), 41);
}

TEST_F(PlayerWndTest, OnlyAZeroAutoplayTouchesTheAutoStart)
{
    Init();
    control.calls.clear();
    player->SetURL(u"/a.mp3", /*autoplay=*/1);
    player->SetURL(u"/b.mp3", /*autoplay=*/0);
    player->SetURL(u"/c.mp3", /*autoplay=*/2);
    const std::vector<std::string> expected = {
        "SetURL /a.mp3", "SetAutoStart 0", "SetURL /b.mp3", "SetURL /c.mp3"};
    EXPECT_EQ(control.calls, expected);
}

TEST_F(PlayerWndTest, ASecondInitChangesNothing)
{
    CWnd first;
    CWnd second;
    EXPECT_NE(player->Init(&first), 0);
    EXPECT_EQ(player->Init(&second), 1);
    EXPECT_EQ(control.madeCount, 1);
    EXPECT_EQ(surface.parent, &first);
}

TEST_F(PlayerWndTest, WithoutAnEngineInitFailsAndMayBeTriedAgain)
{
    control.canBeMade = false;
    EXPECT_EQ(player->Init(nullptr), 0);
    EXPECT_EQ(player->IsInited(), 0);
    EXPECT_FALSE(player->IsCreated());
    control.canBeMade = true;
    EXPECT_NE(player->Init(nullptr), 0);
    EXPECT_TRUE(player->IsCreated());
}

TEST_F(PlayerWndTest, InitHidesTheControlsOwnButtonsAndMenu)
{
    Init();
    EXPECT_EQ(player->GetControlState().uiMode, u"None");
    EXPECT_FALSE(player->GetControlState().contextMenu);
    EXPECT_FALSE(player->IsWindowVisible());
}

TEST_F(PlayerWndTest, UiModesHaveTheirNames)
{
    struct Row {
        int mode;
        const char16_t* name;
    };
    Init();
    for (const Row& row : {
             Row{0, u"Full"},
             Row{1, u"Mini"},
             Row{2, u"None"},
             Row{5, u"Full"}
    }) {
        SCOPED_TRACE(row.mode);
        player->SetUIMode(row.mode);
        EXPECT_EQ(player->GetControlState().uiMode, row.name);
    }
}

TEST_F(PlayerWndTest, BoundsKeepTheirSizeAndLoseTheirPlace)
{
    Init();
    player->SetBounds(30, 40, 350, 280);
    EXPECT_EQ(surface.bounds, (Rect{0, 0, 320, 240}));
    player->Show(1);
    EXPECT_TRUE(surface.visible);
    player->Show(0);
    EXPECT_FALSE(surface.visible);
}

TEST_F(PlayerWndTest, ThePeerTellsTheEngineItsPixels)
{
    Init();
    surface.surface->OnSurfaceChanged(640, 480, /*visible=*/true);
    EXPECT_EQ(control.GetLastCall(), "SetSurface 640 480 1");
}

TEST(PlayerWndWithoutWindows, TellsTheEngineItsOwnBounds)
{
    ScriptedControl control;
    const Released<CKivoPlayerWnd> player(new CKivoPlayerWnd);
    player->Init(nullptr);
    player->SetBounds(0, 0, 320, 240);
    player->Show(1);
    EXPECT_EQ(control.GetLastCall(), "SetSurface 320 240 1");
}

TEST_F(PlayerWndTest, EscapeAndDoubleClickLeaveFullScreenAndPassOn)
{
    struct Row {
        int type;
        WPARAM input;
        bool leaves;
    };
    static int passed = 0;
    const HookHandle other =
        SetWindowsHookExW(WH_KEYBOARD, [](int, WPARAM, LPARAM) -> LPARAM { return ++passed; });
    const HookHandle otherMouse =
        SetWindowsHookExW(WH_MOUSE, [](int, WPARAM, LPARAM) -> LPARAM { return ++passed; });
    Init();
    for (const Row& row : {
             Row{WH_KEYBOARD, 27,  true },
             Row{WH_KEYBOARD, 65,  false},
             Row{WH_MOUSE,    515, true },
             Row{WH_MOUSE,    513, false}
    }) {
        SCOPED_TRACE(row.input);
        player->SetFullScreen(/*on=*/true);
        EXPECT_TRUE(surface.fullScreen);
        passed = 0;
        EXPECT_EQ(RunHooks(row.type, row.input, 0), 1);
        EXPECT_EQ(passed, 1);
        EXPECT_EQ(player->GetFullScreen(), !row.leaves);
        EXPECT_EQ(surface.fullScreen, !row.leaves);
    }
    player->SetFullScreen(/*on=*/false);
    UnhookWindowsHookEx(other);
    UnhookWindowsHookEx(otherMouse);
    player->SetFullScreen(/*on=*/true);
    player->SetFullScreen(/*on=*/true);
    player->SetFullScreen(/*on=*/false);
    passed = 0;
    EXPECT_EQ(RunHooks(WH_KEYBOARD, 27, 0), 0) << "A hook stayed behind.";
}

TEST_F(PlayerWndTest, TheSurfacesDoubleClickOnlyEnters)
{
    Init();
    surface.surface->OnPress();
    surface.surface->OnDoubleClick();
    EXPECT_TRUE(player->GetFullScreen());
    // The second one: the hook leaves first, then the surface hears of it.
    surface.surface->OnPress();
    RunHooks(WH_MOUSE, 515, 0);
    surface.surface->OnDoubleClick();
    EXPECT_FALSE(player->GetFullScreen());
}

TEST_F(PlayerWndTest, ReleaseLeavesFullScreenAndEndsTheControl)
{
    Init();
    player->SetFullScreen(/*on=*/true);
    player.reset();
    EXPECT_EQ(control.liveCount, 0);
    EXPECT_FALSE(surface.fullScreen);
    EXPECT_EQ(surface.surface, nullptr);
    EXPECT_EQ(RunHooks(WH_KEYBOARD, 27, 0), 0);
}

TEST_F(PlayerWndTest, TheGroundIsBlackOnlyWhileAVideoIsOpen)
{
    struct Row {
        int width;
        int state;
        bool isOpen;
    };
    Init();
    for (const Row& row : {
             Row{320, 3, true },
             Row{320, 2, true },
             Row{320, 6, true },
             Row{320, 1, false},
             Row{320, 8, false},
             Row{320, 9, false},
             Row{0,   3, false}
    }) {
        SCOPED_TRACE(row.state);
        control.imageWidth = row.width;
        control.state = row.state;
        EXPECT_EQ(surface.surface->IsVideoOpen(), row.isOpen);
    }
}

TEST_F(PlayerWndTest, ANewPictureIsAskedForAndPainted)
{
    Init();
    const std::uint8_t pixel[4] = {1, 2, 3, 0};
    EXPECT_FALSE(surface.surface->PaintFrame([](const VideoFrame&) { FAIL(); }));
    control.frame = {pixel, 1, 1, 4};
    surface.updateCount = 0;
    control.EmitFrame();
    EXPECT_EQ(surface.updateCount, 1);
    const std::uint8_t* seen = nullptr;
    EXPECT_TRUE(surface.surface->PaintFrame([&](const VideoFrame& f) { seen = f.bits; }));
    EXPECT_EQ(seen, pixel);
}

} // namespace

} // namespace kivo::test
