#pragma once

#include "shell/contracts/ui/SkinWnd.h"

namespace kivo::ui {

// A field for one line of text. Thread: user interface.
class KIVO_API CSWColorEdit : public CSkinWnd {
public:
    CSWColorEdit();
    ~CSWColorEdit() override;

    // `bounds` as in CSkinWnd::Create; the bounds of the build stand when it is empty. 1: done.
    int Create(unsigned style, const Rect& bounds, CWnd* parent, int id);

    void SetText(const String& text) override; // Fires nothing.
    [[nodiscard]] String GetText() const override { return text_; }
    void SetLimitText(int units); // At most so many 16-bit units; 0: no limit.
    [[nodiscard]] int GetLimitText() const { return limit_; }
    void SetPassword(int on); // Shows dots in place of the characters.
    [[nodiscard]] bool IsPassword() const { return password_; }

    void OnPeerText(const String& text); // The user changed it. Fires nothing.

protected:
    std::unique_ptr<IPeer> MakePeer() override;

private:
    String text_;
    int limit_ = 0;
    bool password_ = false;
};

} // namespace kivo::ui
