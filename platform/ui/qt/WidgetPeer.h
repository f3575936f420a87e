#pragma once

#include "platform/ui/Peers.h"
#include "platform/ui/qt/QtText.h"
#include "shell/contracts/ui/SkinWnd.h"

#include <QMargins>
#include <QObject>
#include <QPointer>
#include <QWidget>

// What all peers have in common. A widget of ours keeps a pointer to its control, which Detach
// clears when the control goes: the widget itself is deleted from the event loop, since the report
// that ended the control may have come from one of the widget's own event handlers.
// Thread: user interface.
namespace kivo::ui::qt {

class QtPeer {
public:
    virtual ~QtPeer() = default;
    [[nodiscard]] virtual QWidget* GetWidget() const = 0; // Null once Qt has deleted it.
    [[nodiscard]] virtual QWidget* GetHolder() const { return GetWidget(); } // Of its children.
};

// The widget of the object itself, of the nearest object above it that has one, and of a window.
// Null: there is none.
[[nodiscard]] QWidget* WidgetOf(const CSkinObject* object);
[[nodiscard]] QWidget* ParentWidgetOf(const CSkinObject& object);
[[nodiscard]] QWidget* WindowWidgetOf(CWnd* window);

// The widget of a top level's owner; null: it stands alone.
[[nodiscard]] QWidget* OwnerWidgetOf(const CSkinWnd& window);

// What follows the control in the same way everywhere: bounds, visibility, enabling, accessible
// name, cursor. `reach` is how far the widget goes beyond the control's bounds. False: the change
// is the peer's own matter.
bool ApplyCommon(const CSkinObject& control, QWidget& widget, Change change, const QMargins& reach);

// Reads the control's tooltip when it is asked for and shows it wrapped.
void WatchTooltip(const CSkinObject& control, QWidget& widget);

void ApplyCursor(QWidget& widget, int cursor);
void CenterOver(QWidget& widget, QWidget* owner);

template <class Interface, class Control, class Widget>
class WidgetPeer : public Interface, public QtPeer {
public:
    WidgetPeer(Control& control, Widget* widget, const QMargins& reach = {})
        : control_(control)
        , widget_(widget)
        , reach_(reach)
    {
        for (const Change change : {Change::Bounds, Change::Enabled, Change::Name})
            ApplyCommon(control_, *widget_, change, reach_);
    }
    WidgetPeer(const WidgetPeer&) = delete;
    WidgetPeer& operator=(const WidgetPeer&) = delete;
    ~WidgetPeer() override
    {
        if (widget_ == nullptr)
            return;
        widget_->Detach();
        widget_->hide();
        widget_->deleteLater();
    }

    [[nodiscard]] QWidget* GetWidget() const override { return widget_; }

    void Apply(Change change) override
    {
        if (widget_ != nullptr && !ApplyCommon(control_, *widget_, change, reach_))
            ApplyOwn(change);
    }
    [[nodiscard]] Size GetPreferredSize() const override
    {
        return widget_ == nullptr ? Size{} : FromQt(widget_->sizeHint());
    }
    void SetFocus() override
    {
        if (widget_ != nullptr)
            widget_->setFocus(Qt::OtherFocusReason);
    }
    [[nodiscard]] bool HasFocus() const override
    {
        const QWidget* focused = widget_ == nullptr ? nullptr : widget_->window()->focusWidget();
        return focused != nullptr && (focused == widget_ || widget_->isAncestorOf(focused)) &&
               widget_->isActiveWindow();
    }
    [[nodiscard]] Point MapToScreen(Point point) const override
    {
        if (widget_ == nullptr)
            return point;
        return FromQt(widget_->mapToGlobal(ToQt(point) + QPoint(reach_.left(), reach_.top())));
    }

protected:
    // What else changes: the base paints anew.
    virtual void ApplyOwn(Change /*change*/) { widget_->update(); }

    Control& control_; // NOLINT(*-non-private-member-*): the peers of this folder are one family.
    QPointer<Widget> widget_; // NOLINT(*-non-private-member-*)
    QMargins reach_;          // NOLINT(*-non-private-member-*)
};

// The same for what has a platform window.
template <class Interface, class Control, class Widget>
class WindowPeer : public WidgetPeer<Interface, Control, Widget> {
public:
    using WidgetPeer<Interface, Control, Widget>::WidgetPeer;

    [[nodiscard]] Rect GetWindowRect() const override
    {
        const QWidget* widget = this->GetWidget();
        if (widget == nullptr)
            return this->control_.GetBoundsRect();
        const QRect inner = widget->rect().marginsRemoved(this->reach_);
        return FromQt(QRect(widget->mapToGlobal(inner.topLeft()), inner.size()));
    }
    void Center(CWnd* parent) override
    {
        if (this->widget_ != nullptr)
            CenterOver(*this->widget_, WindowWidgetOf(parent));
    }
    bool TrackMouseLeave() override { return this->widget_ != nullptr; }
};

} // namespace kivo::ui::qt
