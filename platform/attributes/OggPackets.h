#pragma once

#include "platform/attributes/MediaSource.h"

#include <array>
#include <cstddef>
#include <cstdint>

namespace kivo::attributes {

// Bytes that are read one after another.
class IByteRun {
public:
    virtual std::size_t Read(char* bytes, std::size_t count) = 0; // Fewer at the end.
    [[nodiscard]] virtual bool Skip(std::uint32_t count) = 0;     // False: they end before.

protected:
    ~IByteRun() = default;
};

// Goes through the packets of an Ogg file from its start, as TagLib counts them: page by page,
// whatever the streams, wherever in a page a packet begins. A file of a great many pages ends
// early.
class OggPackets final : public IByteRun {
public:
    explicit OggPackets(MediaSource& source) // Outlives this.
        : source_(source)
    {
    }

    // Goes to the start of the next packet, the first one at first. False: there is none.
    bool Next();

    // Of the packet.
    std::size_t Read(char* bytes, std::size_t count) override;
    [[nodiscard]] bool Skip(std::uint32_t count) override;

private:
    bool NextPage();
    bool NextSegment();
    std::size_t Take(char* bytes, std::size_t count); // Null: passed over.

    MediaSource& source_;
    std::int64_t nextPage_ = 0;
    std::int64_t data_ = 0;                  // Where to go on reading.
    std::size_t left_ = 0;                   // Of the segment.
    std::array<unsigned char, 255> sizes_{}; // Of the page's segments.
    std::size_t segments_ = 0;
    std::size_t segment_ = 0; // The one that comes next.
    bool goesOn_ = false;     // The packet does, behind the segment.
    int pagesLeft_ = 1024;
};

} // namespace kivo::attributes
