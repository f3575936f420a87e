#include "platform/attributes/BoundedStream.h"

#include <algorithm>

namespace kivo::attributes {

namespace {
constexpr int kMaxCalls = 4096;
constexpr std::int64_t kMaxBytes = 64 * 1024 * 1024;
constexpr unsigned long kBlockLimit = 4UL * 1024 * 1024;
constexpr unsigned long kFirstBlockLimit = 32UL * 1024 * 1024; // A tag in front holds pictures.
constexpr std::int64_t kFirstBlockStart = 10; // It begins at most behind its header.
constexpr std::int64_t kChunkSizeBytes = 4;
constexpr unsigned kApeFooterBytes = 32;
constexpr unsigned kApeCountOffset = 16;
constexpr unsigned kMostApeItems = 2048;
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
    if (block.size() == kApeFooterBytes)
        BoundApeItems(block);
    return block;
}

// The footer of an APE tag says how many items TagLib makes of it: each costs a thousand bytes.
void BoundedStream::BoundApeItems(TagLib::ByteVector& block)
{
    constexpr bool kBigEndian = false;
    if (!block.startsWith("APETAGEX") || block.toUInt(kApeCountOffset, kBigEndian) <= kMostApeItems)
        return;
    const TagLib::ByteVector count = TagLib::ByteVector::fromUInt(kMostApeItems, kBigEndian);
    std::copy(count.begin(), count.end(), block.begin() + kApeCountOffset);
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
