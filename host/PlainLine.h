#pragma once

#include "shell/contracts/base/String.h"

#include <cstddef>

namespace kivo::host {

// A stranger's text as one line that can't play tricks: without control characters, line ends and
// marks that turn the direction of what follows; blanks collapse and fall away at the ends; no more
// than a few accents stand on one letter; lone surrogates become U+FFFD. At most `longest` units,
// never half a character; where more is cut it ends in an ellipsis. Thread: any.
[[nodiscard]] String ToPlainLine(StringView text, std::size_t longest = 300);

} // namespace kivo::host
