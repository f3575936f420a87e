#include "platform/ui/qt/TextLine.h"

#include "shell/contracts/ui/Types.h"

#include <QFontMetrics>
#include <QGuiApplication>
#include <QHash>
#include <QPainter>
#include <QTextLayout>
#include <QTextOption>

#include <cmath>
#include <utility>

namespace kivo::ui::qt {

namespace {

constexpr qsizetype kLongest = 1000; // Units.
constexpr qsizetype kMostWidths = 1000;

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

int MeasureParagraph(const QFont& font, const QString& text, int width)
{
    QString lines = text;
    lines.replace(u'\n', QChar::LineSeparator);
    QTextOption option = OptionFor(lines, TextSide::Leading);
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    QTextLayout layout(lines, font);
    layout.setTextOption(option);
    const qreal leading = QFontMetricsF(font).leading();
    qreal height = -leading; // As the painter places lines: each on a whole pixel.
    layout.beginLayout();
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLineWidth(width);
        height = std::ceil(height + leading) + line.height();
    }
    layout.endLayout();
    return static_cast<int>(std::ceil(height));
}

void DrawParagraph(QPainter& painter, const QRect& place, const QString& text, TextSide side)
{
    QTextOption option = OptionFor(text, side);
    option.setAlignment(SideInWindow(side) | Qt::AlignAbsolute | Qt::AlignTop);
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    painter.drawText(QRectF(place), text, option);
}

} // namespace kivo::ui::qt
