#pragma once

#include <string>
#include <string_view>

namespace kivo {

// All text inside the system: UTF-16 code units. Compares, sorts and searches by unit. It may hold
// lone surrogates: U+DC80…DCFF stand for path bytes that aren't UTF-8 (see common::PathToText).
using String = std::u16string;
using StringView = std::u16string_view;

} // namespace kivo
