#pragma once

#include "shell/contracts/base/String.h"

#include <optional>

namespace kivo::tunehive {

// The plug-in's folder inside the user's directory, ending in a separator: settings and groups lie
// in it, the library in "lib" below it. It need not exist. Nothing without the host's answer.
// Thread: user interface.
[[nodiscard]] std::optional<String> GetDataFolder();

} // namespace kivo::tunehive
