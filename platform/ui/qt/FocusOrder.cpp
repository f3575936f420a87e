#include "platform/ui/qt/FocusOrder.h"

#include "platform/ui/qt/WidgetPeer.h"
#include "shell/contracts/ui/SkinForm.h"
#include "shell/contracts/ui/SkinManager.h"
#include "shell/contracts/ui/SkinSplitter.h"

#include <utility>
#include <vector>

namespace kivo::ui::qt {

namespace {

// A control, or the bar of a splitter, which is none.
struct Part {
    Rect bounds;
    const CSkinObject* control;
    QWidget* widget; // Null: not made, or for what it holds alone.
};

bool TakesTab(const QWidget& widget)
{
    return (widget.focusPolicy() & Qt::TabFocus) != 0;
}

QWidget* FindBar(const CSkinSplitter& splitter)
{
    const QWidget* const holder = WidgetOf(&splitter);
    if (holder == nullptr)
        return nullptr;
    for (QWidget* const child :
         holder->findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly)) {
        if (TakesTab(*child))
            return child;
    }
    return nullptr;
}

bool ComesFirst(const Part& a, const Part& b)
{
    if (a.bounds.bottom <= b.bounds.top || b.bounds.bottom <= a.bounds.top)
        return a.bounds.top < b.bounds.top;
    return CSkinManager::GetInstance()->IsRightToLeft() ? a.bounds.right > b.bounds.right
                                                        : a.bounds.left < b.bounds.left;
}

std::vector<Part> GetParts(const CSkinObject& object)
{
    std::vector<Part> parts;
    for (const CSkinObject* const control : object.GetControls()) {
        const bool isWindow = dynamic_cast<const CSkinForm*>(control) != nullptr;
        if (control != nullptr && control->IsSetVisible() && !isWindow)
            parts.push_back({control->GetBoundsRect(), control, WidgetOf(control)});
    }
    if (const auto* splitter = dynamic_cast<const CSkinSplitter*>(&object))
        parts.push_back({splitter->GetBarRect(), nullptr, FindBar(*splitter)});
    // By hand: boxes that overlap in part have no strict order, which a sort may not bear.
    for (std::size_t sorted = 1; sorted < parts.size(); ++sorted) {
        for (std::size_t i = sorted; i > 0 && ComesFirst(parts[i], parts[i - 1]); --i)
            std::swap(parts[i], parts[i - 1]);
    }
    return parts;
}

void Collect(const CSkinObject& object, const QWidget& window, QList<QWidget*>& order)
{
    for (const Part& part : GetParts(object)) {
        if (part.widget != nullptr && part.widget->isVisibleTo(&window) &&
            part.widget->isEnabled() && TakesTab(*part.widget))
            order.append(part.widget);
        if (part.control != nullptr)
            Collect(*part.control, window, order);
    }
}

} // namespace

QList<QWidget*> GetFocusOrder(const CSkinForm& form, const QWidget& window)
{
    QList<QWidget*> order;
    Collect(form, window, order);
    return order;
}

} // namespace kivo::ui::qt
