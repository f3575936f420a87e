#include "platform/ui/qt/Shapes.h"

#include <QPaintDevice>
#include <QPainter>

#include <algorithm>
#include <array>
#include <cmath>

namespace kivo::ui::qt {

QPainterPath MakeCell(const QPointF& centre, qreal height)
{
    constexpr int kCorners = 6;
    constexpr qreal kHalfWidth = 0.8660254037844386; // Of the circle around it.
    const qreal circle = height / 2;
    const qreal soft = circle * 0.145; // How far from a corner its curve begins.
    const std::array<QPointF, kCorners> corners = {
        centre + QPointF(0, -circle),
        centre + QPointF(circle * kHalfWidth, -circle / 2),
        centre + QPointF(circle * kHalfWidth, circle / 2),
        centre + QPointF(0, circle),
        centre + QPointF(-circle * kHalfWidth, circle / 2),
        centre + QPointF(-circle * kHalfWidth, -circle / 2),
    };
    QPainterPath path;
    for (std::size_t index = 0; index < kCorners; ++index) {
        const QPointF corner = corners.at(index);
        const QPointF before = corners.at((index + kCorners - 1) % kCorners);
        const QPointF after = corners.at((index + 1) % kCorners);
        const QPointF start = corner + (before - corner) * (soft / circle);
        const QPointF end = corner + (after - corner) * (soft / circle);
        if (index == 0)
            path.moveTo(start);
        else
            path.lineTo(start);
        path.quadTo(corner, end);
    }
    path.closeSubpath();
    return path;
}

QRegion MakeRoundMask(const QRect& rect, qreal corner)
{
    const int rows = std::min(static_cast<int>(std::ceil(corner)), rect.height() / 2);
    QRegion mask = rect.adjusted(0, rows, 0, -rows);
    for (int row = 0; row < rows; ++row) {
        const qreal above = std::max(0.0, corner - row - 1);
        const int cut = static_cast<int>(corner - std::sqrt(corner * corner - above * above));
        const QRect line(rect.x() + cut, rect.y() + row, rect.width() - 2 * cut, 1);
        mask += line;
        mask += line.translated(0, rect.height() - 1 - 2 * row);
    }
    return mask;
}

void FillRounded(QPainter& painter, const QRectF& rect, qreal corner, const QColor& colour)
{
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(colour);
    painter.drawRoundedRect(rect, corner, corner);
    painter.restore();
}

void DrawFrame(
    QPainter& painter, const QRectF& rect, qreal corner, const QColor& colour, qreal width)
{
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(colour, width));
    painter.setBrush(Qt::NoBrush);
    const qreal half = width / 2;
    const qreal inner = std::max(corner - half, 0.0);
    painter.drawRoundedRect(rect.adjusted(half, half, -half, -half), inner, inner);
    painter.restore();
}

void DrawHairline(QPainter& painter, const QRect& rect, const QColor& colour)
{
    const qreal pixel = 1.0 / painter.device()->devicePixelRatioF();
    const bool across = rect.width() >= rect.height();
    const QRectF line =
        across ? QRectF(rect.x(), rect.y() + std::floor(rect.height() / 2.0), rect.width(), pixel)
               : QRectF(rect.x() + std::floor(rect.width() / 2.0), rect.y(), pixel, rect.height());
    painter.fillRect(line, colour);
}

void DrawChevron(
    QPainter& painter, const QPointF& centre, bool down, bool mirrored, const QColor& colour)
{
    constexpr qreal kLong = 3.6;
    constexpr qreal kShort = 1.8;
    const qreal side = mirrored ? -1.0 : 1.0;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(colour, 1.5, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    const QPolygonF points = down
        ? QPolygonF{{centre + QPointF(-kLong, -kShort), centre + QPointF(0, kShort),
                     centre + QPointF(kLong, -kShort)}}
        : QPolygonF{{centre + QPointF(-kShort * side, -kLong), centre + QPointF(kShort * side, 0),
                     centre + QPointF(-kShort * side, kLong)}};
    painter.drawPolyline(points);
    painter.restore();
}

QColor Mix(const QColor& from, const QColor& to, qreal amount)
{
    const auto part = [amount](int a, int b) {
        return static_cast<int>(std::lround(a + (b - a) * amount));
    };
    return QColor(
        part(from.red(), to.red()), part(from.green(), to.green()), part(from.blue(), to.blue()));
}

} // namespace kivo::ui::qt
