#include "platform/ui/qt/TextLine.h"

#include "shell/contracts/ui/Types.h"

#include <QGuiApplication>
#include <QPainter>
#include <QTextOption>

namespace kivo::ui::qt {

namespace {

constexpr qsizetype kLongest = 1000; // Units.

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

void DrawParagraph(QPainter& painter, const QRect& place, const QString& text, TextSide side)
{
    QTextOption option = OptionFor(text, side);
    option.setAlignment(SideInWindow(side) | Qt::AlignAbsolute | Qt::AlignTop);
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    painter.drawText(QRectF(place), text, option);
}

} // namespace kivo::ui::qt
