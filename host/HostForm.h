#pragma once

#include "shell/contracts/ui/SkinForm.h"

namespace kivo::ui {
class CSWColorEdit;
} // namespace kivo::ui

namespace kivo::host {

// What the host's own dialogs have in common: "BtnOK", the default, and "BtnCancel" out of the
// build file; a result of 1 for OK, 0 for all else. Thread: user interface; modal.
class HostForm : public ui::CSkinForm {
public:
    // The create step and the user's answer in one. True: OK.
    [[nodiscard]] bool Ask(CWnd* parent);

    int OnBuildControlAfter() override;

protected:
    static constexpr int kLongestAddress = 2047; // Units: the network's own limit, in bytes.
    static constexpr int kLongestPassword = 1024;

    HostForm(const char16_t* id, String title); // `id` is that of the build file.

    virtual void Fill() {}                 // The controls stand; the fields get their presets.
    virtual bool Accept() { return true; } // OK was pressed. False: the form stays.
    virtual void OnButton(CSkinObject& /*button*/) {} // Another one than the two.

    // Null where the build file lacks it.
    ui::CSWColorEdit* MakeEdit(const char16_t* id, const String& text, int longest);
    [[nodiscard]] String GetField(const char16_t* id) const; // Trimmed.
    void SetControlText(const char16_t* id, const String& text) const;
    void ShowControl(const char16_t* id, bool isShown) const;
    void SetTick(const char16_t* id, bool isTicked) const;
    [[nodiscard]] bool IsTicked(const char16_t* id) const;
    void ShowError(const char16_t* id, const String& text); // Empty: there is none any more.
    void GrowToContent();                                   // Of an open form.

private:
    void OnControl(CSkinObject* sender, void* data);

    String title_;
};

} // namespace kivo::host
