#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace kivo::tunehive {

// The attribute in the library files that stands for a key of MediaInfoKey; empty for other keys.
[[nodiscard]] std::string_view GetInfoAttribute(std::int32_t key);

// The key of an attribute, whose name must match to the letter; nothing for other attributes.
[[nodiscard]] std::optional<std::int32_t> FindInfoKey(std::string_view attribute);

} // namespace kivo::tunehive
