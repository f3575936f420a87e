#include "platform/attributes/Mp3Length.h"

#include "platform/attributes/AttributeRecord.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <string>

namespace kivo::attributes {

namespace {

constexpr int kFramesSampled = 24;
constexpr std::int64_t kWalkBytes = 64 * 1024 * 1024;
constexpr std::size_t kBufferBytes = 256 * 1024;
constexpr std::int64_t kSearchBytes = 16 * 1024;

// Bit rates in kbit/s: MPEG-1 Layer I, II, III, then MPEG-2 and 2.5 Layer I, II and III (alike).
constexpr std::array<std::array<int, 16>, 5> kBitRates = {
    {{0, 32, 64, 96, 128, 160, 192, 224, 256, 288, 320, 352, 384, 416, 448, 0},
     {0, 32, 48, 56, 64, 80, 96, 112, 128, 160, 192, 224, 256, 320, 384, 0},
     {0, 32, 40, 48, 56, 64, 80, 96, 112, 128, 160, 192, 224, 256, 320, 0},
     {0, 32, 48, 56, 64, 80, 96, 112, 128, 144, 160, 176, 192, 224, 256, 0},
     {0, 8, 16, 24, 32, 40, 48, 56, 64, 80, 96, 112, 128, 144, 160, 0}}
};
constexpr std::array<int, 3> kSampleRates = {
    44100, 48000, 32000}; // MPEG-1; halved and quartered for 2 and 2.5

struct Frame {
    int kilobits = 0;
    int sampleRate = 0;
    int samples = 0;
    int bytes = 0;
};

std::optional<Frame> ParseFrame(const unsigned char* header)
{
    const int version = (header[1] >> 3) & 3; // 0: 2.5, 2: 2, 3: 1
    const int layer = 4 - ((header[1] >> 1) & 3);
    const int rateIndex = header[2] >> 4;
    const int sampleIndex = (header[2] >> 2) & 3;
    if (header[0] != 0xFF || (header[1] & 0xE0) != 0xE0 || version == 1 || layer == 4 ||
        sampleIndex == 3)
        return std::nullopt;

    const bool isFirst = version == 3;
    const int table = isFirst ? layer - 1 : std::min(layer, 2) + 2;
    Frame frame;
    frame.kilobits =
        kBitRates.at(static_cast<std::size_t>(table)).at(static_cast<std::size_t>(rateIndex));
    frame.sampleRate = kSampleRates.at(static_cast<std::size_t>(sampleIndex)) >>
                       (isFirst ? 0 : (version == 2 ? 1 : 2));
    if (frame.kilobits == 0)
        return std::nullopt;
    const int padding = (header[2] >> 1) & 1;
    if (layer == 1) {
        frame.samples = 384;
        frame.bytes = (12000 * frame.kilobits / frame.sampleRate + padding) * 4;
    } else {
        frame.samples = layer == 3 && !isFirst ? 576 : 1152;
        frame.bytes = frame.samples / 8 * 1000 * frame.kilobits / frame.sampleRate + padding;
    }
    return frame;
}

// Reads frame headers one after another through a buffer of its own: the source's window is too
// small for a walk.
class FrameWalk {
public:
    FrameWalk(MediaSource& source, std::int64_t start, std::int64_t end)
        : source_(source)
        , position_(start)
        , end_(end)
    {
    }

    // The next frame that is followed by another or by the end; searches at most 16 KB for it.
    std::optional<Frame> Next()
    {
        const std::int64_t limit = std::min(end_, position_ + kSearchBytes);
        for (; position_ + 4 <= limit; ++position_) {
            const unsigned char* header = At(position_);
            if (header == nullptr)
                return std::nullopt;
            const auto frame = ParseFrame(header);
            if (!frame)
                continue;
            const std::int64_t next = position_ + frame->bytes;
            const unsigned char* follower = next + 4 <= end_ ? At(next) : nullptr;
            if (next + 4 <= end_ && (follower == nullptr || !ParseFrame(follower)))
                continue;
            position_ = next;
            return frame;
        }
        return std::nullopt;
    }

    [[nodiscard]] std::int64_t GetPosition() const { return position_; }

private:
    const unsigned char* At(std::int64_t offset)
    {
        const auto size = static_cast<std::int64_t>(buffer_.size());
        if (offset < bufferStart_ || offset + 4 > bufferStart_ + size) {
            buffer_.resize(kBufferBytes);
            buffer_.resize(source_.ReadAt(offset, buffer_.data(), buffer_.size()));
            bufferStart_ = offset;
            if (buffer_.size() < 4)
                return nullptr;
        }
        return reinterpret_cast<const unsigned char*>(buffer_.data()) + (offset - bufferStart_);
    }

    MediaSource& source_;
    std::int64_t position_;
    std::int64_t end_;
    std::string buffer_;
    std::int64_t bufferStart_ = 0;
};

bool HasSeveralRates(MediaSource& source, std::int64_t start, std::int64_t end)
{
    int seen = 0;
    for (int quarter = 0; quarter < 4; ++quarter) {
        FrameWalk walk(source, start + (end - start) / 4 * quarter, end);
        for (int i = 0; i < kFramesSampled; ++i) {
            const auto frame = walk.Next();
            if (!frame)
                break;
            if (seen != 0 && frame->kilobits != seen)
                return true;
            seen = frame->kilobits;
        }
    }
    return false;
}

} // namespace

std::optional<AudioLength>
MeasureVariableRate(MediaSource& source, std::int64_t start, std::int64_t end)
{
    if (start < 0 || end <= start || !HasSeveralRates(source, start, end))
        return std::nullopt;

    const std::int64_t walkEnd = std::min(end, start + kWalkBytes);
    FrameWalk walk(source, start, walkEnd);
    double seconds = 0.0;
    while (const auto frame = walk.Next())
        seconds += static_cast<double>(frame->samples) / frame->sampleRate;
    if (seconds <= 0.0)
        return std::nullopt;

    const auto walked = static_cast<double>(walkEnd - start);
    const auto all = static_cast<double>(end - start);
    seconds *= all / walked;
    AudioLength length;
    length.milliseconds = std::max(1LL, std::llround(seconds * 1000.0));
    length.bitsPerSecond = GetMeanRate(end - start, length.milliseconds);
    return length;
}

} // namespace kivo::attributes
