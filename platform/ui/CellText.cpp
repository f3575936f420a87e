#include "platform/ui/CellText.h"

#include <algorithm>
#include <cstring>

namespace kivo::ui {

namespace {

constexpr std::size_t kLengthUnits = sizeof(std::uint32_t) / sizeof(char16_t);
constexpr std::size_t kHeadUnits = 2 * kLengthUnits;
// A row shows one line; what is longer than this is never seen, and a hostile name may be endless.
constexpr std::size_t kMaxUnits = std::size_t{1} << 20;

std::uint32_t ReadLength(const char16_t* block, std::size_t index)
{
    std::uint32_t length = 0;
    std::memcpy(&length, block + index * kLengthUnits, sizeof length);
    return length;
}

void WriteLength(char16_t* block, std::size_t index, std::size_t length)
{
    const auto stored = static_cast<std::uint32_t>(length);
    std::memcpy(block + index * kLengthUnits, &stored, sizeof stored);
}

} // namespace

CellText::CellText(StringView text, StringView tooltip)
{
    const StringView shownText = text.substr(0, kMaxUnits);
    const StringView shownTooltip = tooltip.substr(0, kMaxUnits);
    if (shownText.empty() && shownTooltip.empty())
        return;
    block_.reset(new char16_t[kHeadUnits + shownText.size() + shownTooltip.size()]);
    WriteLength(block_.get(), 0, shownText.size());
    WriteLength(block_.get(), 1, shownTooltip.size());
    char16_t* end = std::copy(shownText.begin(), shownText.end(), block_.get() + kHeadUnits);
    std::copy(shownTooltip.begin(), shownTooltip.end(), end);
}

StringView CellText::GetText() const
{
    return block_ ? StringView(block_.get() + kHeadUnits, ReadLength(block_.get(), 0))
                  : StringView();
}

StringView CellText::GetTooltip() const
{
    if (!block_)
        return {};
    const StringView text = GetText();
    return {text.data() + text.size(), ReadLength(block_.get(), 1)};
}

} // namespace kivo::ui
