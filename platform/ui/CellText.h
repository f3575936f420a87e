#pragma once

#include "shell/contracts/base/String.h"

#include <cstdint>
#include <memory>

namespace kivo::ui {

// The text and the tooltip of a cell in one block, or in none when both are empty: a hundred
// thousand rows carry two cells each.
class CellText {
public:
    CellText() = default;
    CellText(StringView text, StringView tooltip);

    [[nodiscard]] StringView GetText() const;
    [[nodiscard]] StringView GetTooltip() const;

private:
    std::unique_ptr<char16_t[]> block_; // Two lengths of two units each, then both texts.
};

} // namespace kivo::ui
