#include "player/FullScreenHooks.h"

#include "player/IMediaPlayer.h"
#include "shell/contracts/framework/Hooks.h"

#include <utility>

namespace kivo::tunehive {

namespace {

constexpr WPARAM kEscape = 27;
constexpr WPARAM kDoubleClick = 515;

IMediaPlayer* thePlayer = nullptr;
HookHandle theKeyboardHook = 0;
HookHandle theMouseHook = 0;

void LeaveFullScreen()
{
    if (thePlayer != nullptr && thePlayer->IsCreated())
        thePlayer->SetFullScreen(/*on=*/false);
}

LPARAM OnKeyboard(int code, WPARAM key, LPARAM details)
{
    if (code == 0 && key == kEscape)
        LeaveFullScreen();
    return CallNextHookEx(theKeyboardHook, code, key, details);
}

LPARAM OnMouse(int code, WPARAM message, LPARAM details)
{
    if (code == 0 && message == kDoubleClick)
        LeaveFullScreen();
    return CallNextHookEx(theMouseHook, code, message, details);
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
        Install(theKeyboardHook, WH_KEYBOARD, &OnKeyboard);
        Install(theMouseHook, WH_MOUSE, &OnMouse);
    } else {
        Remove(theKeyboardHook);
        Remove(theMouseHook);
    }
}

void SetFullScreenPlayer(IMediaPlayer* player)
{
    thePlayer = player;
}

void ForgetFullScreenPlayer(const IMediaPlayer* player)
{
    if (thePlayer == player)
        thePlayer = nullptr;
}

} // namespace kivo::tunehive
