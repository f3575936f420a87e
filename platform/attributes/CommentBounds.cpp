#include "platform/attributes/CommentBounds.h"

#include <string>
#include <string_view>
#include <utility>

namespace kivo::attributes {

namespace {

constexpr std::size_t kCommentHeadBytes = 8 * 1024;
constexpr std::uint32_t kMostComments = 10'000;

std::uint32_t
ReadNumber(std::string_view bytes, std::size_t offset, bool bigEndian, std::size_t count)
{
    std::uint32_t number = 0;
    for (std::size_t i = 0; i < count; ++i) {
        const std::size_t at = offset + (bigEndian ? i : count - 1 - i);
        number = number << 8 | static_cast<unsigned char>(bytes[at]);
    }
    return number;
}

// `head` begins with the vendor's length (Vorbis I, 5.2.1).
bool HasFewComments(std::string_view head)
{
    if (head.size() < 4)
        return true; // Cut off: TagLib finds no comments.
    const std::size_t vendor = ReadNumber(head, 0, /*bigEndian=*/false, 4);
    if (vendor > kCommentHeadBytes || head.size() < vendor + 8)
        return head.size() < kCommentHeadBytes;
    return ReadNumber(head, vendor + 4, /*bigEndian=*/false, 4) <= kMostComments;
}

std::string ReadBytes(MediaSource& source, std::int64_t offset, std::size_t count)
{
    std::string bytes(count, '\0');
    bytes.resize(source.ReadAt(offset, bytes.data(), count));
    return bytes;
}

// Bytes of the Ogg page at `offset`, and of its header alone (RFC 3533, 6); 0 when there is none.
std::pair<std::int64_t, std::int64_t> MeasurePage(MediaSource& source, std::int64_t offset)
{
    constexpr std::size_t kFixedBytes = 27;
    const std::string header = ReadBytes(source, offset, kFixedBytes + 255);
    if (header.size() < kFixedBytes || !header.starts_with("OggS"))
        return {0, 0};
    const std::size_t segments = static_cast<unsigned char>(header[kFixedBytes - 1]);
    std::int64_t bytes = static_cast<std::int64_t>(kFixedBytes + segments);
    const std::int64_t headerBytes = bytes;
    for (std::size_t i = 0; i < segments && kFixedBytes + i < header.size(); ++i)
        bytes += static_cast<unsigned char>(header[kFixedBytes + i]);
    return {bytes, headerBytes};
}

} // namespace

// Walks the metadata blocks of FLAC (RFC 9639, 8.1) from `offset`, behind the mark, in search of
// the comments.
bool HasSaneFlacComments(MediaSource& source, std::int64_t offset)
{
    constexpr int kMostBlocks = 512;
    constexpr unsigned kCommentBlock = 4;
    for (int block = 0; block < kMostBlocks; ++block) {
        const std::string header = ReadBytes(source, offset, 4);
        if (header.size() < 4)
            return true;
        const unsigned type = static_cast<unsigned char>(header[0]) & 0x7FU;
        if (type == kCommentBlock &&
            !HasFewComments(ReadBytes(source, offset + 4, kCommentHeadBytes)))
            return false;
        if ((header[0] & 0x80) != 0)
            return true;
        offset += 4 + static_cast<std::int64_t>(ReadNumber(header, 1, /*bigEndian=*/true, 3));
    }
    return false;
}

// The comments stand in the second packet, which begins the second page.
bool HasSaneOggComments(MediaSource& source, std::size_t magicBytes)
{
    const std::int64_t second = MeasurePage(source, 0).first;
    const std::int64_t data = second + MeasurePage(source, second).second;
    return HasFewComments(
        ReadBytes(source, data + static_cast<std::int64_t>(magicBytes), kCommentHeadBytes));
}

} // namespace kivo::attributes
