#include "platform/attributes/Mp4Video.h"

#include <array>
#include <cstdint>
#include <span>
#include <string_view>

namespace kivo::attributes {

namespace {

constexpr std::int64_t kHeadBytes = 8;
constexpr std::int64_t kHandlerOffset = 8; // Of the handler's kind in its box.

// The way to the handler of each track (ISO/IEC 14496-12, 8.4.3).
constexpr std::array<std::string_view, 4> kWay = {"moov", "trak", "mdia", "hdlr"};

class BoxWalk {
public:
    explicit BoxWalk(MediaSource& source)
        : source_(source)
    {
    }

    // Whether a track in [start, end) is one of pictures; `way` is what is left of it.
    bool FindVideo(std::int64_t start, std::int64_t end, std::span<const std::string_view> way)
    {
        while (start + kHeadBytes <= end && --boxesLeft_ >= 0) {
            std::array<char, 16> head{};
            if (source_.ReadAt(start, head.data(), head.size()) < kHeadBytes)
                return false;
            const std::string_view bytes(head.data(), head.size());
            std::int64_t body = start + kHeadBytes;
            std::int64_t size = ReadNumber(bytes.substr(0, 4));
            if (size == 1) { // The size stands behind the name.
                body += kHeadBytes;
                size = ReadNumber(bytes.substr(8, 8));
            }
            if (size == 0 || size > end - start)
                size = end - start;
            if (size < body - start)
                return false;
            if (bytes.substr(4, 4) == way.front() && IsVideo(body, start + size, way.subspan(1)))
                return true;
            start += size;
        }
        return false;
    }

private:
    bool IsVideo(std::int64_t body, std::int64_t end, std::span<const std::string_view> way)
    {
        if (!way.empty())
            return FindVideo(body, end, way);
        std::array<char, 4> kind{};
        return source_.ReadAt(body + kHandlerOffset, kind.data(), kind.size()) == kind.size() &&
               std::string_view(kind.data(), kind.size()) == "vide";
    }

    // Negative where it is larger than any file.
    static std::int64_t ReadNumber(std::string_view bytes)
    {
        std::uint64_t number = 0;
        for (const char byte : bytes)
            number = number << 8U | static_cast<unsigned char>(byte);
        return static_cast<std::int64_t>(number);
    }

    MediaSource& source_;
    int boxesLeft_ = 256;
};

} // namespace

bool HasMp4Video(MediaSource& source)
{
    return BoxWalk(source).FindVideo(0, source.GetLength(), kWay);
}

} // namespace kivo::attributes
