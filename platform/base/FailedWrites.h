#pragma once

#include "shell/contracts/base/String.h"

// The list behind TakeFailedWrites. Thread: any.
namespace kivo {

void NoteFailedWrite(const String& path);
void NoteGoodWrite(const String& path);

} // namespace kivo
