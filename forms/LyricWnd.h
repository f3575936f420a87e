#pragma once

#include "shell/contracts/ui/SkinWnd.h"

namespace kivo::tunehive {

// The window inside which the player shows its picture. The current player follows it: it is shown,
// hidden and moved with it. Thread: user interface.
class CLyricWnd : public ui::CSkinWnd {
public:
    CLyricWnd();

    int Create(CWnd* parent); // 1: done, and players create their surface in it from now on.
    void SetVisible(int visible) override;
    [[nodiscard]] int IsSelfRender() const override;
    void CalculateBounds(const Rect& place) override;
};

} // namespace kivo::tunehive
