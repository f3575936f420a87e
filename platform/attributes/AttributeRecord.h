#pragma once

#include "shell/contracts/base/String.h"

#include <cstdint>
#include <optional>

namespace kivo::attributes {

// What a reader found. An absent value is unknown; texts are as they stand in the file.
struct AttributeRecord {
    std::optional<std::int64_t> milliseconds;
    std::optional<std::uint32_t> bitsPerSecond;
    std::optional<String> title;
    std::optional<String> author;
    std::optional<String> album;
    std::optional<String> genre;
    std::optional<String> comment;
};

} // namespace kivo::attributes
