#include "platform/ui/qt/ControlPeers.h"
#include "platform/ui/qt/InputWatch.h"
#include "platform/ui/qt/Shapes.h"
#include "platform/ui/qt/SkinLook.h"
#include "platform/ui/qt/Tooltip.h"
#include "platform/ui/qt/WidgetAccess.h"
#include "platform/ui/qt/WidgetPeer.h"
#include "shell/contracts/ui/Canvas.h"
#include "shell/contracts/ui/SkinSlider.h"

#include <QHelpEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QWheelEvent>

#include <algorithm>
#include <optional>

namespace kivo::ui::qt {

namespace {

constexpr int kThickness = 6;
constexpr int kHandReach = 11; // The bar shows 6 pixels and takes the hand on 28.
constexpr qreal kThumbRing = 2.0;
constexpr int kThumbCovers = 10; // Of the played part, while the thumb stands at the start.
constexpr int kTipWidth = 300;

// The ground of the nearest object that has one.
QColor GroundBehind(const CSkinObject& control)
{
    for (const CSkinObject* object = &control; object != nullptr; object = object->GetParent())
        if (const QColor ground = GetGround(object->GetSkinName()); ground.isValid())
            return ground;
    return GetToken(u"window");
}

// Draws a slider; its rectangles are in the slider's parent, from left to right.
class SliderCanvas final : public ICanvas {
public:
    SliderCanvas(QPainter& painter, const CSkinSlider& slider, bool mirrored, bool ringed)
        : painter_(painter)
        , slider_(slider)
        , mirrored_(mirrored)
        , ringed_(ringed)
    {
    }

    void FillRect(const Rect& rect, COLORREF colour) override
    {
        painter_.fillRect(Place(rect), GetTextLook({}, {slider_.GetSkinName()}, colour).colour);
    }

    void DrawChannel(const Rect& channel, int played) override
    {
        QRectF body = Place(channel);
        QRectF done = body;
        if (slider_.IsVertical()) {
            body =
                QRectF(body.center().x() - kThickness / 2.0, body.y(), kThickness, body.height());
            done = body;
            done.setTop(body.bottom() - played);
        } else {
            body = QRectF(body.x(), body.center().y() - kThickness / 2.0, body.width(), kThickness);
            done = body;
            if (mirrored_)
                done.setLeft(body.right() - played);
            else
                done.setRight(body.left() + played);
        }
        const bool isUnderThumb = played > 0 && played <= kThumbCovers;
        if (isUnderThumb) { // The thumb's ring would leave a sliver of it.
            if (slider_.IsVertical())
                body.setBottom(done.top());
            else if (mirrored_)
                body.setRight(done.left());
            else
                body.setLeft(done.right());
        }
        FillRounded(painter_, body, kThickness / 2.0, GetToken(u"channel"));
        if (ringed_ && slider_.IsLocked()) // There is no thumb to wear the ring.
            DrawFrame(painter_, body.adjusted(-3, -3, 3, 3), 6.0, GetToken(u"mark"), 2.0);
        if (played > 0 && !isUnderThumb)
            FillRounded(
                painter_, done, kThickness / 2.0, GetToken(slider_.IsEnabled() ? u"mark" : u"off"));
    }

    [[nodiscard]] bool HasThumb(int hover) const override { return hover == 0 || hover == 1; }

    void DrawThumb(const Rect& thumb, int hover, bool ghost) override
    {
        const QRectF place = Place(thumb);
        const QColor mark = GetToken(slider_.IsEnabled() ? u"mark" : u"off");
        const qreal inset = !ghost && hover == 1 ? 1.0 : kThumbRing;
        painter_.save();
        painter_.setRenderHint(QPainter::Antialiasing);
        painter_.setPen(Qt::NoPen);
        painter_.setBrush(ghost ? mark : GroundBehind(slider_));
        painter_.drawEllipse(place);
        painter_.setBrush(ghost ? Mix(GetToken(u"honey"), GroundBehind(slider_), 0.35) : mark);
        painter_.drawEllipse(place.adjusted(inset, inset, -inset, -inset));
        if (ringed_ && !ghost) {
            painter_.setBrush(Qt::NoBrush);
            painter_.setPen(QPen(mark, 2.0));
            painter_.drawEllipse(place.adjusted(-2, -2, 2, 2));
        }
        painter_.restore();
    }

private:
    [[nodiscard]] QRectF Place(const Rect& rect) const
    {
        QRect place = ToQt(rect);
        if (mirrored_) {
            const Rect bounds = slider_.GetBoundsRect();
            place.moveLeft(bounds.left + bounds.right - rect.right);
        }
        return place;
    }

