#pragma once

#include "shell/contracts/base/String.h"

namespace kivo::host {

// One or two letters for a face: the first of the first and of the last word, in capitals where
// that is plain; one letter of scripts that are written in squares. Never half a character.
[[nodiscard]] String GetInitials(StringView name);

} // namespace kivo::host
