#pragma once

#include "shell/contracts/base/Export.h"

#include <cstddef>
#include <cstdint>

namespace kivo {

// Bytes that grow in blocks. Thread: one object on one thread at a time; the counts any.
class KIVO_API PackBuffer {
public:
    static constexpr std::uint32_t kBlockBytes = 16384;
    static constexpr std::uint32_t kMaxBlocks = 65536;

    PackBuffer() = default;
    PackBuffer(const PackBuffer&) = delete;
    PackBuffer& operator=(const PackBuffer&) = delete;
    virtual ~PackBuffer();

    // Makes room for `count` bytes behind the used part. False: more than 65536 blocks, or no
    // memory; the buffer is as it was.
    [[nodiscard]] bool reserve(std::size_t count);

    // Copies into room that was reserved.
    void write(const void* bytes, std::size_t count);

    [[nodiscard]] const char* data() const { return data_; } // Null before the first block.
    [[nodiscard]] std::uint32_t size() const { return used_; }
    [[nodiscard]] std::uint32_t blocks() const { return blocks_; }

    // Over all buffers of the process.
    [[nodiscard]] static std::uint32_t GetBlocksInUse();
    [[nodiscard]] static std::uint32_t GetPeakBlocks();

private:
    char* data_ = nullptr; // From malloc.
    std::uint32_t used_ = 0;
    std::uint32_t blocks_ = 0;
};

// Writes integers and texts behind each other. A failure throws a PackError*.
class KIVO_API Pack {
public:
    explicit Pack(PackBuffer& buffer); // Borrowed.
    Pack(const Pack&) = default;
    Pack& operator=(const Pack&) = default;
    virtual ~Pack() = default;

    void append(const void* bytes, std::size_t count); // Nothing is written when it fails.
    void push_uint16(std::uint16_t value);             // Little-endian, as all integers.
    void push_uint32(std::uint32_t value);

    // The count in two bytes, then the bytes. 65536 or more are refused, nothing being written.
    void push_varstr(const void* bytes, std::size_t count);

private:
    PackBuffer* buffer_;
};

} // namespace kivo
