#pragma once

#include "platform/attributes/MediaSource.h"

#include <cstdint>
#include <optional>

namespace kivo::attributes {

struct AudioLength {
    std::int64_t milliseconds = 0;
    std::uint32_t bitsPerSecond = 0; // The mean.
};

// The length of MPEG audio without a header that tells it, when its bit rate changes: samples
// frames at four places and, if they differ, walks the frames from `start` to `end`, at most 64 MB
// of them, and scales the rest. Nothing when one bit rate was seen throughout: the first frame then
// tells the length. Frame sizes by ISO/IEC 11172-3 and 13818-3.
[[nodiscard]] std::optional<AudioLength>
MeasureVariableRate(MediaSource& source, std::int64_t start, std::int64_t end);

} // namespace kivo::attributes
