#pragma once

#include "shell/contracts/base/Export.h"

// What the embedded browser needs of the process that it runs in. It locks its own processes into a
// sandbox, and where it can't it ends the whole program; so this is asked before it is loaded.
namespace kivo {

// Takes from the environment what weakens the browser: flags for it, the switch of its sandbox, its
// port for debuggers. Only the administrator may leave the sandbox out, by a
// QTWEBENGINE_CHROMIUM_FLAGS that holds --no-sandbox; then that flag alone stays. Thread: the only
// one so far.
KIVO_API void SecureBrowserEnvironment();

// False: the browser would end the program. The user is the administrator and has not left the
// sandbox out, or the system gives no sandbox. Behind SecureBrowserEnvironment. Thread: any.
[[nodiscard]] KIVO_API bool CanBrowserStart();

} // namespace kivo
