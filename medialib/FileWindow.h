#pragma once

#include "shell/contracts/framework/Files.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>

namespace kivo::tunehive {

// A file read forwards through one buffer of 256 KB. At this size a walk over frame headers takes
// no longer than reading the bytes takes. Thread: any, one object on one thread at a time.
class CFileWindow {
public:
    // `file` is open and outlives the window; the position is its start.
    explicit CFileWindow(const CBinaryFile& file);

    void Skip(std::int64_t count) { position_ += count; } // Forwards; past the end is allowed.

    // The bytes from the position on that are in memory: at least four, unless the file holds
    // fewer there. Valid until the next call.
    [[nodiscard]] std::string_view Look()
    {
        if (position_ + kLeast > start_ + static_cast<std::int64_t>(size_))
            Fill();
        const auto offset = static_cast<std::size_t>(position_ - start_);
        return {buffer_.get() + offset, size_ - offset};
    }

private:
    static constexpr std::size_t kSize = std::size_t{256} * 1024;
    static constexpr std::int64_t kLeast = 4;

    void Fill();

    const CBinaryFile& file_;
    std::unique_ptr<char[]> buffer_;
    std::int64_t start_ = 0; // Of the buffer, in the file.
    std::size_t size_ = 0;   // Of what it holds.
    std::int64_t position_ = 0;
};

} // namespace kivo::tunehive