    QPainter& painter_;
    const CSkinSlider& slider_;
    bool mirrored_;
    bool ringed_;
};

QString TimeText(int seconds)
{
    const int rest = std::max(seconds, 0);
    const QLatin1Char zero('0');
    if (rest < 3600)
        return QStringLiteral("%1:%2").arg(rest / 60).arg(rest % 60, 2, 10, zero);
    return QStringLiteral("%1:%2:%3")
        .arg(rest / 3600)
        .arg(rest / 60 % 60, 2, 10, zero)
        .arg(rest % 60, 2, 10, zero);
}

QMargins ReachOf(const CSkinSlider& slider)
{
    if (slider.GetSkinName() == u"tunehive_player")
        return {4, kHandReach, 4, kHandReach};
    return {0, 4, 0, 4};
}

} // namespace

// The peer's widget. Thread: user interface.
class SliderWidget final : public QWidget, public IValueWidget {
    Q_OBJECT

public:
    SliderWidget(CSkinSlider& slider, const QMargins& reach, QWidget* parent)
        : QWidget(parent)
        , slider_(&slider)
        , reach_(reach)
    {
        setFocusPolicy(Qt::TabFocus);
        setMouseTracking(true);
    }

    void Detach() { slider_ = nullptr; }

    [[nodiscard]] ValueOfWidget GetValueNow() const override
    {
        if (slider_ == nullptr)
            return {};
        const int position = slider_->GetPosition();
        return {slider_->GetMinimum(),
                slider_->GetMaximum(),
                position,
                IsTime() ? TimeText(position) : QString::number(position)};
    }
    void SetValueByReader(int value) override
    {
        // By keys, so that it fires as the hand does, and not while it is locked.
        while (slider_ != nullptr && !slider_->IsLocked() && slider_->IsEnabled()) {
            const LifeWatch alive = slider_->Watch();
            const int before = slider_->GetPosition();
            if (before == value)
                return;
            slider_->OnKeyDown(before < value ? SliderKey::StepForward : SliderKey::StepBack);
            if (!alive.IsAlive())
                return;
            const int now = slider_->GetPosition();
            if (now == before || (before < value) != (now < value))
                return;
        }
    }

    [[nodiscard]] QSize sizeHint() const override
    {
        const bool upright = slider_ != nullptr && slider_->IsVertical();
        return upright ? QSize(28, 120) : QSize(120, kThickness);
    }

protected:
    void paintEvent(QPaintEvent* /*event*/) override
    {
        if (slider_ == nullptr)
            return;
        QPainter painter(this);
        const Rect bounds = slider_->GetBoundsRect();
        painter.translate(reach_.left() - bounds.left, reach_.top() - bounds.top);
        SliderCanvas canvas(painter, *slider_, IsMirrored(), hasFocus() && InputWatch::IsAtKeys());
        slider_->RenderSelf(canvas);
    }

    bool event(QEvent* event) override
    {
        if (event->type() == QEvent::ToolTip && slider_ != nullptr) {
            const auto* help = static_cast<QHelpEvent*>(event);
            if (IsTime() && !slider_->IsLocked())
                ShowTimeAt(help->globalPos(), help->pos());
            else
                ShowTooltip(help->globalPos(), slider_->GetTooltip(), kTipWidth, this);
            return true;
        }
        return QWidget::event(event);
    }

