#pragma once

#include "shell/contracts/ui/SkinForm.h"

namespace kivo::ui {
class CSkinSlider;
}

namespace kivo::tunehive {

class IPage;

// The small pop-up with the volume slider. It opens on the player's volume and closes when it loses
// the activation; it lives as long as the page. Thread: user interface.
class CVolForm : public ui::CSkinForm {
public:
    explicit CVolForm(IPage* page); // Borrowed.

    int Create(CWnd* parent); // Hidden at first. 1: done.
    int OnBuildControlAfter() override;
    int OnQueryCloseForm() override;
    LPARAM WindowProc(unsigned message, WPARAM wParam, LPARAM lParam) override;

private:
    void OnSlider(ui::CSkinObject* sender, void* data);

    CWnd* parent_ = nullptr;
    IPage* page_;
    ui::CSkinSlider* slider_ = nullptr;
};

} // namespace kivo::tunehive
