#pragma once

#include "shell/contracts/base/Delegate.h"
#include "shell/contracts/ui/SkinObject.h"

namespace kivo::ui {

// A button with a picture, a text or both; a press fires kControlEvent. Thread: user interface.
class KIVO_API CSkinButton : public CSkinObject {
public:
    CSkinButton();
    ~CSkinButton() override;

    // Who hears of a turn of the wheel over it, in eighths of a degree; up is positive. Nobody at
    // first. While it is disabled nobody hears.
    void SetWheelListener(const Delegate<int>& listener) { wheelListener_ = listener; }
    bool OnPeerWheel(int angleDelta) const; // The user turned it. False: nobody hears.

    void SetChecked(int checked); // Keeps the wash of a pressed button. Fires nothing.
    [[nodiscard]] bool IsChecked() const { return checked_; }

protected:
    std::unique_ptr<IPeer> MakePeer() override;

private:
    Delegate<int> wheelListener_;
    bool checked_ = false;
};

} // namespace kivo::ui
