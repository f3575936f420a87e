#pragma once

#include "shell/contracts/base/Export.h"

namespace kivo {

// Lets the C library keep two pools of heap for all threads, not eight for each processor. Each
// pool keeps what its threads needed most at once, and a player's decoders come and go: after some
// hundred tracks two pools hold 30 MB where sixteen hold 130 MB. Where the C library has no such
// pools, nothing happens. Thread: the only one so far.
KIVO_API void LimitHeapPools();

} // namespace kivo
