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

// Hands the units over as what they are stored as.
template <class Function>
auto WithUnits(const std::byte* block, Function function)
{
    const std::uint32_t header = ReadHeader(block);
    const std::byte* const units = block + kHeader;
    const std::size_t length = header & ~kWide;
    if ((header & kWide) != 0)
        return function(reinterpret_cast<const char16_t*>(units), length);
    return function(reinterpret_cast<const unsigned char*>(units), length);
}

template <class A, class B>
int CompareUnits(const A* a, std::size_t aLength, const B* b, std::size_t bLength)
{
    const std::size_t length = std::min(aLength, bLength);
    if constexpr (sizeof(A) == 1 && sizeof(B) == 1) {
        if (const int order = std::memcmp(a, b, length); order != 0)
            return order;
    } else {
        const auto [left, right] = std::mismatch(a, a + length, b);
        if (left != a + length)
            return *left < *right ? -1 : 1;
    }
    if (aLength == bLength)
        return 0;
    return aLength < bLength ? -1 : 1;
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
    if (block_ == nullptr)
        return {};
    return WithUnits(block_.get(), [](const auto* units, std::size_t length) {
        return String(units, units + length);
    });
}

int PackedText::Compare(const PackedText& other) const
{
    return WithUnits(block_.get(), [&other](const auto* a, std::size_t aLength) {
        return WithUnits(other.block_.get(), [a, aLength](const auto* b, std::size_t bLength) {
            return CompareUnits(a, aLength, b, bLength);
        });
    });
}

int PackedText::Compare(StringView text) const
{
    return WithUnits(block_.get(), [text](const auto* units, std::size_t length) {
        return CompareUnits(units, length, text.data(), text.size());
    });
}

} // namespace kivo::tunehive
