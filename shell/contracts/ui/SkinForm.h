#pragma once

#include "shell/contracts/ui/SkinWnd.h"

namespace kivo::ui {

// The id under which a form's close button reaches OnSysButton.
inline constexpr char16_t kSysButtonClose[] = u"SysButtonClose";

// A top-level window: main form, dialog, pop-up. Its create step also builds it from the element
// `form` of the build file that has its object id; a form without one has no controls.
// It belongs to its creator. Thread: user interface.
class KIVO_API CSkinForm : public CSkinWnd {
public:
    CSkinForm();
    ~CSkinForm() override; // A modal form ends with 0 first.

    [[nodiscard]] CSkinForm* GetOwnerForm() override { return this; }
    [[nodiscard]] bool IsBuildFailed() const { return buildFailed_; } // OnBuildControlAfter gave 0.

    // Shows the form and returns when it has ended, with the number that ended it; 0: cancelled,
    // closed, interrupted, or it can't be shown (no window, a failed build). An end before the call
    // is remembered and returned at once. The caller owns the form still and may read its fields.
    int DoWndModal();
    void DoCancelWndModal(int result); // Ends it; a second end before the return changes nothing.
    void InterruptByForce(); // Ends it and each modal form above it with 0, the innermost first.
    [[nodiscard]] bool IsModal() const { return modal_; } // Between DoWndModal and its end.
    // The modal form directly above this one, if it has a window; null: none.
    [[nodiscard]] CSkinForm* GetModalChildForm() const;

    void SetDefaultOKButton(CSkinObject* button); // Enter presses it. Null: none.
    [[nodiscard]] CSkinObject* GetDefaultOKButton() const { return okButton_; }
    // Gets the keyboard when the form is activated and nothing else in it had it. Null: none.
    void SetDefaultFocusObj(CSkinObject* object);
    [[nodiscard]] CSkinObject* GetDefaultFocusObj() const { return focusObject_; }
    // Gives the keyboard to the object now or, before the form is shown, when it is.
    void FocusObject(CSkinObject* object);
    [[nodiscard]] CSkinObject* GetFocusObject() const { return wantedFocus_; }
    void BringToTop(); // Shown, un-minimised, raised, active where the desktop allows it.
    [[nodiscard]] bool IsPopup() const { return (GetExStyle() & wndstyle::kExToolWindow) != 0; }
    [[nodiscard]] bool IsActive() const { return active_; }

    // The road of a close: kClose reaches WindowProc, which asks OnSysButton(kSysButtonClose); a
    // result of 0 ends a modal form with 0 and else asks OnQueryCloseForm; 1 hides the form.
    // Either may destroy the form.
    virtual int OnSysButton(const String& button); // Non-zero: handled. The base gives 0.
    virtual int OnQueryCloseForm();                // Non-zero: hide it. The base gives 1.
    LPARAM WindowProc(unsigned message, WPARAM wParam, LPARAM lParam) override;
    bool CreateHandle() override;
    void SetVisible(int visible) override; // Shown, it is at least as large as its content needs.
    [[nodiscard]] Size GetWantedSize() const override;

    void ForgetObject(const CSkinObject* object); // Called by each control below it that goes.

protected:
    std::unique_ptr<IPeer> MakePeer() override;
    // Builds the children; called once by the create step. The base reads the build file.
    virtual int BuildForm();

private:
    void FitContent();
    void OnActivate(bool active);
    void OnClose();

    CSkinObject* okButton_ = nullptr;
    CSkinObject* focusObject_ = nullptr;
    CSkinObject* wantedFocus_ = nullptr;
    int endResult_ = 0;
    bool ended_ = false;
    bool modal_ = false;
    bool active_ = false;
    bool buildFailed_ = false;
};

} // namespace kivo::ui
