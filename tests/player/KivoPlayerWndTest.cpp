#include "player/KivoPlayerWnd.h"

#include "shell/base/Settings.h"
#include "shell/contracts/base/Released.h"
#include "shell/contracts/framework/Hooks.h"
#include "tests/support/CaseName.h"
#include "tests/support/ScriptedControl.h"

#include <gtest/gtest.h>

#include <sstream>
#include <vector>

namespace kivo::test {

namespace {

using tunehive::CKivoPlayerWnd;
using tunehive::IMediaPlayer;

class PlayerWndTest : public testing::Test {
public:
    void Init()
    {
        ASSERT_EQ(player->Init(nullptr), 1);
        control.calls.clear();
    }

    ScriptedControl control;
    ScriptedSurface surface;
    Released<CKivoPlayerWnd> player = Released<CKivoPlayerWnd>(new CKivoPlayerWnd);
};

template <class T>
std::string Tell(const T& value)
{
    std::ostringstream text;
    text << value;
    return text.str();
}

std::string Tell(const String& value)
{
    return {value.begin(), value.end()};
}

struct OperationCase {
    const char* name;
    std::string (*run)(IMediaPlayer& player);
    const char* without; // What it gives without a control,
    const char* with;    // and with one.
    const char* call;    // That the control gets; empty: none.
};

constexpr OperationCase kOperations[] = {
    {"IsInited",     [](IMediaPlayer& p) { return Tell(p.IsInited()); },             "0",     "1",        ""             },
    {"IsCreated",    [](IMediaPlayer& p) { return Tell(p.IsCreated()); },            "0",     "1",        ""             },
    {"GetURL",       [](IMediaPlayer& p) { return Tell(p.GetURL()); },               "",      "/old.mp3", ""             },
    {"SetURL",       [](IMediaPlayer& p) { return Tell(p.SetURL(u"/a", 1)); },       "1",     "0",        "SetURL /a"    },
    {"Play",         [](IMediaPlayer& p) { return Tell(p.Play()); },                 "1",     "0",        "Play"         },
    {"Stop",         [](IMediaPlayer& p) { return Tell(p.Stop()); },                 "1",     "0",        "Stop"         },
    {"Pause",        [](IMediaPlayer& p) { return Tell(p.Pause()); },                "1",     "0",        "Pause"        },
    {"Duration",     [](IMediaPlayer& p) { return Tell(p.GetDuration()); },          "-1",    "12.5",     ""             },
    {"DurationText", [](IMediaPlayer& p) { return Tell(p.GetDurationString()); },    "",      "12 s",     ""             },
    {"Volume",       [](IMediaPlayer& p) { return Tell(p.GetVolume()); },            "-1",    "70",       ""             },
    {"SetVolume",    [](IMediaPlayer& p) { return Tell(p.SetVolume(41)); },          "1",     "0",        "SetVolume 41" },
    {"Mute",         [](IMediaPlayer& p) { return Tell(p.GetMute()); },              "0",     "1",        ""             },
    {"SetMute",      [](IMediaPlayer& p) { return Tell(p.SetMute(true)); },          "1",     "0",        "SetMute 1"    },
    {"Position",     [](IMediaPlayer& p) { return Tell(p.GetPosition()); },          "-1",    "4",        ""             },
    {"PositionText", [](IMediaPlayer& p) { return Tell(p.GetPositionString()); },    "",      "4 s",      ""             },
    {"Seek",         [](IMediaPlayer& p) { return Tell(p.SetPosition(7)); },         "1",     "0",        "SetPosition 7"},
    {"PlayState",    [](IMediaPlayer& p) { return Tell(p.GetPlayState()); },         "-1",    "9",        ""             },
    {"Buffering",    [](IMediaPlayer& p) { return Tell(p.GetBufferingProgress()); }, "0",     "44",       ""             },
    {"FullScreen",   [](IMediaPlayer& p) { return Tell(p.GetFullScreen()); },        "0",     "0",        ""             },
    {"ItemInfo",     [](IMediaPlayer& p) { return Tell(p.GetItemInfo(u"Title")); },  "",      "A Song",   ""             },
    {"ImageWidth",   [](IMediaPlayer& p) { return Tell(p.GetImageWidth()); },        "0",     "320",      ""             },
    {"ImageHeight",  [](IMediaPlayer& p) { return Tell(p.GetImageHeight()); },       "0",     "240",      ""             },
    {"CanPlay",      [](IMediaPlayer& p) { return Tell(p.CanPlay(u"anything")); },   "1",     "1",        ""             },
    {"PlayerId",     [](IMediaPlayer& p) { return Tell(p.GetPlayerId()); },          "55442", "55442",    ""             },
};

class OperationTest : public PlayerWndTest, public testing::WithParamInterface<OperationCase> {};

TEST_P(OperationTest, ReachesTheControlThatThereIs)
{
    const OperationCase& row = GetParam();
    tunehive::SetRememberedVolume(33);
    EXPECT_EQ(row.run(*player), row.without);
    EXPECT_EQ(control.madeCount, 0);
    EXPECT_EQ(tunehive::GetRememberedVolume(), 33);

    Init();
    control.url = u"/old.mp3";
    control.duration = 12.5;
    control.position = 4;
    control.volume = 70;
    control.mute = true;
    control.state = 9;
    control.bufferingProgress = 44;
    control.itemInfo[u"Title"] = u"A Song";
    control.imageWidth = 320;
    control.imageHeight = 240;
    EXPECT_EQ(row.run(*player), row.with);
    EXPECT_EQ(control.GetLastCall(), row.call);
    EXPECT_EQ(tunehive::GetRememberedVolume(), control.CountCalls("SetVolume") == 1 ? 41 : 33);
}

INSTANTIATE_TEST_SUITE_P(Each,
                         OperationTest,
                         testing::ValuesIn(kOperations),
                         CaseName<OperationCase>);

TEST_F(PlayerWndTest, WithoutAControlFullScreenAndWindowTouchNothing)
{
    player->SetFullScreen(/*on=*/true);
    player->SetBounds(0, 0, 10, 10);
    player->Show(1);
    EXPECT_FALSE(player->GetFullScreen());
    EXPECT_EQ(RunHooks(WH_KEYBOARD, 27, 0), 0);
    EXPECT_TRUE(control.calls.empty());
}

TEST_F(PlayerWndTest, OnlyAZeroAutoplayTouchesTheAutoStart)
{
    Init();
    player->SetURL(u"/a.mp3", /*autoplay=*/1);
    player->SetURL(u"/b.mp3", /*autoplay=*/0);
    player->SetURL(u"/c.mp3", /*autoplay=*/2);
    const std::vector<std::string> expected = {
        "SetURL /a.mp3", "SetAutoStart 0", "SetURL /b.mp3", "SetURL /c.mp3"};
    EXPECT_EQ(control.calls, expected);
}

TEST_F(PlayerWndTest, TheFirstInitThatSucceedsIsTheOnlyOne)
{
    CWnd first;
    CWnd second;
    control.canBeMade = false;
    EXPECT_EQ(player->Init(&first), 0);
    EXPECT_EQ(player->IsInited(), 0);
    EXPECT_FALSE(player->IsCreated());
    control.canBeMade = true;
    EXPECT_EQ(player->Init(&first), 1);
    EXPECT_EQ(player->Init(&second), 1);
    EXPECT_EQ(control.madeCount, 1);
    EXPECT_EQ(surface.parent, &first);
    EXPECT_EQ(player->GetControlState().uiMode, u"None");
    EXPECT_FALSE(player->GetControlState().contextMenu);
    EXPECT_FALSE(player->IsWindowVisible());
}

TEST_F(PlayerWndTest, UiModesHaveTheirNames)
{
    Init();
    for (const auto& [mode, name] : {
             std::pair{0,  u"Full"},
             {1,  u"Mini"},
             {2,  u"None"},
             {5,  u"Full"},
             {-1, u"Full"}
    }) {
        player->SetUIMode(mode);
        EXPECT_EQ(player->GetControlState().uiMode, name) << mode;
    }
}

TEST_F(PlayerWndTest, BoundsKeepTheirSizeAndThePeerTellsThePixels)
{
    Init();
    player->SetBounds(30, 40, 350, 280);
    EXPECT_EQ(surface.bounds, (Rect{0, 0, 320, 240}));
    for (const bool isShown : {true, false}) {
        player->Show(isShown ? 1 : 0);
        EXPECT_EQ(surface.visible, isShown);
    }
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
    const HookProc note = [](int, WPARAM, LPARAM) -> LPARAM { return ++passed; };
    const HookHandle others[] = {SetWindowsHookExW(WH_KEYBOARD, note),
                                 SetWindowsHookExW(WH_MOUSE, note)};
    Init();
    for (const Row& row : {
             Row{WH_KEYBOARD, 27,  true },
             Row{WH_KEYBOARD, 65,  false},
             Row{WH_MOUSE,    515, true },
             Row{WH_MOUSE,    513, false},
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
    for (const HookHandle other : others)
        UnhookWindowsHookEx(other);
    player->SetFullScreen(/*on=*/true); // The last row left it on: once more is no second hook.
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
    Init();
    for (const int state : {1, 2, 3, 6, 8, 9, 10}) {
        control.state = state;
        control.imageWidth = 320;
        EXPECT_EQ(surface.surface->IsVideoOpen(), state == 2 || state == 3 || state == 6) << state;
        control.imageWidth = 0;
        EXPECT_FALSE(surface.surface->IsVideoOpen()) << state;
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
