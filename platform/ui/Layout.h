#pragma once

#include "shell/contracts/ui/Types.h"

#include <vector>

namespace kivo::ui {

class CSkinObject;

// One thing that takes a strip of an area.
struct DockItem {
    int style = 0; // See namespace anchor; kNone keeps `place`.
    Size size;     // What it wants.
    Rect margin;
    Rect place; // The outcome, without the margin.
};

// Places the items by ascending style, then by order, each cutting its strip off what is left of
// the area, with a gap behind each strip.
void PlaceStrips(std::vector<DockItem>& items, const Rect& area, int gap);

// The size of the smallest area in which each item gets what it wants.
[[nodiscard]] Size MeasureStrips(const std::vector<DockItem>& items, int gap);

// The place mirrored in an area of that width.
[[nodiscard]] Rect Mirror(const Rect& place, int width);

// The same for the controls of an object: lays the visible ones out, and tells what they need,
// padding included.
void LayOutControls(const CSkinObject& parent);
[[nodiscard]] Size MeasureControls(const CSkinObject& parent);

} // namespace kivo::ui
