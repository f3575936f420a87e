#pragma once

#include "shell/contracts/base/Export.h"
#include "shell/contracts/base/String.h"
#include "shell/contracts/framework/Windows.h"

#include <cstdint>

// Small values of the toolkit. All lengths are device-independent pixels.
namespace kivo::ui {

// 0x00BBGGRR. In rows and labels it is a key that the skin maps to what is painted
// (CSkinManager::GetColour); without a mapping it is painted as it stands.
using COLORREF = std::uint32_t;

struct Size {
    int width = 0;
    int height = 0;
    friend bool operator==(const Size&, const Size&) = default;
};

[[nodiscard]] constexpr int WidthOf(const Rect& rect)
{
    return rect.right - rect.left;
}
[[nodiscard]] constexpr int HeightOf(const Rect& rect)
{
    return rect.bottom - rect.top;
}
[[nodiscard]] constexpr bool Contains(const Rect& rect, Point point)
{
    return point.x >= rect.left && point.x < rect.right && point.y >= rect.top &&
           point.y < rect.bottom;
}

// Left, top, width, height of a part of a picture, in pixels of its 1x form; all zero: the whole.
struct PictureRect {
    int left = 0;
    int top = 0;
    int width = 0;
    int height = 0;
    friend bool operator==(const PictureRect&, const PictureRect&) = default;
};

// Which strip of its parent a child takes. Children are placed by ascending style, then by order.
namespace anchor {
inline constexpr int kNone = 0;     // Stays at its own bounds.
inline constexpr int kTop = 100;    // The full width, its own height.
inline constexpr int kBottom = 101; // The same at the bottom.
inline constexpr int kLeft = 102;   // Its own width at the leading edge.
inline constexpr int kRight = 103;  // Its own width at the trailing edge.
inline constexpr int kFill = 106;   // All that is left.
} // namespace anchor

// A font relative to the desktop's: `scale` 1 is its size, `weight` 0 its weight, else 100 to 900.
struct LOGFONT {
    double scale = 1.0;
    int weight = 0;
    friend bool operator==(const LOGFONT&, const LOGFONT&) = default;
};
[[nodiscard]] KIVO_API LOGFONT GetDefaultLOGFONT();

// Where a text stands in its place; the trailing edge is the right one in left-to-right windows.
namespace align {
inline constexpr int kLeading = 0;
inline constexpr int kCentre = 1;
inline constexpr int kTrailing = 4;
} // namespace align

// How a label or a text cell shows its text.
struct SkinConfig {
    int labelFlag = 0; // 1: elided at its end when it doesn't fit; 0: clipped.
};

} // namespace kivo::ui
