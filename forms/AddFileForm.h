#pragma once

#include "shell/contracts/ui/SkinForm.h"

#include <vector>

namespace kivo::ui {
class CSkinCombox;
}

namespace kivo::tunehive {

// Asks for the group that new tracks go to. Thread: user interface; modal.
class CAddFileForm : public ui::CSkinForm {
public:
    CAddFileForm();

    int Create(CWnd* parent); // 1: done.
    int OnBuildControlAfter() override;
    [[nodiscard]] const String& GetGroup() const { return group_; } // Empty before OK.

private:
    void OnControlEvent(ui::CSkinObject* sender, void* data);

    String group_;
    std::vector<String> ids_; // By row of the combo box.
    ui::CSkinCombox* combo_ = nullptr;
    ui::CSkinObject* okButton_ = nullptr;
    ui::CSkinObject* cancelButton_ = nullptr;
};

} // namespace kivo::tunehive
