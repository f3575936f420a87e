#pragma once

#include "shell/contracts/base/Export.h"
#include "shell/contracts/base/String.h"

// The modules beside libkivo.so that are loaded when first needed and then stay. Thread: any.
namespace kivo {

// A function of a module of the program's folder ("libkivo_engine.so"). Null: the module, a library
// that it needs, or the function is missing; the next call tries again.
[[nodiscard]] KIVO_API void* FindInModule(const String& fileName, const char* function);

} // namespace kivo
