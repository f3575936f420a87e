#pragma once

#include <QFont>
#include <QRect>

class QPainter;

namespace kivo::ui {
class CSkinList;
class CSkinListItem;
} // namespace kivo::ui

namespace kivo::ui::qt {

// How a row stands while it is painted.
struct RowState {
    bool isHovered = false;
    bool isFocused = false; // It has the keyboard, and the user is at the keys.
    bool isGroup = false;
    bool isButtonHovered = false;
    bool isButtonDown = false;
};

// Paints one row into its place in the view. Thread: user interface.
void PaintRow(QPainter& painter,
              const QRect& place,
              const CSkinList& list,
              CSkinListItem& row,
              const RowState& state);

// Where a text cell of the row stands in the view, and in which font. False: there is no such cell.
[[nodiscard]] bool FindTextCell(const QRect& place,
                                const CSkinList& list,
                                CSkinListItem& row,
                                const char16_t* id,
                                QRect& cell,
                                QFont& font);

// Where the photo of the row stands that is a button; empty: there is none.
[[nodiscard]] QRect FindButton(const QRect& place, const CSkinList& list, CSkinListItem& row);

// The id of the text cell or button under a point of the view; "text" where there is none.
[[nodiscard]] std::u16string
CellUnder(const QRect& place, const CSkinList& list, CSkinListItem& row, const QPoint& point);

[[nodiscard]] int GetRowHeight();
[[nodiscard]] int GetLineHeight(); // Of the desktop's font.

} // namespace kivo::ui::qt
