#include "platform/attributes/CommentBounds.h"

#include "platform/attributes/OggPackets.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string_view>

namespace kivo::attributes {

namespace {

constexpr std::uint32_t kMostComments = 10'000;
constexpr std::uint32_t kMostTextBytes = 1024 * 1024; // Of all comments but pictures.
constexpr std::size_t kBlockHeadBytes = 4;
constexpr unsigned kCommentBlock = 4;
constexpr int kMostBlocks = 512;

std::optional<std::uint32_t> ReadNumber(IByteRun& bytes)
{
    std::array<char, 4> number{};
    if (bytes.Read(number.data(), number.size()) < number.size())
        return std::nullopt;
    std::uint32_t value = 0;
    for (auto byte = number.rbegin(); byte != number.rend(); ++byte)
        value = value << 8 | static_cast<unsigned char>(*byte);
    return value;
}

bool IsPicture(std::string_view comment)
{
    for (const std::string_view key : {"METADATA_BLOCK_PICTURE=", "COVERART="}) {
        const auto equal = [](char a, char b) { return (a & ~0x20) == (b & ~0x20); };
        if (comment.size() >= key.size() &&
            std::equal(key.begin(), key.end(), comment.begin(), equal))
            return true;
    }
    return false;
}

// `bytes` begin with the vendor's length (Vorbis I, 5.2.1). Where they end early TagLib stops too.
bool AreCommentsSane(IByteRun& bytes)
{
    const auto vendor = ReadNumber(bytes);
    if (!vendor || !bytes.Skip(*vendor))
        return true;
    const auto count = ReadNumber(bytes);
    if (!count)
        return true;
    if (*count > kMostComments)
        return false;
    std::uint32_t textBytes = *vendor;
    for (std::uint32_t i = 0; i < *count && textBytes <= kMostTextBytes; ++i) {
        const auto size = ReadNumber(bytes);
        if (!size)
            return true;
        std::array<char, 24> start{};
        const std::size_t wanted = std::min<std::size_t>(*size, start.size());
        const std::size_t got = bytes.Read(start.data(), wanted);
        if (!IsPicture({start.data(), got}))
            textBytes += std::min(*size, kMostTextBytes + 1);
        if (got < wanted || !bytes.Skip(*size - static_cast<std::uint32_t>(got)))
            break;
    }
    return textBytes <= kMostTextBytes;
}

struct BlockHead {
    bool isLast = false;
    bool isComment = false;
    std::uint32_t size = 0;
};

// The head of a metadata block of FLAC (RFC 9639, 8.1). Nothing where the bytes end.
std::optional<BlockHead> ReadBlockHead(IByteRun& bytes)
{
    std::array<char, kBlockHeadBytes> head{};
    if (bytes.Read(head.data(), head.size()) < head.size())
        return std::nullopt;
    const auto byteAt = [&head](std::size_t i) -> std::uint32_t {
        return static_cast<unsigned char>(head.at(i));
    };
    return BlockHead{(byteAt(0) & 0x80U) != 0,
                     (byteAt(0) & 0x7FU) == kCommentBlock,
                     byteAt(1) << 16U | byteAt(2) << 8U | byteAt(3)};
}

// The bytes of a file from an offset on.
class FileRun final : public IByteRun {
public:
    FileRun(MediaSource& source, std::int64_t offset)
        : source_(source)
        , offset_(offset)
    {
    }
    std::size_t Read(char* bytes, std::size_t count) override
    {
        const std::size_t got = source_.ReadAt(offset_, bytes, count);
        offset_ += static_cast<std::int64_t>(got);
        return got;
    }
    bool Skip(std::uint32_t count) override
    {
        offset_ += count;
        return offset_ <= source_.GetLength();
    }

private:
    MediaSource& source_;
    std::int64_t offset_;
};

} // namespace

bool HasSaneFlacComments(MediaSource& source, std::int64_t offset)
{
    for (int block = 0; block < kMostBlocks; ++block) {
        FileRun bytes(source, offset);
        const auto head = ReadBlockHead(bytes);
        if (!head)
            return true;
        if (head->isComment && !AreCommentsSane(bytes))
            return false;
        if (head->isLast)
            return true;
        offset += static_cast<std::int64_t>(kBlockHeadBytes) + head->size;
    }
    return false;
}

bool HasSaneOggComments(MediaSource& source, std::uint32_t magicBytes)
{
    OggPackets packets(source);
    if (!packets.Next() || !packets.Next() || !packets.Skip(magicBytes))
        return true; // TagLib finds no comments either.
    return AreCommentsSane(packets);
}

bool HasSaneOggFlacComments(MediaSource& source)
{
    OggPackets packets(source);
    if (!packets.Next())
        return true;
    for (int block = 0; block < kMostBlocks && packets.Next(); ++block) {
        const auto head = ReadBlockHead(packets);
        if (!head)
            return true;
        if (head->isComment && !AreCommentsSane(packets))
            return false;
        if (head->isLast)
            return true;
    }
    return true;
}

} // namespace kivo::attributes
