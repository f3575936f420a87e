#include "mediares/PackedText.h"

#include "shell/contracts/common/Text.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

namespace kivo::tunehive {

namespace {

constexpr std::size_t kHeader = sizeof(std::uint32_t);
constexpr std::uint32_t kWide = std::uint32_t{1} << 31U;

// What most tracks have for a name.
std::byte emptyBlock[kHeader] = {};

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

// Whether the units are the UTF-8 of the text, which ASCII is but for U+0000: that is dropped.
bool IsPlain(std::string_view units)
{
    constexpr std::uint64_t kHighBits = 0x8080808080808080U;
    constexpr std::uint64_t kOnes = 0x0101010101010101U;
    // In a word without high bits a borrow reaches the high bit of a byte only from a zero one.
    const auto isPlain = [](std::uint64_t word) {
        return ((word | (word - kOnes)) & kHighBits) == 0;
    };
    std::uint64_t word = 0;
    for (; units.size() >= sizeof word; units.remove_prefix(sizeof word)) {
        std::memcpy(&word, units.data(), sizeof word);
        if (!isPlain(word))
            return false;
    }
    word = kOnes;
    std::memcpy(&word, units.data(), units.size());
    return isPlain(word);
}

} // namespace

String PackedText::Unpack() const
{
    if (block_ == nullptr)
        return {};
    return WithUnits(block_, [](const auto* units, std::size_t length) {
        return String(units, units + length);
    });
}

std::string_view PackedText::ToUtf8(std::string& scratch) const
{
    if (block_ == nullptr)
        return {};
    const std::string_view units = GetBytes().substr(kHeader);
    if ((ReadHeader(block_) & kWide) == 0 && IsPlain(units))
        return units;
    scratch = common::CString_to_utf8(Unpack());
    return scratch;
}

std::string_view PackedText::GetBytes() const
{
    const std::uint32_t header = ReadHeader(block_);
    const std::size_t length = header & ~kWide;
    const std::size_t bytes = (header & kWide) != 0 ? length * sizeof(char16_t) : length;
    return {reinterpret_cast<const char*>(block_), kHeader + bytes};
}

PackedText PackedTexts::Pack(StringView text)
{
    PackedText packed;
    packed.block_ = emptyBlock;
    if (text.empty())
        return packed;
    text = text.substr(0, kWide - 1);
    const bool isWide =
        std::any_of(text.begin(), text.end(), [](char16_t unit) { return unit > 0xFF; });
    const std::size_t bytes = isWide ? text.size() * sizeof(char16_t) : text.size();
    packed.block_ = static_cast<std::byte*>(memory_.allocate(kHeader + bytes, kHeader));
    const std::uint32_t header = static_cast<std::uint32_t>(text.size()) | (isWide ? kWide : 0U);
    std::memcpy(packed.block_, &header, kHeader);
    std::byte* const units = packed.block_ + kHeader;
    if (isWide)
        std::memcpy(units, text.data(), bytes);
    else
        std::transform(text.begin(), text.end(), units, [](char16_t unit) {
            return static_cast<std::byte>(unit);
        });
    return packed;
}

void PackedTexts::Drop(PackedText text)
{
    if (text.IsSet() && text.block_ != emptyBlock)
        memory_.deallocate(text.block_, text.GetBytes().size(), kHeader);
}

} // namespace kivo::tunehive
