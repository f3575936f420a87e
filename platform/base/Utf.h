#pragma once

#include "shell/contracts/base/String.h"

#include <cstddef>
#include <string>
#include <string_view>

// The steps that every transcoder of the house is made of. Thread: any.
namespace kivo::utf {

inline constexpr char16_t kReplacement = 0xFFFD;

constexpr bool IsHighSurrogate(char16_t unit)
{
    return (unit & 0xFC00U) == 0xD800U;
}

constexpr bool IsLowSurrogate(char16_t unit)
{
    return (unit & 0xFC00U) == 0xDC00U;
}

enum class Surrogates { Refuse, Accept };

struct Decoded {
    char32_t character = 0;
    std::size_t length = 0; // Bytes; 0: the first byte begins no well-formed sequence.
};

// Reads one character at `position`, which lies inside `bytes`. Overlong forms and what lies
// beyond U+10FFFF are malformed; ED A0…BF … is too unless surrogates are accepted.
[[nodiscard]] Decoded Decode(std::string_view bytes, std::size_t position, Surrogates surrogates);

// The number of ASCII bytes from `position` on, counted in steps of eight: a multiple of 8, and
// maybe fewer than there are.
[[nodiscard]] std::size_t CountAsciiBlocks(std::string_view bytes, std::size_t position);

void AppendUtf8(std::string& bytes, char32_t character);
void AppendUtf16(String& text, char32_t character);

// All of `bytes` is UTF-8 without surrogates.
[[nodiscard]] bool IsValid(std::string_view bytes);

} // namespace kivo::utf
