#pragma once

#include <QIcon>
#include <QRect>

class QPainter;
class QStyleOption;
class QStyleOptionButton;
class QStyleOptionComboBox;
class QStyleOptionMenuItem;
class QStyleOptionSlider;
class QWidget;

// The looks of the widgets that Qt brings, in the tokens of the skin. Thread: user interface.
namespace kivo::ui::qt {

inline constexpr int kRingReach = 4;  // What the focus ring needs around a button.
inline constexpr int kMenuEdge = 5;   // From a menu's edge to its entries.
inline constexpr int kEntryText = 26; // Where an entry's text begins in its menu.
inline constexpr int kEntryEnd = 16;  // Free behind it.
inline constexpr int kMessageIcon = 32;

[[nodiscard]] bool HasKeyboardFocus(const QStyleOption& option); // And keys were used last.

void DrawField(QPainter& painter, const QStyleOption& option, const QWidget* widget);
// A button of Qt's own dialogs; the toolkit's buttons draw themselves.
void DrawButton(QPainter& painter, const QStyleOptionButton& option);
void DrawCheckBox(QPainter& painter, const QStyleOption& option);
void DrawMenuPanel(QPainter& painter, const QRect& rect);
void DrawMenuEntry(QPainter& painter, const QStyleOptionMenuItem& option);
void DrawScrollBar(QPainter& painter, const QStyleOptionSlider& option, const QRect& thumb);
void DrawComboBox(QPainter& painter, const QStyleOptionComboBox& option, const QWidget* widget);

// What a message box is about, in a circle.
[[nodiscard]] QIcon MakeMessageIcon(QChar sign, const char16_t* token);

} // namespace kivo::ui::qt
