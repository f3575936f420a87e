#pragma once

#include "shell/contracts/base/String.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>

namespace kivo::attributes {

// A media file open for reading through a few windows, since readers of tags go to and fro between
// its start, its end and what stands behind a tag. Only regular files open: a FIFO would never
// answer. Thread: any, one object on one thread at a time.
class MediaSource {
public:
    explicit MediaSource(const String& path);
    MediaSource(const MediaSource&) = delete;
    MediaSource& operator=(const MediaSource&) = delete;
    ~MediaSource();

    [[nodiscard]] bool IsOpen() const { return descriptor_ >= 0; }
    [[nodiscard]] std::int64_t GetLength() const { return length_; } // Bytes, as at the opening.

    // Tags stand here and there, so that nothing is read ahead of what is asked. A reader that goes
    // through the file from its start says so first.
    void ExpectSequentialReads() const;

    // Bytes from `offset` on: fewer than asked at the end, 0 on an error. Small reads go through
    // a window.
    std::size_t ReadAt(std::int64_t offset, void* bytes, std::size_t count);

private:
    struct Window {
        std::int64_t start = 0;
        std::size_t size = 0;
        char* bytes = nullptr; // In `memory_`.
    };

    std::size_t ReadThrough(std::int64_t offset, char* bytes, std::size_t count) const;
    const Window& FindWindow(std::int64_t offset, std::size_t count);

    int descriptor_ = -1;
    std::int64_t length_ = 0;
    std::array<Window, 3> windows_;  // The one that was used last comes first.
    std::unique_ptr<char[]> memory_; // Null until it is needed.
};

} // namespace kivo::attributes
