#pragma once

#include "shell/contracts/base/Export.h"
#include "shell/contracts/base/String.h"

namespace kivo {

using LibraryHandle = void*;

// Loads by file name alone (found beside libkivo.so) or by path. Null: it can't be. Thread: user
// interface.
[[nodiscard]] KIVO_API LibraryHandle LoadLibraryW(const String& name);
[[nodiscard]] KIVO_API void* GetProcAddress(LibraryHandle library,
                                            const char* name); // Null: no such name.
// 1: done. 0: it is none, or it can't be given up.
KIVO_API int FreeLibrary(LibraryHandle library);

} // namespace kivo
