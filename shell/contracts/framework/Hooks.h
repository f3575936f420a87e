#pragma once

#include "shell/contracts/base/Export.h"
#include "shell/contracts/framework/Windows.h"

#include <cstdint>

// Hooks that see keys and mouse messages of the program before the window they are for. Thread:
// user interface.
namespace kivo {

using HookHandle = std::uintptr_t; // Never given twice in a run; 0: none.

// `code` 0: look at it; negative: only pass it on. Keyboard: `wParam` is the virtual key code.
// Mouse: `wParam` is the message number. A result other than 0 keeps the input from its window.
using HookProc = LPARAM (*)(int code, WPARAM wParam, LPARAM lParam);

inline constexpr int WH_KEYBOARD = 2;
inline constexpr int WH_MOUSE = 7;

// Puts a hook in front of those of its type. 0: no such type, or no procedure.
[[nodiscard]] KIVO_API HookHandle SetWindowsHookExW(int type, HookProc procedure);

// 1: gone; it isn't called again, also when a pass is under way. 0: there is none by that handle.
KIVO_API int UnhookWindowsHookEx(HookHandle hook);

// From inside a hook: asks the next one of the pass under way, whatever `hook` is, so that a hook
// that has just removed itself still passes on. 0 behind the last.
KIVO_API LPARAM CallNextHookEx(HookHandle hook, int code, WPARAM wParam, LPARAM lParam);

// Where input enters: asks the newest hook of the type with code 0. What it gives; 0 without one.
KIVO_API LPARAM RunHooks(int type, WPARAM wParam, LPARAM lParam);

} // namespace kivo
