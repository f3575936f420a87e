#pragma once

#include "shell/contracts/base/String.h"
#include "shell/contracts/common/Text.h"
#include "shell/contracts/ui/Types.h"

#include <QPoint>
#include <QRect>
#include <QSize>
#include <QString>

// Values of the toolkit as Qt's and back. Thread: any.
namespace kivo::ui::qt {

// As it stands, lone surrogates included: for fields that give their text back.
[[nodiscard]] inline QString ToQt(StringView text)
{
    return QStringView(text.data(), static_cast<qsizetype>(text.size())).toString();
}

// For the screen: lone surrogates, which stand for bytes of a path, become U+FFFD.
[[nodiscard]] inline QString ToScreen(StringView text)
{
    return ToQt(common::ToDisplayText(text));
}

[[nodiscard]] inline String FromQt(const QString& text)
{
    return text.toStdU16String();
}

[[nodiscard]] inline QRect ToQt(const Rect& rect)
{
    return {rect.left, rect.top, WidthOf(rect), HeightOf(rect)};
}

[[nodiscard]] inline Rect FromQt(const QRect& rect)
{
    return {rect.x(), rect.y(), rect.x() + rect.width(), rect.y() + rect.height()};
}

[[nodiscard]] inline QPoint ToQt(Point point)
{
    return {point.x, point.y};
}

[[nodiscard]] inline Point FromQt(const QPoint& point)
{
    return {point.x(), point.y()};
}

[[nodiscard]] inline Size FromQt(const QSize& size)
{
    return {size.width(), size.height()};
}

} // namespace kivo::ui::qt
