#pragma once

#include "shell/contracts/control/MediaAttributes.h"

namespace kivo::attributes {

// Opens an address on a thread of its own and reads on to its end, reporting what it meets: http,
// https, mms and rtsp.
[[nodiscard]] IWMReader* MakeStreamReader(); // Freed by its Release.

} // namespace kivo::attributes
