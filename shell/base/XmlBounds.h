#pragma once

#include "shell/contracts/common/XmlBounds.h"

namespace kivo::tunehive {

using common::IsInsideXmlBounds;
using common::IsWholeUtf8;

// The '>' that ends the tag at `tag`, which begins with '<'; one inside quotes doesn't. Null: the
// text ends first.
[[nodiscard]] const char* FindTagEnd(const char* tag);

} // namespace kivo::tunehive
