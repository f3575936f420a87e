#pragma once

#include <string>
#include <string_view>

namespace kivo::tunehive {

// The Windows code page of a character set by the name that XML files declare, in any letter case;
// 0, the system's own, for a name that isn't known. Thread: any.
[[nodiscard]] int FindCodePage(std::string_view characterSet);

} // namespace kivo::tunehive
