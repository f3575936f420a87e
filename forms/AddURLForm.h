#pragma once

#include "shell/contracts/ui/SkinForm.h"

#include <map>

namespace kivo::ui {
class CSkinCombox;
class CSWColorEdit;
} // namespace kivo::ui

namespace kivo::tunehive {

// Asks for a group, an address and a name, and lets no address pass that can't be one.
// Thread: user interface; modal.
class CAddURLForm : public ui::CSkinForm {
public:
    CAddURLForm(const String& group, const String& url, const String& name); // Presets.

    int Create(CWnd* parent); // 1: done.
    int OnBuildControlAfter() override;

    // The choice after OK; before it the presets.
    [[nodiscard]] const String& GetGroup() const { return group_; }
    [[nodiscard]] const String& GetURL() const { return url_; } // Trimmed.
    [[nodiscard]] const String& GetName() const { return name_; }

private:
    [[nodiscard]] bool FillGroups();
    [[nodiscard]] ui::CSWColorEdit* FindEdit(const String& id, const String& text);
    void OnControlEvent(ui::CSkinObject* sender, void* data);
    void Confirm();

    String group_;
    std::map<int, String> ids_; // By row of the combo box.
    String url_;
    String name_;
    ui::CSkinCombox* combo_ = nullptr;
    ui::CSWColorEdit* urlInput_ = nullptr;
    ui::CSkinObject* okButton_ = nullptr;
    ui::CSkinObject* cancelButton_ = nullptr;
    ui::CSWColorEdit* nameInput_ = nullptr;
    ui::CSkinObject* errorLabel_ = nullptr;
};

// Whether a trimmed text is an address that a track may have: a scheme of the list in front, more
// behind it, and no blank.
[[nodiscard]] bool IsAddressValid(const String& url);

} // namespace kivo::tunehive
