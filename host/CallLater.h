#pragma once

#include "shell/contracts/base/LifeToken.h"

#include <functional>

namespace kivo::host {

// Calls it from the queue of posts, unless what is watched has gone by then.
// Thread: user interface.
void CallLater(const LifeWatch& life, std::function<void()> call);

} // namespace kivo::host
