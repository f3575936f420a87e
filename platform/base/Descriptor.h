#pragma once

#include "shell/contracts/base/String.h"

#include <cstddef>
#include <optional>
#include <string>
#include <utility>

struct stat;

// The system's files below the contracts: descriptors, and paths as bytes. Thread: any.
namespace kivo {

// Owns an open file; -1: none.
class Descriptor {
public:
    Descriptor() = default;
    explicit Descriptor(int number)
        : number_(number)
    {
    }
    Descriptor(Descriptor&& other) noexcept
        : number_(std::exchange(other.number_, -1))
    {
    }
    Descriptor& operator=(Descriptor&& other) noexcept
    {
        std::swap(number_, other.number_);
        return *this;
    }
    ~Descriptor() { Close(); }

    [[nodiscard]] bool IsOpen() const { return number_ >= 0; }
    [[nodiscard]] int Get() const { return number_; }
    [[nodiscard]] int Release() { return std::exchange(number_, -1); }
    bool Close(); // False: the system reported a late error.

private:
    int number_ = -1;
};

// The bytes of a path. Nothing for a text with U+0000, which would name another file.
[[nodiscard]] std::optional<std::string> NativePath(StringView path);

// Opens a regular file for reading; never waits for a FIFO and never takes a terminal. On failure
// no file, and errno says why (EINVAL: not a regular file).
[[nodiscard]] Descriptor OpenRegular(const std::string& path, struct stat& status);

// Reads until `count` bytes are there or the file ends. False: an error.
[[nodiscard]] bool
ReadFully(int descriptor, std::size_t offset, char* bytes, std::size_t count, std::size_t& got);

// Up to and with the last separator; "./" if there is none.
[[nodiscard]] std::string FolderOf(const std::string& path);
[[nodiscard]] std::string NameOf(const std::string& path);

} // namespace kivo
