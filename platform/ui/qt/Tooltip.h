#pragma once

#include "shell/contracts/base/String.h"

#include <QString>

class QFont;
class QPoint;
class QWidget;

namespace kivo::ui::qt {

// The text as what QToolTip shows to the letter, broken into lines of at most `width` pixels; Qt's
// own wraps only rich text, at blanks alone, and takes "<b>" in a file name for markup.
[[nodiscard]] QString WrapTooltip(const QString& text, int width, const QFont& font);

// An empty text hides the tip. Thread: user interface.
void ShowTooltip(const QPoint& screenPoint, const String& text, int width, QWidget* widget);

} // namespace kivo::ui::qt
