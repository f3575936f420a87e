#pragma once

#include "platform/attributes/MediaSource.h"

#include <taglib/tiostream.h>

#include <cstdint>
#include <string>

namespace kivo::attributes {

// What TagLib reads through: read-only, with a budget of calls and bytes for the whole file and a
// bound on each block. Past the budget every read is empty, on which all of TagLib's readers end.
// Thread: as MediaSource.
class BoundedStream : public TagLib::IOStream {
public:
    // `source` outlives the stream. What stands before `baseOffset` is not shown.
    explicit BoundedStream(MediaSource& source, std::int64_t baseOffset = 0);

    // The largest block that is read; larger ones come back empty. 4 MB until it is set.
    void SetBlockLimit(unsigned long bytes) { blockLimit_ = bytes; }

    // What is read in all, from here on. 64 MB until it is set.
    void SetBudget(std::int64_t bytes) { bytesLeft_ = bytes; }

    // While on, the name of an ID3 chunk reads as "junk", so that the reader of RIFF passes over
    // it, and the place of its tag is noted: the caller reads it by a frame factory of its own.
    void SetHidesId3Chunk(bool on) { hidesId3Chunk_ = on; }
    [[nodiscard]] std::int64_t GetId3ChunkOffset() const
    {
        return id3ChunkOffset_;
    } // -1: none was met.

    [[nodiscard]] TagLib::FileName name() const override { return name_.c_str(); }
    TagLib::ByteVector readBlock(unsigned long length) override;
    void writeBlock(const TagLib::ByteVector& data) override;
    void
    insert(const TagLib::ByteVector& data, unsigned long start, unsigned long replace) override;
    void removeBlock(unsigned long start, unsigned long length) override;
    [[nodiscard]] bool readOnly() const override { return true; }
    [[nodiscard]] bool isOpen() const override { return source_.IsOpen(); }
    void seek(long offset, Position from) override;
    void clear() override {}
    [[nodiscard]] long tell() const override { return static_cast<long>(position_); }
    long length() override;
    void truncate(long length) override;

private:
    void BoundCounts(TagLib::ByteVector& block);

    MediaSource& source_;
    std::int64_t baseOffset_;
    std::int64_t position_ = 0;
    std::string name_ = "media";
    unsigned long blockLimit_;
    int callsLeft_;
    std::int64_t bytesLeft_;
    bool hidesId3Chunk_ = false;
    std::int64_t id3ChunkOffset_ = -1;
    bool awaitsAsfCount_ = false; // The head of an object with attributes was read.
};

} // namespace kivo::attributes
