#pragma once

#include "medialib/MpegFrame.h"

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace kivo::tunehive {

// The search as it is written down: four bytes, and back by three, on bytes in memory.
class LiteralSearch {
public:
    explicit LiteralSearch(std::string_view bytes)
        : bytes_(bytes)
    {
    }

    bool Find(std::uint32_t& header, int skip)
    {
        if (skip > 0)
            position_ += static_cast<std::size_t>(skip);
        for (int failures = 0; failures < 10'001; ++failures) {
            if (position_ > bytes_.size() || bytes_.size() - position_ < 4)
                return false;
            header = 0;
            for (std::size_t i = 0; i < 4; ++i)
                header = header << 8 | static_cast<unsigned char>(bytes_[position_ + i]);
            position_ += 4;
            if (header >> 21 == 0x7FF)
                return true;
            position_ -= 3;
        }
        return false;
    }

private:
    std::string_view bytes_;
    std::size_t position_ = 0;
};

// All headers of a walk. Search is one of the two; the steps are the reader's.
template <class Search>
[[nodiscard]] std::vector<std::uint32_t> WalkFrames(Search search)
{
    std::vector<std::uint32_t> headers;
    MpegStream stream;
    std::uint32_t header = 0;
    for (int skip = 0; search(header, skip); headers.push_back(header)) {
        if (headers.empty())
            stream = DecodeStream(header);
        const int rate = GetSamplingRate(stream.version, header);
        skip = rate == 0 ? 0 : GetFrameSize(stream, header, GetBitRate(stream, header), rate) - 4;
    }
    return headers;
}

} // namespace kivo::tunehive
