#pragma once

#include "shell/contracts/base/String.h"

#include <cstdint>

// The fields of an MPEG audio frame header: four bytes, joined big-endian.
namespace kivo::tunehive {

[[nodiscard]] constexpr std::uint32_t GetHeaderBits(std::uint32_t header, int low, int count)
{
    return (header >> low) & ((1U << count) - 1U);
}

// What the first header of a file decides for all that follow.
struct MpegStream {
    int version = 1; // The field itself: 0 MPEG 2.5, 1 none, 2 MPEG 2, 3 MPEG 1.
    int layer = 0;   // 1, 2 or 3; 0 is no layer.
    bool hasProtectionBit = false;
};

[[nodiscard]] MpegStream DecodeStream(std::uint32_t header);

[[nodiscard]] StringView GetVersionText(int version);              // "MPEGVER_1", …
[[nodiscard]] StringView GetChannelModeText(std::uint32_t header); // "MP3CM_STEREO", …
[[nodiscard]] StringView GetEmphasisText(std::uint32_t header);    // "MP3EM_NONE", …

// Kilobits per second: 0 without a layer and for index 0 (free format), -1 for index 15.
[[nodiscard]] int GetBitRate(const MpegStream& stream, std::uint32_t header);

// Hertz; 0 where the version or the index has no rate.
[[nodiscard]] int GetSamplingRate(int version, std::uint32_t header);

// Bytes of the frame, header included, cut towards zero; 0 or less than a header where the bit rate
// says nothing. The factor of Layers II and III is that of MPEG 1 for all versions: in Layer III of
// the others each step lands on every second frame, and its time counts for both.
[[nodiscard]] int
GetFrameSize(const MpegStream& stream, std::uint32_t header, int bitRate, int samplingRate);

} // namespace kivo::tunehive
