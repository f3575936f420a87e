#pragma once

#include "shell/contracts/ui/ImageConfig.h"
#include "shell/contracts/ui/SkinSlider.h"

namespace kivo::tunehive {

// The position bar. The hand drags a ghost of the thumb, so that the counter of seconds may move
// the real one meanwhile; the drop fires the control event. It can be locked: between tracks there
// is nothing to drag. Thread: user interface.
class CMediaSliderBar : public ui::CSkinSlider {
public:
    CMediaSliderBar();

    void SetLocked(bool locked); // A drag under way ends without an event. True at first.
    [[nodiscard]] bool IsLocked() const override { return locked_; }
    [[nodiscard]] const Rect& GetGhostRect() const { return ghost_; } // Of a drag; in the parent.
    [[nodiscard]] int GetGhostPosition() const { return ghostPosition_; }

    void OnMouseMove(unsigned flags, Point point) override;
    void OnLButtonDown(unsigned flags, Point point) override;
    void OnLButtonUp(unsigned flags, Point point) override;
    void RenderSelf(ui::ICanvas& canvas) override;

private:
    void Hover(Point point);
    void DragGhost(Point point);
    void MoveGhost(int distance);

    ui::_ImageConfig image_;
    Rect ghost_;
    int ghostPosition_ = 0;
    bool locked_ = true;
};

} // namespace kivo::tunehive
