#pragma once

#include <QRect>
#include <QString>

class QFont;
class QPainter;

// Text on the screen: plain, in its own direction, at the side that the window's direction gives.
// Thread: user interface.
namespace kivo::ui::qt {

enum class TextSide { Leading, Centre, Trailing };
[[nodiscard]] TextSide SideOf(int alignment); // A number of namespace align.

// One line: control characters and line ends become blanks; cut to what a line can show.
[[nodiscard]] QString ToLine(const QString& text);

// The width of a line in pixels. Kept, since every layout asks for the same lines again.
[[nodiscard]] int MeasureWidth(const QFont& font, const QString& line);
void ForgetWidths(); // The fonts have changed.

// In the painter's font and pen. `elided`: what doesn't fit ends in "…", at the text's own end.
void DrawLine(
    QPainter& painter, const QRect& place, const QString& text, TextSide side, bool elided);

// From line to line of a paragraph, in pixels.
[[nodiscard]] int GetParagraphPitch(const QFont& font);

// The height that a paragraph takes in that width.
[[nodiscard]] int MeasureParagraph(const QFont& font, const QString& text, int width);

// Wrapped at words; from the top. The lines of a centred one are about as long as each other.
void DrawParagraph(QPainter& painter, const QRect& place, const QString& text, TextSide side);

} // namespace kivo::ui::qt
