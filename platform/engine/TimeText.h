#pragma once

#include "shell/contracts/base/String.h"

#include <string>

namespace kivo {

// Whole seconds as "m:ss", from an hour on "h:mm:ss"; what is no time gives "0:00".
[[nodiscard]] String FormatTime(double seconds);

// A stranger's text for display and records: control characters out, at most 1024 units.
[[nodiscard]] String BoundText(const std::string& utf8);

} // namespace kivo
