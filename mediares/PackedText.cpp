#include "mediares/PackedText.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

namespace kivo::tunehive {

namespace {

constexpr std::size_t kHeader = sizeof(std::uint32_t);
constexpr std::uint32_t kWide = std::uint32_t{1} << 31U;

std::uint32_t ReadHeader(const std::byte* block)
{
    std::uint32_t header = 0;
    std::memcpy(&header, block, kHeader);
    return header;
}

} // namespace

PackedText::PackedText(StringView text)
{
    text = text.substr(0, kWide - 1);
    const bool isWide =
        std::any_of(text.begin(), text.end(), [](char16_t unit) { return unit > 0xFF; });
    const std::size_t bytes = isWide ? text.size() * sizeof(char16_t) : text.size();
    // Not make_unique, which would clear what is written at once.
    block_.reset(new std::byte[kHeader + bytes]);
    const std::uint32_t header = static_cast<std::uint32_t>(text.size()) | (isWide ? kWide : 0U);
    std::memcpy(block_.get(), &header, kHeader);
    std::byte* const units = block_.get() + kHeader;
    if (isWide)
        std::memcpy(units, text.data(), bytes);
    else
        std::transform(text.begin(), text.end(), units, [](char16_t unit) {
            return static_cast<std::byte>(unit);
        });
}

String PackedText::Unpack() const
{
    String text(block_ != nullptr ? GetLength() : 0, u'\0');
    for (std::size_t i = 0; i < text.size(); ++i)
        text[i] = GetUnit(i);
    return text;
}

int PackedText::Compare(const PackedText& other) const
{
    return CompareUnits(other.GetLength(), [&other](std::size_t i) { return other.GetUnit(i); });
}

int PackedText::Compare(StringView text) const
{
    return CompareUnits(text.size(), [text](std::size_t i) { return text[i]; });
}

std::size_t PackedText::GetLength() const
{
    return ReadHeader(block_.get()) & ~kWide;
}

char16_t PackedText::GetUnit(std::size_t index) const
{
    const std::byte* const units = block_.get() + kHeader;
    if ((ReadHeader(block_.get()) & kWide) == 0)
        return static_cast<char16_t>(units[index]);
    char16_t unit = 0;
    std::memcpy(&unit, units + index * sizeof unit, sizeof unit);
    return unit;
}

template <class GetOther>
int PackedText::CompareUnits(std::size_t otherLength, GetOther getOther) const
{
    const std::size_t length = GetLength();
    const std::size_t common = std::min(length, otherLength);
    for (std::size_t i = 0; i < common; ++i) {
        const int difference = GetUnit(i) - getOther(i);
        if (difference != 0)
            return difference;
    }
    if (length == otherLength)
        return 0;
    return length < otherLength ? -1 : 1;
}

} // namespace kivo::tunehive
