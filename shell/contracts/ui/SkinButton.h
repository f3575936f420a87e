#pragma once

#include "shell/contracts/ui/SkinObject.h"

namespace kivo::ui {

// A button with a picture, a text or both; a press fires kControlEvent. Thread: user interface.
class KIVO_API CSkinButton : public CSkinObject {
public:
    CSkinButton();
    ~CSkinButton() override;

    void SetChecked(int checked); // Keeps the wash of a pressed button. Fires nothing.
    [[nodiscard]] bool IsChecked() const { return checked_; }

protected:
    std::unique_ptr<IPeer> MakePeer() override;

private:
    bool checked_ = false;
};

} // namespace kivo::ui