    void mousePressEvent(QMouseEvent* event) override
    {
        if (slider_ != nullptr && event->button() == Qt::LeftButton)
            slider_->OnLButtonDown(0, OwnPoint(event->position().toPoint()));
        else
            event->ignore();
    }
    void mouseMoveEvent(QMouseEvent* event) override
    {
        if (slider_ == nullptr)
            return;
        slider_->OnMouseMove(0, OwnPoint(event->position().toPoint()));
        if (IsTime() && slider_->IsDragging())
            ShowTimeAt(event->globalPosition().toPoint(), event->position().toPoint());
    }
    void mouseReleaseEvent(QMouseEvent* event) override
    {
        if (slider_ != nullptr && event->button() == Qt::LeftButton)
            slider_->OnLButtonUp(0, OwnPoint(event->position().toPoint()));
    }
    void leaveEvent(QEvent* /*event*/) override
    {
        if (slider_ != nullptr)
            slider_->OnMouseLeave();
    }
    void wheelEvent(QWheelEvent* event) override
    {
        if (slider_ != nullptr && event->angleDelta().y() != 0)
            slider_->OnWheel(event->angleDelta().y());
        event->accept();
    }
    void keyPressEvent(QKeyEvent* event) override
    {
        if (slider_ == nullptr)
            return;
        if (event->key() == Qt::Key_Escape && slider_->IsDragging()) {
            slider_->CancelDrag();
            return;
        }
        const std::optional<SliderKey> key = KeyOf(event->key());
        if (key)
            slider_->OnKeyDown(*key);
        else
            QWidget::keyPressEvent(event);
    }
    void focusInEvent(QFocusEvent* event) override
    {
        QWidget::focusInEvent(event);
        update();
    }

private:
    [[nodiscard]] bool IsTime() const { return slider_->GetSkinName() == u"tunehive_player"; }
    [[nodiscard]] bool IsMirrored() const
    {
        return !slider_->IsVertical() && CSkinManager::GetInstance()->IsRightToLeft();
    }
    [[nodiscard]] Point OwnPoint(const QPoint& point) const
    {
        QPoint own = point - QPoint(reach_.left(), reach_.top());
        if (IsMirrored())
            own.setX(slider_->GetWidth() - own.x());
        return FromQt(own);
    }
    void ShowTimeAt(const QPoint& screenPoint, const QPoint& point)
    {
        ShowTooltip(screenPoint, FromQt(TimeText(PositionUnder(point))), kTipWidth, this);
    }
    // The position that a press there would give.
    [[nodiscard]] int PositionUnder(const QPoint& point) const
    {
        const int thumb = slider_->GetThumbSize().width;
        const qint64 span = std::max(1, slider_->GetWidth() - thumb);
        const qint64 along = std::clamp<qint64>(OwnPoint(point).x - thumb / 2, 0, span);
        const qint64 range = qint64{slider_->GetMaximum()} - slider_->GetMinimum();
        return static_cast<int>(slider_->GetMinimum() + along * range / span);
    }
    [[nodiscard]] std::optional<SliderKey> KeyOf(int key) const
    {
        const bool mirrored = IsMirrored();
        switch (key) {
        case Qt::Key_Left: return mirrored ? SliderKey::StepForward : SliderKey::StepBack;
        case Qt::Key_Right: return mirrored ? SliderKey::StepBack : SliderKey::StepForward;
        case Qt::Key_Down: return SliderKey::StepBack;
        case Qt::Key_Up: return SliderKey::StepForward;
        case Qt::Key_PageDown: return SliderKey::PageBack;
        case Qt::Key_PageUp: return SliderKey::PageForward;
        case Qt::Key_Home: return SliderKey::First;
        case Qt::Key_End: return SliderKey::Last;
        default: return std::nullopt;
        }
    }

    CSkinSlider* slider_;
    QMargins reach_;
};

namespace {

class SliderPeer final : public WindowPeer<IWindowPeer, CSkinSlider, SliderWidget> {
public:
    SliderPeer(CSkinSlider& slider, SliderWidget* widget, const QMargins& reach)
        : WindowPeer(slider, widget, reach)
    {
        Apply(Change::Visible);
        widget->raise(); // Its reach lies over the buttons'.
    }

protected:
    void ApplyOwn(Change change) override
    {
        if (change == Change::Thumb && QAccessible::isActive()) {
            QAccessibleValueChangeEvent event(widget_, control_.GetPosition());
            QAccessible::updateAccessibility(&event);
        }
        if (change == Change::Cursor)
            ApplyCursor(*widget_, control_.GetCursor());
        widget_->update();
    }
};

} // namespace

std::unique_ptr<IWindowPeer> MakeSliderPeer(CSkinSlider& slider)
{
    const QMargins reach = ReachOf(slider);
    return std::make_unique<SliderPeer>(
        slider, new SliderWidget(slider, reach, ParentWidgetOf(slider)), reach);
}

} // namespace kivo::ui::qt

#include "SliderPeer.moc"
