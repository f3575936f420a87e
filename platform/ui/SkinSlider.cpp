#include "shell/contracts/ui/SkinSlider.h"

#include "platform/ui/Peers.h"
#include "shell/contracts/ui/Canvas.h"

#include <algorithm>
#include <cstdint>

namespace kivo::ui {

namespace {

constexpr int kWheelStep = 120;
constexpr std::int64_t kStepsOfRange = 50;
constexpr std::int64_t kPagesOfRange = 10;

} // namespace

CSkinSlider::CSkinSlider() = default;

CSkinSlider::~CSkinSlider() = default;

int CSkinSlider::Create(CWnd* parent)
{
    return CSkinWnd::Create(
        wndstyle::kChild | wndstyle::kVisible, u"Slider", String(), Rect{}, parent, /*id=*/0);
}

std::unique_ptr<IPeer> CSkinSlider::MakePeer()
{
    return GetPeerFactory().MakeSlider(*this);
}

void CSkinSlider::SetRange(int minimum, int maximum)
{
    minimum_ = minimum;
    maximum_ = std::max(minimum, maximum);
    Tell(Change::Range);
    SetPosition(position_);
}

void CSkinSlider::SetPosition(int position)
{
    position_ = std::clamp(position, minimum_, maximum_);
    thumb_ = ThumbAt(position_);
    Tell(Change::Thumb);
}

void CSkinSlider::SetVertical(int vertical)
{
    vertical_ = vertical != 0;
    SetPosition(position_);
}

void CSkinSlider::SetThumbSize(Size size)
{
    thumbSize_ = size;
    SetPosition(position_);
}

void CSkinSlider::SetBounds(int left, int top, int width, int height)
{
    CSkinWnd::SetBounds(left, top, width, height);
    SetPosition(position_);
}

void CSkinSlider::CalculateBounds(const Rect& place)
{
    CSkinWnd::CalculateBounds(place);
    SetPosition(position_);
}

Rect CSkinSlider::ThumbAt(int position) const
{
    const Rect channel = GetChannelRect();
    const int thumb = vertical_ ? thumbSize_.height : thumbSize_.width;
    const int span = std::max(0, (vertical_ ? HeightOf(channel) : WidthOf(channel)) - thumb);
    const std::int64_t range = std::int64_t{maximum_} - minimum_;
    const std::int64_t passed =
        std::clamp<std::int64_t>(std::int64_t{position} - minimum_, 0, range);
    const int offset = range > 0 ? static_cast<int>(passed * span / range) : 0;
    Rect rect;
    if (vertical_) {
        rect.left = channel.left + (WidthOf(channel) - thumbSize_.width) / 2;
        rect.top = channel.top + span - offset;
    } else {
        rect.left = channel.left + offset;
        rect.top = channel.top + (HeightOf(channel) - thumbSize_.height) / 2;
    }
    rect.right = rect.left + thumbSize_.width;
    rect.bottom = rect.top + thumbSize_.height;
    return rect;
}

int CSkinSlider::PositionAt(int thumbStart) const
{
    const Rect channel = GetChannelRect();
    const int thumb = vertical_ ? thumbSize_.height : thumbSize_.width;
    const std::int64_t span =
        std::int64_t{vertical_ ? HeightOf(channel) : WidthOf(channel)} - thumb;
    if (span <= 0)
        return minimum_;
    const std::int64_t start = std::int64_t{thumbStart} - (vertical_ ? channel.top : channel.left);
    const std::int64_t along = std::clamp<std::int64_t>(vertical_ ? span - start : start, 0, span);
    const std::int64_t range = std::int64_t{maximum_} - minimum_;
    return static_cast<int>(minimum_ + along * range / span);
}

void CSkinSlider::RenderSelf(ICanvas& canvas)
{
    const Rect channel = GetChannelRect();
    const int middle =
        vertical_ ? (thumb_.top + thumb_.bottom) / 2 : (thumb_.left + thumb_.right) / 2;
    const int played = vertical_ ? channel.bottom - middle : middle - channel.left;
    canvas.DrawChannel(channel, IsLocked() ? 0 : played);
    if (!IsLocked() && canvas.HasThumb(hoverIndex_))
        canvas.DrawThumb(thumb_, hoverIndex_, /*ghost=*/false);
}

bool CSkinSlider::TakesInput() const
{
    return mouseHandling_ && IsEnabled() && !IsLocked();
}

int CSkinSlider::Along(Point point) const
{
    return vertical_ ? point.y : point.x;
}

void CSkinSlider::OnMouseMove(unsigned /*flags*/, Point point)
{
    if (dragging_ && !TakesInput()) {
        CancelDrag();
        return;
    }
    const Point place = MapToParent(point);
    if (!mouseTracked_)
        mouseTracked_ = TrackMouseLeave() != 0;
    if (dragging_) {
        DragTo(place);
        return;
    }
    const int start = vertical_ ? thumb_.top : thumb_.left;
    const int end = vertical_ ? thumb_.bottom : thumb_.right;
    const int hover = TakesInput() && Along(place) >= start && Along(place) < end ? 1 : 0;
    if (hover != hoverIndex_) {
        hoverIndex_ = hover;
        Refresh();
    }
}

void CSkinSlider::OnLButtonDown(unsigned /*flags*/, Point point)
{
    if (!TakesInput())
        return;
    const Point place = MapToParent(point);
    const int start = vertical_ ? thumb_.top : thumb_.left;
    const int length = vertical_ ? thumbSize_.height : thumbSize_.width;
    dragStart_ = position_;
    dragJump_ = 0;
    dragging_ = true;
    lastPoint_ = place;
    if (Along(place) < start || Along(place) >= start + length) {
        PlaceThumb(Along(place) - length / 2);
        dragJump_ = position_ - dragStart_;
    }
    Tell(Change::Thumb);
    if (live_ && dragJump_ != 0)
        FireEvent(kControlEvent, this);
}

// Puts the thumb's start there, as far as the channel goes, and reads the position off it.
void CSkinSlider::PlaceThumb(int start)
{
    const Rect channel = GetChannelRect();
    const int first = vertical_ ? channel.top : channel.left;
    const int end = vertical_ ? channel.bottom : channel.right;
    const int length = vertical_ ? thumbSize_.height : thumbSize_.width;
    const int place = std::clamp(start, first, std::max(first, end - length));
    if (vertical_)
        thumb_ = {thumb_.left, place, thumb_.right, place + length};
    else
        thumb_ = {place, thumb_.top, place + length, thumb_.bottom};
    position_ = PositionAt(place);
}

// The thumb follows the hand; at an end it waits until the hand is back inside the channel.
void CSkinSlider::DragTo(Point point)
{
    const int delta = Along(point) - Along(lastPoint_);
    if (delta == 0)
        return;
    const int before = position_;
    const int start = vertical_ ? thumb_.top : thumb_.left;
    PlaceThumb(start + delta);
    const int moved = (vertical_ ? thumb_.top : thumb_.left) - start;
    if (vertical_)
        lastPoint_.y += moved;
    else
        lastPoint_.x += moved;
    Tell(Change::Thumb);
    if (live_ && position_ != before)
        FireEvent(kControlEvent, this);
}

void CSkinSlider::OnLButtonUp(unsigned /*flags*/, Point /*point*/)
{
    if (!dragging_)
        return;
    if (!TakesInput()) {
        CancelDrag();
        return;
    }
    dragging_ = false;
    Refresh();
}

void CSkinSlider::OnMouseLeave()
{
    mouseTracked_ = false;
    if (hoverIndex_ == 0 || dragging_)
        return;
    hoverIndex_ = 0;
    Refresh();
}

void CSkinSlider::OnKeyDown(SliderKey key)
{
    const std::int64_t range = std::int64_t{maximum_} - minimum_;
    const auto step = static_cast<int>(std::max<std::int64_t>(1, range / kStepsOfRange));
    const auto page = static_cast<int>(std::max<std::int64_t>(1, range / kPagesOfRange));
    switch (key) {
    case SliderKey::StepBack: MoveByHand(-step); break;
    case SliderKey::StepForward: MoveByHand(step); break;
    case SliderKey::PageBack: MoveByHand(-page); break;
    case SliderKey::PageForward: MoveByHand(page); break;
    case SliderKey::First: MoveByHand(-range); break;
    case SliderKey::Last: MoveByHand(range); break;
    }
}

void CSkinSlider::OnWheel(int angleDelta)
{
    if (!TakesInput())
        return;
    const std::int64_t range = std::int64_t{maximum_} - minimum_;
    wheelRest_ += std::clamp(angleDelta, -kWheelStep * 100, kWheelStep * 100);
    const int steps = wheelRest_ / kWheelStep;
    wheelRest_ -= steps * kWheelStep;
    MoveByHand(steps * std::max<std::int64_t>(1, range / kStepsOfRange));
}

void CSkinSlider::MoveByHand(std::int64_t delta)
{
    if (!TakesInput() || dragging_)
        return;
    const auto wanted = static_cast<int>(
        std::clamp<std::int64_t>(std::int64_t{position_} + delta, minimum_, maximum_));
    if (wanted == position_)
        return;
    SetPosition(wanted);
    FireEvent(kControlEvent, this);
}

void CSkinSlider::CancelDrag()
{
    if (!dragging_)
        return;
    dragging_ = false;
    const int before = position_;
    // Without live events the position has gone on by itself meanwhile.
    const std::int64_t back = live_ ? dragStart_ : std::int64_t{position_} - dragJump_;
    SetPosition(static_cast<int>(std::clamp<std::int64_t>(back, minimum_, maximum_)));
    if (live_ && position_ != before)
        FireEvent(kControlEvent, this);
}

} // namespace kivo::ui
