#include "platform/ui/qt/TextLine.h"

#include "shell/contracts/ui/Types.h"

#include <QFontMetrics>
#include <QGuiApplication>
#include <QHash>
#include <QPainter>
#include <QTextLayout>
#include <QTextOption>

#include <algorithm>
#include <cmath>
#include <optional>
#include <utility>

namespace kivo::ui::qt {

namespace {

constexpr qsizetype kLongest = 1000; // Units.
constexpr qsizetype kMostWidths = 1000;
constexpr qreal kParagraphPitch = 1.15; // Of the font's height: from line to line.

using WidthTable = QHash<std::pair<QFont, QString>, int>;

WidthTable& GetWidths()
{
    static WidthTable widths;
    return widths;
}

// The side on the screen: it follows the window, whatever the text's direction.
Qt::Alignment SideInWindow(TextSide side)
{
    if (side == TextSide::Centre)
        return Qt::AlignHCenter;
    const bool left = (side == TextSide::Leading) == QGuiApplication::isLeftToRight();
    return left ? Qt::AlignLeft : Qt::AlignRight;
}

QTextOption OptionFor(const QString& text, TextSide side)
{
    // Absolute: an option of a text from right to left would mirror the side.
    QTextOption option(SideInWindow(side) | Qt::AlignAbsolute | Qt::AlignVCenter);
    option.setTextDirection(text.isRightToLeft() ? Qt::RightToLeft : Qt::LeftToRight);
    return option;
}

// The number of lines at that width; nothing: a word is wider.
std::optional<int> CountLines(QTextLayout& layout, int width)
{
    bool fits = true;
    layout.beginLayout();
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLineWidth(width);
        fits = fits && line.naturalTextWidth() <= width;
    }
    layout.endLayout();
    return fits ? std::optional(layout.lineCount()) : std::nullopt;
}

// The least width that takes no more lines, so that no last line is left with a single word.
int BalancedWidth(const QString& lines, const QFont& font, int width)
{
    QTextLayout layout(lines, font);
    layout.setTextOption(QTextOption());
    const std::optional<int> most = CountLines(layout, width);
    int least = most ? 1 : width;
    int balanced = width;
    while (least < balanced) {
        const int middle = (least + balanced) / 2;
        const std::optional<int> count = CountLines(layout, middle);
        if (count && *count <= *most)
            balanced = middle;
        else
            least = middle + 1;
    }
    return balanced;
}

// Breaks the text into lines a pitch apart and shows each to `use`, with its place in the
// paragraph; centred ones are about as long as each other. The height of all.
template <class Use>
int BreakParagraph(const QString& text, const QFont& font, int width, TextSide side, Use use)
{
    QString lines = text;
    lines.replace(u'\n', QChar::LineSeparator);
    QTextOption option = OptionFor(lines, side);
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    QTextLayout layout(lines, font);
    layout.setTextOption(option);
    const bool balances = side == TextSide::Centre && lines.size() <= kLongest;
    const int lineWidth = balances ? BalancedWidth(lines, font, width) : width;
    const int pitch = GetParagraphPitch(font);
    int height = 0;
    layout.beginLayout();
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLineWidth(lineWidth);
        // Letters of another font may be higher than the pitch.
        const int own = std::max(pitch, static_cast<int>(std::ceil(line.height())));
        const qreal above = std::floor((own - line.height()) / 2);
        line.setPosition({(width - lineWidth) / 2.0, height + above});
        height += own;
    }
    layout.endLayout();
    for (int i = 0; i < layout.lineCount(); ++i)
        use(layout.lineAt(i));
    return height;
}

} // namespace

TextSide SideOf(int alignment)
{
    if (alignment == align::kCentre)
        return TextSide::Centre;
    return alignment == align::kTrailing ? TextSide::Trailing : TextSide::Leading;
}

QString ToLine(const QString& text)
{
    QString line = text.left(kLongest);
    if (!line.isEmpty() && line.back().isHighSurrogate())
        line.chop(1);
    for (QChar& unit : line)
        if (unit.category() == QChar::Other_Control || unit == QChar::LineSeparator ||
            unit == QChar::ParagraphSeparator)
            unit = u' ';
    return line;
}

int MeasureWidth(const QFont& font, const QString& line)
{
    WidthTable& widths = GetWidths();
    const auto key = std::make_pair(font, line);
    if (const auto known = widths.constFind(key); known != widths.constEnd())
        return *known;
    if (widths.size() >= kMostWidths)
        widths.clear();
    const int width = QFontMetrics(font).horizontalAdvance(line);
    widths.insert(key, width);
    return width;
}

void ForgetWidths()
{
    GetWidths().clear();
}

void DrawLine(
    QPainter& painter, const QRect& place, const QString& text, TextSide side, bool elided)
{
    QString line = ToLine(text);
    if (elided)
        line = painter.fontMetrics().elidedText(line, Qt::ElideRight, place.width());
    QTextOption option = OptionFor(line, side);
    option.setWrapMode(QTextOption::NoWrap);
    painter.drawText(QRectF(place), line, option);
}

int GetParagraphPitch(const QFont& font)
{
    return static_cast<int>(std::ceil(QFontMetricsF(font).height() * kParagraphPitch));
}

int MeasureParagraph(const QFont& font, const QString& text, int width)
{
    return BreakParagraph(text, font, width, TextSide::Leading, [](const QTextLine&) {});
}

void DrawParagraph(QPainter& painter, const QRect& place, const QString& text, TextSide side)
{
    BreakParagraph(text, painter.font(), place.width(), side, [&](const QTextLine& line) {
        line.draw(&painter, place.topLeft());
    });
}

} // namespace kivo::ui::qt
