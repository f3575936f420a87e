#pragma once

#include "shell/contracts/base/String.h"

#include <cstddef>

namespace kivo::host {

// A stranger's text as one line for the screen: cleaned as CleanSignText says, with no more than a
// few accents on one letter, which would else reach into the lines above. At most `longest` units,
// never half a character; where more is cut it ends in an ellipsis. Thread: any.
[[nodiscard]] String ToPlainLine(StringView text, std::size_t longest = 300);

} // namespace kivo::host
