#pragma once

#include "shell/contracts/framework/Windows.h"

// The windows behind the handles. Thread: any, but for the pointers, which are good on the
// user-interface thread alone.
namespace kivo {

[[nodiscard]] HWND EnterWindow(CWnd* window);
void LeaveWindow(HWND handle);
[[nodiscard]] CWnd* FindWindowOf(HWND handle); // Null: gone.
[[nodiscard]] bool IsWindowEntered(HWND handle);

} // namespace kivo
