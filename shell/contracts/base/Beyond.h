#pragma once

#include "shell/contracts/base/Export.h"

namespace kivo {

// The one switch for what goes beyond the rules of the system as they were first written down: rows
// that fill in behind, newer formats, drops of folders and the like. Whatever belongs to it asks
// IsBeyond. Off until `main` of kivo sets it. It lives in libkivo.so, so that the program can set
// it before the plug-in is loaded. Thread: set once before the first thread starts; read from any.
[[nodiscard]] KIVO_API bool IsBeyond();
KIVO_API void SetBeyond(bool on);

} // namespace kivo
