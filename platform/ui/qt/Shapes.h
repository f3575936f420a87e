#pragma once

#include <QColor>
#include <QPainterPath>
#include <QRectF>
#include <QRegion>

class QPainter;

// The few shapes that all controls are made of. Thread: user interface.
namespace kivo::ui::qt {

namespace radius {
inline constexpr qreal kButton = 7.0;
inline constexpr qreal kField = 6.0;
inline constexpr qreal kPanel = 9.0;
inline constexpr qreal kEntry = 5.0;
} // namespace radius

// The comb cell: a hexagon that stands on a point, `height` high, with soft corners.
[[nodiscard]] QPainterPath MakeCell(const QPointF& centre, qreal height);

// What a window with round corners covers, pixels in part too, so that its edge stays smooth: the
// corners are cut off also where nothing blends windows.
[[nodiscard]] QRegion MakeRoundMask(const QRect& rect, qreal corner);

void FillRounded(QPainter& painter, const QRectF& rect, qreal corner, const QColor& colour);

// A frame of that width, wholly inside the rectangle.
void DrawFrame(
    QPainter& painter, const QRectF& rect, qreal corner, const QColor& colour, qreal width);

// A line of one device pixel along the middle of the rectangle's longer side.
void DrawHairline(QPainter& painter, const QRect& rect, const QColor& colour);

// An arrow head: down, or sideways in reading direction.
void DrawChevron(
    QPainter& painter, const QPointF& centre, bool down, bool mirrored, const QColor& colour);

// `amount` of the way from one colour to the other.
[[nodiscard]] QColor Mix(const QColor& from, const QColor& to, qreal amount);

} // namespace kivo::ui::qt
