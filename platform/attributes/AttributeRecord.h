#pragma once

#include "shell/contracts/base/String.h"

#include <cstdint>
#include <limits>
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

// Bits per second of so many bytes in that time, which is above 0; at most what the attribute,
// a signed number, can tell.
[[nodiscard]] inline std::uint32_t GetMeanRate(std::int64_t bytes, std::int64_t milliseconds)
{
    const double rate = static_cast<double>(bytes) * 8000.0 / static_cast<double>(milliseconds);
    constexpr std::int32_t kMost = std::numeric_limits<std::int32_t>::max();
    return rate < kMost ? static_cast<std::uint32_t>(rate) : std::uint32_t{kMost};
}

} // namespace kivo::attributes
