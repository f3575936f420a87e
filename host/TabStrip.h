#pragma once

#include "shell/contracts/ui/SkinPanel.h"

#include <vector>

namespace kivo::ui {
class CSkinButton;
}

namespace kivo::host {

// The tabs above the pages: they share the width, the chosen one has a line below it. Where a word
// would be cut, all show their pictures alone. It fires kControlEvent of the tab that was pressed.
// Thread: user interface.
class TabStrip : public ui::CSkinPanel {
public:
    TabStrip();

    // Appends a tab; `key` is any number of the caller's.
    void AddTab(const void* key, const String& text, const String& picture);
    void RemoveTab(const void* key); // No tab of that key: nothing.
    void SetTabText(const void* key, const String& text);
    void SetTabPicture(const void* key, const String& picture);
    void Choose(const void* key); // None of that key: no tab has the line.

    [[nodiscard]] const void* GetChosen() const { return chosen_; }
    [[nodiscard]] const void* FindKey(const ui::CSkinObject* button) const; // Null: no tab of ours.
    [[nodiscard]] int GetTabCount() const { return static_cast<int>(tabs_.size()); }

    bool CreatePeer() override;
    [[nodiscard]] ui::Size GetWantedSize() const override;
    void CalculateBounds(const Rect& place) override;
    void RePositionSubControls() override;

private:
    struct Tab {
        const void* key;
        ui::CSkinButton* button;
        String text;
    };
    [[nodiscard]] Tab* Find(const void* key);
    void ShowTexts(bool show);
    [[nodiscard]] bool FitsInto(int width) const;

    std::vector<Tab> tabs_;
    ui::CSkinPanel* line_;
    const void* chosen_ = nullptr;
    bool showsTexts_ = true;
};

} // namespace kivo::host
