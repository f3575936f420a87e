#include "platform/attributes/OggPackets.h"

#include <algorithm>
#include <limits>
#include <numeric>
#include <string_view>

namespace kivo::attributes {

namespace {
constexpr std::size_t kFixedBytes = 27;     // Of a page's header, before the sizes (RFC 3533, 6).
constexpr unsigned char kFullSegment = 255; // Behind which its packet goes on.
} // namespace

bool OggPackets::NextPage()
{
    std::array<char, kFixedBytes> fixed{};
    if (--pagesLeft_ < 0 || source_.ReadAt(nextPage_, fixed.data(), fixed.size()) < fixed.size() ||
        !std::string_view(fixed.data(), fixed.size()).starts_with("OggS"))
        return false;
    segments_ = static_cast<unsigned char>(fixed.back());
    segment_ = 0;
    const std::int64_t sizes = nextPage_ + static_cast<std::int64_t>(kFixedBytes);
    if (source_.ReadAt(sizes, sizes_.data(), segments_) < segments_)
        return false;
    data_ = sizes + static_cast<std::int64_t>(segments_);
    nextPage_ = std::accumulate(sizes_.data(), sizes_.data() + segments_, data_);
    return segments_ > 0;
}

bool OggPackets::NextSegment()
{
    if (segment_ == segments_ && !NextPage())
        return false;
    left_ = sizes_.at(segment_++);
    goesOn_ = left_ == kFullSegment;
    return true;
}

bool OggPackets::Next()
{
    static_cast<void>(Take(nullptr, std::numeric_limits<std::size_t>::max()));
    return !goesOn_ && NextSegment();
}

std::size_t OggPackets::Take(char* bytes, std::size_t count)
{
    std::size_t done = 0;
    for (;;) {
        std::size_t part = std::min(left_, count - done);
        if (bytes != nullptr)
            part = source_.ReadAt(data_, bytes + done, part);
        else if (data_ > source_.GetLength())
            part = 0;
        const bool isCut = part < std::min(left_, count - done);
        done += part;
        left_ -= part;
        data_ += static_cast<std::int64_t>(part);
        if (isCut || done == count || !goesOn_ || !NextSegment())
            return done;
    }
}

std::size_t OggPackets::Read(char* bytes, std::size_t count)
{
    return Take(bytes, count);
}

bool OggPackets::Skip(std::uint32_t count)
{
    return Take(nullptr, count) == count;
}

} // namespace kivo::attributes
