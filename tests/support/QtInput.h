#pragma once

#include <QApplication>
#include <QMouseEvent>
#include <QWheelEvent>
#include <QWidget>

// Input that Qt Test has no words for, as the window system sends it. Thread: user interface.
namespace kivo::test {

// A turn of the wheel over the widget's middle; a notch is 120, up and away from the user.
inline void TurnWheel(QWidget& widget, int angle)
{
    const QPointF place = widget.rect().center();
    QWheelEvent turn(place,
                     widget.mapToGlobal(place),
                     {},
                     QPoint(0, angle),
                     Qt::NoButton,
                     Qt::NoModifier,
                     Qt::NoScrollPhase,
                     /*inverted=*/false);
    QApplication::sendEvent(&widget, &turn);
}

// The pointer comes to `place` while the left button is held.
inline void DragTo(QWidget& widget, QPointF place)
{
    QMouseEvent move(QEvent::MouseMove,
                     place,
                     widget.mapToGlobal(place),
                     Qt::NoButton,
                     Qt::LeftButton,
                     Qt::NoModifier);
    QApplication::sendEvent(&widget, &move);
}

} // namespace kivo::test
