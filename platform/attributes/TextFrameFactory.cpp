#include "platform/attributes/TextFrameFactory.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace kivo::attributes {

namespace {
constexpr std::array<std::string_view, 10> kTextFrames = { // ID3v2.3 and 2.4, then 2.2
    "TIT2",
    "TPE1",
    "TALB",
    "TCON",
    "COMM",
    "TT2",
    "TP1",
    "TAL",
    "TCO",
    "COM"};

constexpr unsigned kLongestText = 256 * 1024; // Bytes of a frame.

// The frame header's bits that say how the data is stored, by version (ID3v2.3.0 3.3.1,
// ID3v2.4.0 4.1.2).
constexpr char kEncryptedV3 = 0x40;
constexpr char kEncryptedV4 = 0x04;
} // namespace

bool TextFrameFactory::updateFrame(FrameAccess::Header* header) const
{
    if (--framesLeft_ < 0) {
        header->setFrameSize(0); // The tag's reader ends at a frame without a size.
        return false;
    }
    if (header->compression()) {
        // Called encrypted, the frame is kept as it stands: a few bytes could inflate to gigabytes.
        const unsigned version = header->version();
        const unsigned size = header->frameSize();
        TagLib::ByteVector raw = header->frameID();
        raw.resize(10, '\0');
        raw[9] = version > 3 ? kEncryptedV4 : kEncryptedV3;
        header->setData(raw, version);
        header->setVersion(version);
        header->setFrameSize(size);
        return false;
    }
    if (header->frameSize() > kLongestText)
        return false;
    const TagLib::ByteVector id = header->frameID();
    const std::string_view name(id.data(), id.size());
    if (std::find(kTextFrames.begin(), kTextFrames.end(), name) == kTextFrames.end())
        return false;
    return FrameFactory::updateFrame(header);
}

} // namespace kivo::attributes
