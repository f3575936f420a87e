#include "platform/base/Utf.h"

#include <cstdint>
#include <cstring>

namespace kivo::utf {
namespace {

constexpr std::uint64_t kHighBits = 0x8080808080808080U;

struct Lead {
    std::size_t length; // 0: no lead byte.
    char32_t bits;
    char32_t smallest; // Below it the form is overlong.
};

Lead ReadLead(unsigned char byte)
{
    if (byte < 0x80)
        return {1, byte, 0};
    if ((byte & 0xE0U) == 0xC0U)
        return {2, byte & 0x1FU, 0x80};
    if ((byte & 0xF0U) == 0xE0U)
        return {3, byte & 0x0FU, 0x800};
    if ((byte & 0xF8U) == 0xF0U)
        return {4, byte & 0x07U, 0x10000};
    return {0, 0, 0};
}

} // namespace

Decoded Decode(std::string_view bytes, std::size_t position, Surrogates surrogates)
{
    const Lead lead = ReadLead(static_cast<unsigned char>(bytes[position]));
    if (lead.length == 0 || lead.length > bytes.size() - position)
        return {};
    char32_t character = lead.bits;
    for (std::size_t i = 1; i < lead.length; ++i) {
        const auto byte = static_cast<unsigned char>(bytes[position + i]);
        if ((byte & 0xC0U) != 0x80U)
            return {};
        character = character << 6U | (byte & 0x3FU);
    }
    if (character < lead.smallest || character > 0x10FFFF)
        return {};
    if (surrogates == Surrogates::Refuse && character >= 0xD800 && character <= 0xDFFF)
        return {};
    return {character, lead.length};
}

std::size_t CountAsciiBlocks(std::string_view bytes, std::size_t position)
{
    std::size_t count = 0;
    std::uint64_t block = 0;
    while (bytes.size() - position - count >= sizeof block) {
        std::memcpy(&block, bytes.data() + position + count, sizeof block);
        if ((block & kHighBits) != 0)
            break;
        count += sizeof block;
    }
    return count;
}

void AppendUtf8(std::string& bytes, char32_t character)
{
    const auto put = [&bytes](char32_t value) { bytes.push_back(static_cast<char>(value)); };
    if (character < 0x80) {
        put(character);
    } else if (character < 0x800) {
        put(0xC0U | character >> 6U);
        put(0x80U | (character & 0x3FU));
    } else if (character < 0x10000) {
        put(0xE0U | character >> 12U);
        put(0x80U | (character >> 6U & 0x3FU));
        put(0x80U | (character & 0x3FU));
    } else {
        put(0xF0U | character >> 18U);
        put(0x80U | (character >> 12U & 0x3FU));
        put(0x80U | (character >> 6U & 0x3FU));
        put(0x80U | (character & 0x3FU));
    }
}

void AppendUtf16(String& text, char32_t character)
{
    if (character < 0x10000) {
        text.push_back(static_cast<char16_t>(character));
        return;
    }
    text.push_back(static_cast<char16_t>(0xD7C0U + (character >> 10U)));
    text.push_back(static_cast<char16_t>(0xDC00U | (character & 0x3FFU)));
}

bool IsValid(std::string_view bytes)
{
    for (std::size_t i = 0; i < bytes.size();) {
        i += CountAsciiBlocks(bytes, i);
        if (i == bytes.size())
            break;
        const Decoded decoded = Decode(bytes, i, Surrogates::Refuse);
        if (decoded.length == 0)
            return false;
        i += decoded.length;
    }
    return true;
}

} // namespace kivo::utf
