#include "platform/ui/qt/Tooltip.h"

#include "platform/ui/qt/QtText.h"

#include <QPoint>
#include <QTextLayout>
#include <QToolTip>

namespace kivo::ui::qt {

namespace {

constexpr qsizetype kLongest = 4000; // Units; a path has at most 4096 bytes.

void BreakLine(const QString& line, int width, const QFont& font, QStringList& lines)
{
    if (line.isEmpty()) {
        lines.append(QString());
        return;
    }
    QTextLayout layout(line, font);
    QTextOption option;
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    layout.setTextOption(option);
    layout.beginLayout();
    for (QTextLine piece = layout.createLine(); piece.isValid(); piece = layout.createLine()) {
        piece.setLineWidth(width);
        lines.append(line.mid(piece.textStart(), piece.textLength()).toHtmlEscaped());
    }
    layout.endLayout();
}

} // namespace

QString WrapTooltip(const QString& text, int width, const QFont& font)
{
    QString plain = text.left(kLongest);
    plain.replace(QLatin1String("\r\n"), QLatin1String("\n")).replace(u'\r', u'\n');
    QStringList lines;
    for (const QString& line : plain.split(u'\n'))
        BreakLine(line, width, font, lines);
    return QStringLiteral("<p style='white-space:pre; line-height:115%'>%1</p>")
        .arg(lines.join(QLatin1String("<br>")));
}

void ShowTooltip(const QPoint& screenPoint, const String& text, int width, QWidget* widget)
{
    if (text.empty())
        QToolTip::hideText();
    else
        QToolTip::showText(
            screenPoint, WrapTooltip(ToScreen(text), width, QToolTip::font()), widget);
}

} // namespace kivo::ui::qt
