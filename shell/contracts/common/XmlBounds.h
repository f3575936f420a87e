#pragma once

#include "shell/contracts/base/Export.h"

#include <string_view>

// Looks an XML text over before a parser of recursive descent gets it. Thread: any.
namespace kivo::common {

// At most 64 levels of elements and 256 attributes an element. It never counts less than the
// parser does.
[[nodiscard]] KIVO_API bool IsInsideXmlBounds(std::string_view text);

// Each lead byte has all its continuation bytes. What they spell isn't looked at, so the three
// bytes of a lone surrogate pass.
[[nodiscard]] KIVO_API bool IsWholeUtf8(std::string_view bytes);

} // namespace kivo::common
