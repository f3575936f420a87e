#pragma once

#include "shell/contracts/ui/SkinPanel.h"

namespace kivo {
class CWnd;
}

namespace kivo::ui {

// Two panes, one above the other, and a bar between them. The fixed pane keeps its size when the
// splitter is resized; what doesn't fit is shown smaller, and the wanted size is kept. A pane or
// the bar that is hidden gives its room to the other pane. Thread: user interface.
class KIVO_API CSkinSplitter : public CSkinObject {
public:
    static constexpr int kBarSize = 5;

    CSkinSplitter(int style, int reserved); // Both 0.
    ~CSkinSplitter() override;

    // Makes the panes: the two first panels of the build node of that key, bare ones without.
    // 1: done.
    int Create(CWnd* parent, const String& buildKey);

    [[nodiscard]] CSkinPanel* GetPane(int pane) const; // 0 upper, 1 lower; null: any other, or
                                                       // before Create.
    void SetFixedPane(int pane); // 0 or 1; the size that it has now is the wanted one.
    [[nodiscard]] int GetFixedPane() const { return fixedPane_; }
    void SetFixedPaneSize(int size); // At least the pane's minimum. Laid out at once.
    [[nodiscard]] int GetFixedPaneSize() const { return fixedSize_; } // The wanted one.
    void SetPaneVisible(int pane, int visible);       // Takes effect at the next layout.
    [[nodiscard]] bool IsPaneVisible(int pane) const; // Its own flag alone.
    void SetBarVisible(int visible);
    [[nodiscard]] bool IsBarVisible() const { return barVisible_; }
    [[nodiscard]] Rect GetBarRect() const { return bar_; } // In the splitter; empty when hidden.

    void RePositionSubControls() override;

    // The user drags the bar by so many pixels downwards from where the drag began, or moves it by
    // a key (Up -16, Down 16). The outcome becomes the wanted size.
    void OnBarDragBegin();
    void OnBarDragged(int delta);
    void OnBarKey(int delta);

protected:
    std::unique_ptr<IPeer> MakePeer() override;

private:
    void MoveBar(int fixedSize);
    [[nodiscard]] int GetMinimum(int pane) const;
    [[nodiscard]] int GetPaneHeight(int pane) const;

    Rect bar_;
    int fixedPane_ = 0;
    int fixedSize_ = 0;
    int dragStart_ = 0;
    bool barVisible_ = true;
};

} // namespace kivo::ui
