#pragma once

#include "shell/contracts/base/String.h"

#include <vector>

namespace kivo::tunehive {

// The text that a drag of rows of "playing" carries: a prefix, then group and SID of each track.
// A text may come from anywhere: what isn't of this form is passed over.
[[nodiscard]] String MakeDragText(const std::vector<String>& sids);
[[nodiscard]] std::vector<String> ReadDragText(const String& text); // The SIDs of "playing".

} // namespace kivo::tunehive
