#pragma once

#include "shell/contracts/ui/SkinWnd.h"

#include <cstdint>

namespace kivo::ui {

enum class SliderKey { StepBack, StepForward, PageBack, PageForward, First, Last };

// A thumb on a channel; the channel is the control's bounds, and all rectangles are in the parent.
// Plain arithmetic in one direction: the peer of a mirrored window mirrors points and picture.
// A move by hand fires kControlEvent: with live events at each step, else the class that derives
// fires at the drop. Keys and the wheel fire once each. Thread: user interface.
class KIVO_API CSkinSlider : public CSkinWnd {
public:
    CSkinSlider();
    ~CSkinSlider() override;

    int Create(CWnd* parent); // 1: done.

    // A maximum below the minimum counts as the minimum; the position is clamped.
    void SetRange(int minimum, int maximum);
    [[nodiscard]] int GetMinimum() const { return minimum_; }
    [[nodiscard]] int GetMaximum() const { return maximum_; }
    void SetPosition(int position); // Clamped to the range. Moves the thumb; fires nothing.
    [[nodiscard]] int GetPosition() const { return position_; }

    void SetVertical(int vertical); // Vertical ones grow upwards.
    [[nodiscard]] bool IsVertical() const { return vertical_; }
    void SetThumbSize(Size size); // The skin's; 14 x 14 at first.
    [[nodiscard]] Size GetThumbSize() const { return thumbSize_; }
    [[nodiscard]] Rect GetThumbRect() const { return thumb_; }
    [[nodiscard]] bool IsDragging() const { return dragging_; }
    [[nodiscard]] int GetHoverIndex() const
    {
        return hoverIndex_;
    }                                                             // 1: the pointer is on the thumb.
    [[nodiscard]] virtual bool IsLocked() const { return false; } // Locked: no input, no thumb.

    void SetBounds(int left, int top, int width, int height) override;
    void CalculateBounds(const Rect& place) override;
    void RenderSelf(ICanvas& canvas) override; // The channel and, unless locked, the thumb.

    // The platform's mouse messages 0x200, 0x201, 0x202; `point` is in its own area. They do
    // nothing while it is disabled or locked.
    virtual void OnMouseMove(unsigned flags, Point point);
    virtual void OnLButtonDown(unsigned flags, Point point); // Beside the thumb: it jumps there.
    virtual void OnLButtonUp(unsigned flags, Point point);   // Ends the drag; fires nothing.
    virtual void OnMouseLeave();
    virtual void OnKeyDown(SliderKey key);
    virtual void OnWheel(int angleDelta); // In eighths of a degree; a step each 120.
    // Escape, or locked in mid-drag: as if it had not begun. Silent, but with live events the way
    // back is an event.
    virtual void CancelDrag();

protected:
    std::unique_ptr<IPeer> MakePeer() override;

    void SetLiveEvents(bool live) { live_ = live; }         // True at first.
    void SetMouseHandling(bool on) { mouseHandling_ = on; } // True at first.
    [[nodiscard]] bool IsMouseHandled() const { return mouseHandling_; }
    [[nodiscard]] Rect GetChannelRect() const { return GetBoundsRect(); }
    // Where a thumb of the present size stands for a position, and which position a thumb's start
    // (left or, vertical, top) stands for: minimum + (start - channel start) x (maximum - minimum)
    // / (channel length - thumb length), in 64-bit whole numbers, a vertical one counted from the
    // other end; the minimum when the channel is no longer than the thumb.
    [[nodiscard]] Rect ThumbAt(int position) const;
    [[nodiscard]] int PositionAt(int thumbStart) const;
    void SetThumbRect(const Rect& thumb) { thumb_ = thumb; }
    void SetDragging(bool dragging) { dragging_ = dragging; }
    void SetHoverIndex(int index) { hoverIndex_ = index; }
    [[nodiscard]] bool IsMouseTracked() const { return mouseTracked_; }
    void SetMouseTracked(bool tracked) { mouseTracked_ = tracked; }
    [[nodiscard]] Point GetLastPoint() const { return lastPoint_; } // In the parent.
    void SetLastPoint(Point point) { lastPoint_ = point; }

private:
    [[nodiscard]] bool TakesInput() const;
    [[nodiscard]] int Along(Point point) const;
    void MoveByHand(std::int64_t delta);
    void PlaceThumb(int start);
    void DragTo(Point point);

    Rect thumb_;
    Point lastPoint_;
    Size thumbSize_{14, 14};
    int minimum_ = 0;
    int maximum_ = 100;
    int position_ = 0;
    int hoverIndex_ = 0;
    int dragStart_ = 0; // The position at the press, and
    int dragJump_ = 0;  // how far the press beside the thumb made it jump.
    int wheelRest_ = 0;
    bool vertical_ = false;
    bool dragging_ = false;
    bool live_ = true;
    bool mouseHandling_ = true;
    bool mouseTracked_ = false;
};

} // namespace kivo::ui
