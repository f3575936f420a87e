#include "medialib/MpegFrame.h"

#include <array>
#include <cstddef>

namespace kivo::tunehive {

namespace {

constexpr int kVersionMpeg1 = 3;

constexpr std::array<StringView, 4> kVersionTexts = {
    u"MPEGVER_25", u"MPEGVER_NA", u"MPEGVER_2", u"MPEGVER_1"};
constexpr std::array<StringView, 4> kChannelModeTexts = {
    u"MP3CM_STEREO", u"MP3CM_JOINT_STEREO", u"MP3CM_DUAL_CHANNEL", u"MP3CM_SINGLE_CHANNEL"};
constexpr std::array<StringView, 4> kEmphasisTexts = {
    u"MP3EM_NONE", u"MP3EM_50_15_MS", u"MP3EM_RESERVED", u"MP3EM_CCIT_J17"};

constexpr int kSamplingRates[4][4] = {
    {11025, 12000, 8000,  0},
    {0,     0,     0,     0},
    {22050, 24000, 16000, 0},
    {44100, 48000, 32000, 0},
};

using BitRates = std::array<int, 16>;

// ISO/IEC 11172-3, Layers I, II and III.
constexpr BitRates kMpeg1BitRates[3] = {
    {0, 32, 64, 96, 128, 160, 192, 224, 256, 288, 320, 352, 384, 416, 448, -1},
    {0, 32, 48, 56, 64,  80,  96,  112, 128, 160, 192, 224, 256, 320, 384, -1},
    {0, 32, 40, 48, 56,  64,  80,  96,  112, 128, 160, 192, 224, 256, 320, -1},
};

// ISO/IEC 13818-3, the lower sampling frequencies.
constexpr BitRates kMpeg2BitRates[3] = {
    {0, 32, 48, 56, 64, 80, 96, 112, 128, 144, 160, 176, 192, 224, 256, -1},
    {0, 8,  16, 24, 32, 40, 48, 56,  64,  80,  96,  112, 128, 144, 160, -1},
    {0, 8,  16, 24, 32, 40, 48, 56,  64,  80,  96,  112, 128, 144, 160, -1},
};

} // namespace

MpegStream DecodeStream(std::uint32_t header)
{
    const int layerField = static_cast<int>(GetHeaderBits(header, 17, 2));
    MpegStream stream;
    stream.version = static_cast<int>(GetHeaderBits(header, 19, 2));
    stream.layer = layerField == 0 ? 0 : 4 - layerField;
    stream.hasProtectionBit = GetHeaderBits(header, 16, 1) != 0;
    return stream;
}

StringView GetVersionText(int version)
{
    return kVersionTexts.at(static_cast<std::size_t>(version));
}

StringView GetChannelModeText(std::uint32_t header)
{
    return kChannelModeTexts.at(GetHeaderBits(header, 6, 2));
}

StringView GetEmphasisText(std::uint32_t header)
{
    return kEmphasisTexts.at(GetHeaderBits(header, 0, 2));
}

int GetBitRate(const MpegStream& stream, std::uint32_t header)
{
    if (stream.layer == 0)
        return 0;
    const auto& tables = stream.version == kVersionMpeg1 ? kMpeg1BitRates : kMpeg2BitRates;
    return tables[stream.layer - 1].at(GetHeaderBits(header, 12, 4));
}

int GetSamplingRate(int version, std::uint32_t header)
{
    return kSamplingRates[version][GetHeaderBits(header, 10, 2)];
}

int GetFrameSize(const MpegStream& stream, std::uint32_t header, int bitRate, int samplingRate)
{
    const int padding = static_cast<int>(GetHeaderBits(header, 9, 1));
    if (stream.layer == 1)
        return (bitRate * 12000 / samplingRate + padding) * 4;
    return bitRate * 144000 / samplingRate + padding;
}

} // namespace kivo::tunehive
