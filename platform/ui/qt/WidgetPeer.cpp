#include "platform/ui/qt/WidgetPeer.h"

#include "platform/ui/qt/Tooltip.h"

#include <QEvent>
#include <QHelpEvent>
#include <QScreen>

namespace kivo::ui::qt {

namespace {

constexpr int kTooltipWidth = 300;
constexpr int kCursorWaiting = 32514;
constexpr int kCursorArrow = 32512;

// Lives as long as its widget; the control is known through the peer's life alone.
class TooltipFilter final : public QObject {
public:
    TooltipFilter(const CSkinObject& control, QWidget& widget)
        : QObject(&widget)
        , control_(control)
        , alive_(control.Watch())
    {
        widget.installEventFilter(this);
    }

protected:
    bool eventFilter(QObject* object, QEvent* event) override
    {
        if (event->type() != QEvent::ToolTip)
            return false;
        auto* widget = static_cast<QWidget*>(object);
        const String text = alive_.IsAlive() ? control_.GetTooltip() : String();
        ShowTooltip(static_cast<QHelpEvent*>(event)->globalPos(), text, kTooltipWidth, widget);
        return true;
    }

private:
    const CSkinObject& control_;
    LifeWatch alive_;
};

// Where the control's own place begins in its parent widget.
QPoint OriginIn(const CSkinObject& control)
{
    QPoint origin;
    for (const CSkinObject* above = control.GetParent();
         above != nullptr && WidgetOf(above) == nullptr;
         above = above->GetParent())
        origin += ToQt(above->GetBoundsRect()).topLeft();
    return origin;
}

} // namespace

static QWidget* HolderOf(const CSkinObject* object)
{
    const auto* peer = object == nullptr ? nullptr : dynamic_cast<const QtPeer*>(object->GetPeer());
    return peer == nullptr ? nullptr : peer->GetHolder();
}

QWidget* WidgetOf(const CSkinObject* object)
{
    const auto* peer = object == nullptr ? nullptr : dynamic_cast<const QtPeer*>(object->GetPeer());
    return peer == nullptr ? nullptr : peer->GetWidget();
}

QWidget* ParentWidgetOf(const CSkinObject& object)
{
    for (const CSkinObject* above = object.GetParent(); above != nullptr;
         above = above->GetParent())
        if (QWidget* widget = HolderOf(above))
            return widget;
    return nullptr;
}

QWidget* WindowWidgetOf(CWnd* window)
{
    return WidgetOf(dynamic_cast<const CSkinObject*>(window));
}

QWidget* OwnerWidgetOf(const CSkinWnd& window)
{
    QWidget* owner = WindowWidgetOf(window.GetParentWnd());
    if (owner == nullptr)
        owner = ParentWidgetOf(window);
    return owner == nullptr ? nullptr : owner->window();
}

bool ApplyCommon(const CSkinObject& control, QWidget& widget, Change change, const QMargins& reach)
{
    switch (change) {
    case Change::Bounds:
        widget.setGeometry(
            ToQt(control.GetBoundsRect()).translated(OriginIn(control)).marginsAdded(reach));
        return true;
    case Change::Parent:
        if (QWidget* parent = ParentWidgetOf(control);
            !widget.isWindow() && widget.parentWidget() != parent) {
            widget.setParent(parent);
            ApplyCommon(control, widget, Change::Bounds, reach);
            ApplyCommon(control, widget, Change::Visible, reach);
        }
        return true;
    case Change::Visible: widget.setVisible(control.IsSetVisible()); return true;
    case Change::Enabled: widget.setEnabled(control.IsEnabled()); return true;
    case Change::Name:
    case Change::Tooltip:
        widget.setAccessibleName(ToScreen(control.GetAccessibleName()));
        return true;
    case Change::Repaint: widget.update(); return true;
    default: return false;
    }
}

void WatchTooltip(const CSkinObject& control, QWidget& widget)
{
    new TooltipFilter(control, widget); // The widget's.
}

void ApplyCursor(QWidget& widget, int cursor)
{
    if (cursor == kCursorWaiting)
        widget.setCursor(Qt::WaitCursor);
    else if (cursor == kCursorArrow)
        widget.setCursor(Qt::ArrowCursor);
    else
        widget.unsetCursor();
}

void CenterOver(QWidget& widget, QWidget* owner)
{
    const QScreen* screen = widget.screen();
    QRect place = owner != nullptr ? owner->window()->frameGeometry()
                                   : (screen != nullptr ? screen->availableGeometry() : QRect());
    if (place.isEmpty())
        return;
    const QSize size = widget.size();
    widget.move(place.center() - QPoint(size.width() / 2, size.height() / 2));
}

} // namespace kivo::ui::qt
