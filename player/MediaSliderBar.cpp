#include "player/MediaSliderBar.h"

#include "shell/contracts/ui/Canvas.h"

#include <algorithm>
#include <cstdint>

namespace kivo::tunehive {

CMediaSliderBar::CMediaSliderBar()
{
    SetLiveEvents(/*live=*/false);
}

void CMediaSliderBar::SetLocked(bool locked)
{
    if (locked && IsDragging())
        CancelDrag();
    locked_ = locked;
    Refresh();
}

void CMediaSliderBar::OnLButtonDown(unsigned flags, Point point)
{
    if (!IsEnabled() || IsLocked())
        return;
    CSkinSlider::OnLButtonDown(flags, point);
    ghostPosition_ = GetPosition();
    ghost_ = GetThumbRect();
}

void CMediaSliderBar::OnLButtonUp(unsigned flags, Point point)
{
    if (!IsEnabled() || IsLocked() || !IsDragging())
        return;
    CSkinSlider::OnLButtonUp(flags, point);
    SetPosition(ghostPosition_);
    SetThumbRect(ghost_);
    const LifeWatch life = Watch();
    FireEvent(ui::kControlEvent, this);
    if (life.IsAlive())
        Refresh();
}

void CMediaSliderBar::OnMouseMove(unsigned /*flags*/, Point point)
{
    if (!IsMouseHandled())
        return;
    const Point inParent = MapToParent(point);
    if (!IsMouseTracked() && TrackMouseLeave() != 0)
        SetMouseTracked(/*tracked=*/true);
    if (IsDragging())
        DragGhost(inParent);
    else
        Hover(inParent);
}

void CMediaSliderBar::Hover(Point point)
{
    const int index = ui::Contains(GetThumbRect(), point) ? 1 : 0;
    if (index == GetHoverIndex())
        return;
    SetHoverIndex(index);
    Refresh();
}

// Moves the ghost with the hand. At an end of the channel it stays flush, and the point that the
// next move is measured from stays with it: the ghost follows again once the hand is back inside.
void CMediaSliderBar::DragGhost(Point point)
{
    const Rect channel = GetBoundsRect();
    const bool vertical = IsVertical();
    const Point last = GetLastPoint();
    const int distance = vertical ? point.y - last.y : point.x - last.x;
    if (distance == 0)
        return;

    const bool isTowardsMinimum = (distance < 0) != vertical; // Vertical ones grow upwards.
    const int channelStart = vertical ? channel.top : channel.left;
    const int channelEnd = vertical ? channel.bottom : channel.right;
    const int ghostStart = vertical ? ghost_.top : ghost_.left;
    const int ghostEnd = vertical ? ghost_.bottom : ghost_.right;
    if (ghostStart + distance >= channelStart && ghostEnd + distance <= channelEnd) {
        MoveGhost(distance);
        SetLastPoint(point);
        const int position = PositionAt(ghostStart + distance);
        ghostPosition_ =
            isTowardsMinimum ? std::max(position, GetMinimum()) : std::min(position, GetMaximum());
    } else {
        const int rest = distance < 0 ? channelStart - ghostStart : channelEnd - ghostEnd;
        MoveGhost(rest);
        SetLastPoint(vertical ? Point{last.x, last.y + rest} : Point{last.x + rest, last.y});
        ghostPosition_ = isTowardsMinimum ? GetMinimum() : GetMaximum();
    }
    Refresh();
}

void CMediaSliderBar::MoveGhost(int distance)
{
    if (IsVertical()) {
        ghost_.top += distance;
        ghost_.bottom += distance;
    } else {
        ghost_.left += distance;
        ghost_.right += distance;
    }
}

void CMediaSliderBar::RenderSelf(ui::ICanvas& canvas)
{
    CSkinSlider::RenderSelf(canvas);
    if (IsDragging() && canvas.HasThumb(GetHoverIndex()))
        canvas.DrawThumb(ghost_, GetHoverIndex(), /*ghost=*/true);
}

} // namespace kivo::tunehive
