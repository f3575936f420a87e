#include "platform/ui/Layout.h"

#include "shell/contracts/ui/SkinManager.h"
#include "shell/contracts/ui/SkinWnd.h"

#include <algorithm>
#include <numeric>

namespace kivo::ui {

namespace {

std::vector<std::size_t> PlacingOrder(const std::vector<DockItem>& items)
{
    std::vector<std::size_t> order(items.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::stable_sort(order.begin(), order.end(), [&items](std::size_t a, std::size_t b) {
        return items[a].style < items[b].style;
    });
    return order;
}

Rect WithoutMargin(const Rect& strip, const Rect& margin)
{
    Rect place{strip.left + margin.left,
               strip.top + margin.top,
               strip.right - margin.right,
               strip.bottom - margin.bottom};
    place.right = std::max(place.left, place.right);
    place.bottom = std::max(place.top, place.bottom);
    return place;
}

// Cuts the item's strip off `rest`; what doesn't fit gets what is left.
Rect CutStrip(Rect& rest, const DockItem& item, int gap)
{
    const int width =
        std::min(item.size.width + item.margin.left + item.margin.right, WidthOf(rest));
    const int height =
        std::min(item.size.height + item.margin.top + item.margin.bottom, HeightOf(rest));
    Rect strip = rest;
    switch (item.style) {
    case anchor::kTop:
        strip.bottom = strip.top + height;
        rest.top = std::min(strip.bottom + gap, rest.bottom);
        break;
    case anchor::kBottom:
        strip.top = strip.bottom - height;
        rest.bottom = std::max(strip.top - gap, rest.top);
        break;
    case anchor::kLeft:
        strip.right = strip.left + width;
        rest.left = std::min(strip.right + gap, rest.right);
        break;
    case anchor::kRight:
        strip.left = strip.right - width;
        rest.right = std::max(strip.left - gap, rest.left);
        break;
    default: break; // kFill: all that is left, which others may share.
    }
    return strip;
}

bool TakesPlace(const CSkinObject& control)
{
    const auto* window = dynamic_cast<const CSkinWnd*>(&control);
    // An error line keeps its room from the start, so that nothing jumps when it shows.
    const bool keepsRoom = control.GetSkinName() == u"error";
    return (control.IsSetVisible() || keepsRoom) && (window == nullptr || !window->IsTopLevel());
}

std::vector<CSkinObject*> PlacedControls(const CSkinObject& parent)
{
    std::vector<CSkinObject*> placed;
    for (CSkinObject* control : parent.GetControls())
        if (TakesPlace(*control))
            placed.push_back(control);
    return placed;
}

DockItem ItemOf(const CSkinObject& control)
{
    return {control.GetAnchorStyle(),
            control.GetWantedSize(),
            control.GetMargin(),
            control.GetOwnPlace()};
}

} // namespace

void PlaceStrips(std::vector<DockItem>& items, const Rect& area, int gap)
{
    Rect rest = area;
    rest.right = std::max(rest.left, rest.right);
    rest.bottom = std::max(rest.top, rest.bottom);
    for (const std::size_t index : PlacingOrder(items)) {
        DockItem& item = items[index];
        if (item.style != anchor::kNone)
            item.place = WithoutMargin(CutStrip(rest, item, gap), item.margin);
    }
}

Size MeasureStrips(const std::vector<DockItem>& items, int gap)
{
    Size need;
    const std::vector<std::size_t> order = PlacingOrder(items);
    // From the innermost strip outwards.
    for (auto index = order.rbegin(); index != order.rend(); ++index) {
        const DockItem& item = items[*index];
        const int width = item.size.width + item.margin.left + item.margin.right;
        const int height = item.size.height + item.margin.top + item.margin.bottom;
        switch (item.style) {
        case anchor::kNone:
            need.width = std::max(need.width, item.place.right);
            need.height = std::max(need.height, item.place.bottom);
            break;
        case anchor::kTop:
        case anchor::kBottom:
            need.height += height + (need.height > 0 ? gap : 0);
            need.width = std::max(need.width, width);
            break;
        case anchor::kLeft:
        case anchor::kRight:
            need.width += width + (need.width > 0 ? gap : 0);
            need.height = std::max(need.height, height);
            break;
        default:
            need.width = std::max(need.width, width);
            need.height = std::max(need.height, height);
            break;
        }
    }
    return need;
}

Rect Mirror(const Rect& place, int width)
{
    return {width - place.right, place.top, width - place.left, place.bottom};
}

void LayOutControls(const CSkinObject& parent)
{
    const std::vector<CSkinObject*> controls = PlacedControls(parent);
    std::vector<DockItem> items;
    items.reserve(controls.size());
    for (const CSkinObject* control : controls)
        items.push_back(ItemOf(*control));

    const Rect padding = parent.GetPadding();
    const Rect area{padding.left,
                    padding.top,
                    parent.GetWidth() - padding.right,
                    parent.GetHeight() - padding.bottom};
    PlaceStrips(items, area, parent.GetGap());

    const bool mirrored = CSkinManager::GetInstance()->IsRightToLeft();
    const int width = parent.GetWidth();
    for (std::size_t index = 0; index < controls.size(); ++index) {
        const Rect& place = items[index].place;
        controls[index]->CalculateBounds(mirrored ? Mirror(place, width) : place);
    }
}

Size MeasureControls(const CSkinObject& parent)
{
    std::vector<DockItem> items;
    for (const CSkinObject* control : PlacedControls(parent))
        items.push_back(ItemOf(*control));
    Size need = MeasureStrips(items, parent.GetGap());
    const Rect padding = parent.GetPadding();
    need.width += padding.left + padding.right;
    need.height += padding.top + padding.bottom;
    return need;
}

} // namespace kivo::ui
