#pragma once

#include "shell/contracts/base/Export.h"
#include "shell/contracts/framework/Windows.h"

#include <cstdint>

namespace kivo {

// A timer's handle; never 0, never given twice in a run.
using TimerId = std::uintptr_t;

// Arguments: the window (0 here), the message (0x0113), the timer's handle, milliseconds since the
// program's start.
using TimerProc = void (*)(HWND, unsigned, TimerId, std::uint32_t);

// Starts a repeating timer of `periodMs` milliseconds and gives its fresh handle. `window` is 0, so
// that `id` is ignored. Ticks missed while the thread is busy are dropped. Thread: user interface.
KIVO_API TimerId SetTimer(HWND window, TimerId id, unsigned periodMs, TimerProc callback);

// 1: the timer ran and is gone. 0: there is none by that handle; harmless. A callback may kill its
// own timer.
KIVO_API int KillTimer(HWND window, TimerId handle);

} // namespace kivo
