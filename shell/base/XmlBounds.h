#pragma once

#include <string_view>

// Looks an XML text over before a parser of recursive descent gets it. Thread: any.
namespace kivo::tunehive {

// At most 64 levels of elements and 256 attributes an element. It never counts less than the
// parser does.
[[nodiscard]] bool IsInsideXmlBounds(std::string_view text);

// The '>' that ends the tag at `tag`, which begins with '<'; one inside quotes doesn't. Null: the
// text ends first.
[[nodiscard]] const char* FindTagEnd(const char* tag);

// Each lead byte has all its continuation bytes. What they spell isn't looked at, so the three
// bytes of a lone surrogate pass.
[[nodiscard]] bool IsWholeUtf8(std::string_view bytes);

} // namespace kivo::tunehive
