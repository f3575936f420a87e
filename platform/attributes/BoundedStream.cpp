#include "platform/attributes/BoundedStream.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

namespace kivo::attributes {

namespace {
constexpr int kMaxCalls = 4096;
constexpr std::int64_t kMaxBytes = 64 * 1024 * 1024;
constexpr unsigned long kBlockLimit = 4UL * 1024 * 1024;
constexpr unsigned long kFirstBlockLimit = 32UL * 1024 * 1024; // A tag in front holds pictures.
constexpr std::int64_t kFirstBlockStart = 10; // It begins at most behind its header.
constexpr std::int64_t kChunkSizeBytes = 4;

// A tag says how many items TagLib makes of it, and each costs a thousand bytes, also where the
// file has long ended.
constexpr std::int16_t kMostItems = 2048;
constexpr bool kBigEndian = false;
constexpr unsigned kApeFooterBytes = 32;
constexpr unsigned kApeCountOffset = 16;
constexpr unsigned kAsfGuidBytes = 16;
constexpr std::array<std::string_view, 3> kAsfAttributes = { // Objects that begin with a count.
    std::string_view("\x40\xA4\xD0\xD2\x07\xE3\xD2\x11\x97\xF0\x00\xA0\xC9\x5E\xA8\x50", 16),
    std::string_view("\xEA\xCB\xF8\xC5\xAF\x5B\x77\x48\x84\x67\xAA\x8C\x44\xFA\x4C\xCA", 16),
    std::string_view("\x94\x1C\x23\x44\x98\x94\xD1\x49\xA1\x41\x1D\x13\x4E\x45\x70\x54", 16)};

void Replace(TagLib::ByteVector& block, unsigned offset, const TagLib::ByteVector& bytes)
{
    std::copy(bytes.begin(), bytes.end(), block.begin() + offset);
}

} // namespace

BoundedStream::BoundedStream(MediaSource& source, std::int64_t baseOffset)
    : source_(source)
    , baseOffset_(baseOffset)
    , blockLimit_(kBlockLimit)
    , callsLeft_(kMaxCalls)
    , bytesLeft_(kMaxBytes)
{
}

TagLib::ByteVector BoundedStream::readBlock(unsigned long length)
{
    const unsigned long limit =
        position_ <= kFirstBlockStart ? std::max(blockLimit_, kFirstBlockLimit) : blockLimit_;
    const auto rest = static_cast<unsigned long>(
        std::max<std::int64_t>(0, source_.GetLength() - baseOffset_ - position_));
    const unsigned long wanted = std::min(length, rest);
    if (callsLeft_ <= 0 || wanted == 0 || wanted > limit ||
        static_cast<std::int64_t>(wanted) > bytesLeft_) {
        return {};
    }
    --callsLeft_;
    bytesLeft_ -= static_cast<std::int64_t>(wanted);

    TagLib::ByteVector block(static_cast<unsigned>(wanted), '\0');
    const std::size_t got = source_.ReadAt(baseOffset_ + position_, block.data(), wanted);
    block.resize(static_cast<unsigned>(got));
    position_ += static_cast<std::int64_t>(got);
    if (hidesId3Chunk_ && (block == "id3 " || block == "ID3 ")) {
        id3ChunkOffset_ = position_ + kChunkSizeBytes;
        return "junk";
    }
    BoundCounts(block);
    return block;
}

void BoundedStream::BoundCounts(TagLib::ByteVector& block)
{
    const auto size = block.size();
    if (size == kApeFooterBytes && block.startsWith("APETAGEX")) {
        if (block.toUInt(kApeCountOffset, kBigEndian) > kMostItems)
            Replace(block, kApeCountOffset, TagLib::ByteVector::fromUInt(kMostItems, kBigEndian));
    } else if (size == kAsfGuidBytes) {
        awaitsAsfCount_ = std::find(kAsfAttributes.begin(),
                                    kAsfAttributes.end(),
                                    std::string_view(block.data(), size)) != kAsfAttributes.end();
    } else if (size == sizeof kMostItems && std::exchange(awaitsAsfCount_, false)) {
        if (block.toUShort(kBigEndian) > kMostItems)
            Replace(block, 0, TagLib::ByteVector::fromShort(kMostItems, kBigEndian));
    }
}

void BoundedStream::writeBlock(const TagLib::ByteVector& /*data*/) {}

void BoundedStream::insert(const TagLib::ByteVector& /*data*/,
                           unsigned long /*start*/,
                           unsigned long /*replace*/)
{
}

void BoundedStream::removeBlock(unsigned long /*start*/, unsigned long /*length*/) {}

void BoundedStream::truncate(long /*length*/) {}

void BoundedStream::seek(long offset, Position from)
{
    std::int64_t base = 0;
    if (from == Current)
        base = position_;
    else if (from == End)
        base = source_.GetLength() - baseOffset_;
    position_ = std::max<std::int64_t>(0, base + offset);
}

long BoundedStream::length()
{
    return static_cast<long>(std::max<std::int64_t>(0, source_.GetLength() - baseOffset_));
}

} // namespace kivo::attributes
