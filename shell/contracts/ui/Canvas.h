#pragma once

#include "shell/contracts/ui/Types.h"

namespace kivo::ui {

// What a control or a row draws itself on; lives for one call of RenderSelf. Coordinates are those
// of the bounds of the object that is drawn; a mirrored window is the canvas's matter.
// Thread: user interface.
class ICanvas {
public:
    virtual void FillRect(const Rect& rect, COLORREF colour) = 0; // `colour` as in Types.h.

    // A slider's channel, the part up to `played` pixels in the colour of the played part.
    virtual void DrawChannel(const Rect& channel, int played) = 0;

    // A slider's thumb for a hover index of 0 or 1; `ghost`: the one that the hand drags.
    [[nodiscard]] virtual bool HasThumb(int hover) const = 0;
    virtual void DrawThumb(const Rect& thumb, int hover, bool ghost) = 0;

protected:
    ~ICanvas() = default;
};

} // namespace kivo::ui
