#pragma once

#include "shell/contracts/base/Export.h"

#include <cstddef>
#include <cstdint>
#include <string>

namespace kivo {

// Reads what Pack wrote. A failure throws an UnpackError* and moves nothing.
// Thread: one object on one thread at a time.
class KIVO_API Unpack {
public:
    Unpack(const void* bytes, std::size_t count); // Borrowed.
    Unpack(const Unpack&) = default;
    Unpack& operator=(const Unpack&) = default;
    virtual ~Unpack() = default;

    [[nodiscard]] std::uint16_t pop_uint16(); // Little-endian.
    [[nodiscard]] std::uint32_t pop_uint32();
    [[nodiscard]] const char* pop_fetch_ptr(std::size_t count); // Lives with the bytes given.
    [[nodiscard]] std::string pop_varstr(); // A length in two bytes, then that many.

    [[nodiscard]] std::size_t GetLeft() const { return left_; }

private:
    const char* next_;
    std::size_t left_;
};

} // namespace kivo
