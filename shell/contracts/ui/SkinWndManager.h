#pragma once

#include "shell/contracts/base/Export.h"

#include <vector>

namespace kivo::ui {

class CSkinForm;

// Knows the main form and the modal forms that are open. Thread: user interface.
class KIVO_API CSkinWndManager {
public:
    [[nodiscard]] static CSkinWndManager* GetInstance();

    [[nodiscard]] CSkinForm* GetMainForm() const { return mainForm_; } // Null: none.
    void SetMainForm(CSkinForm* form) { mainForm_ = form; }

    // Open modal forms, the innermost last.
    [[nodiscard]] const std::vector<CSkinForm*>& GetModalForms() const { return modalForms_; }
    void InterruptAllModalForms(); // Ends each with 0, the innermost first.

private:
    friend class CSkinForm;

    std::vector<CSkinForm*> modalForms_;
    CSkinForm* mainForm_ = nullptr;
};

} // namespace kivo::ui
