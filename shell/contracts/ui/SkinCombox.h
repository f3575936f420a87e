#pragma once

#include "shell/contracts/ui/SkinWnd.h"

namespace kivo::ui {

// A choice of one among texts. Thread: user interface.
class KIVO_API CSkinCombox : public CSkinWnd {
public:
    CSkinCombox();
    ~CSkinCombox() override;

    // As CSWColorEdit::Create, but for the height of `bounds`, which is that of the open list.
    int Create(unsigned style, const Rect& bounds, CWnd* parent);

    int AddString(const String& text); // The row's index.
    void ResetContent();               // No rows, no selection.
    [[nodiscard]] int GetCount() const { return static_cast<int>(items_.size()); }
    [[nodiscard]] const std::vector<String>& GetItems() const { return items_; }
    [[nodiscard]] int GetCurSel() const { return selected_; } // -1: none.
    void SetCurSel(int row);                       // A row that isn't there: none. Fires nothing.
    [[nodiscard]] String GetText() const override; // Of the selected row.

    void OnPeerSelected(int row); // The user chose: stores it and fires kControlEvent.

protected:
    std::unique_ptr<IPeer> MakePeer() override;

private:
    std::vector<String> items_;
    int selected_ = -1;
};

} // namespace kivo::ui
