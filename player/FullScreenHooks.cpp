#include "player/FullScreenHooks.h"

#include "player/IMediaPlayer.h"
#include "shell/contracts/framework/Hooks.h"

#include <utility>

namespace kivo::tunehive {

namespace {

constexpr WPARAM kEscape = 27;
constexpr WPARAM kDoubleClick = 515;

IMediaPlayer* g_player = nullptr;
HookHandle g_keyboardHook = 0;
HookHandle g_mouseHook = 0;

void LeaveFullScreen()
{
    if (g_player != nullptr && g_player->IsCreated())
        g_player->SetFullScreen(false);
}

LPARAM OnKeyboard(int code, WPARAM key, LPARAM details)
{
    if (code == 0 && key == kEscape)
        LeaveFullScreen();
    return CallNextHookEx(g_keyboardHook, code, key, details);
}

LPARAM OnMouse(int code, WPARAM message, LPARAM details)
{
    if (code == 0 && message == kDoubleClick)
        LeaveFullScreen();
    return CallNextHookEx(g_mouseHook, code, message, details);
}

void Install(HookHandle& hook, int type, HookProc procedure)
{
    if (hook == 0)
        hook = SetWindowsHookExW(type, procedure);
}

void Remove(HookHandle& hook)
{
    if (hook != 0)
        UnhookWindowsHookEx(std::exchange(hook, 0));
}

} // namespace

void SetFullScreenHooks(bool on)
{
    if (on) {
        Install(g_keyboardHook, WH_KEYBOARD, &OnKeyboard);
        Install(g_mouseHook, WH_MOUSE, &OnMouse);
    } else {
        Remove(g_keyboardHook);
        Remove(g_mouseHook);
    }
}

void SetFullScreenPlayer(IMediaPlayer* player)
{
    g_player = player;
}

void ForgetFullScreenPlayer(const IMediaPlayer* player)
{
    if (g_player == player)
        g_player = nullptr;
}

} // namespace kivo::tunehive
