#pragma once

#include "shell/contracts/ui/SkinPanel.h"

namespace kivo::tunehive {

class CMediaTree;

// What a tree shows below its groups before there is any music: what to do, and three ways to do
// it, each into "mine". Beyond the rules of the system: without the switch it never shows. Thread:
// user interface.
class CEmptyPage : public ui::CSkinPanel {
public:
    explicit CEmptyPage(CMediaTree& tree); // The tree outlives it.

    // Built and put onto the tree, hidden; without a node in the build file there is none.
    void Build();
    // Shows or hides it, below the groups: after each change of rows or imports.
    void Follow();

    void CalculateBounds(const Rect& place) override;

private:
    [[nodiscard]] bool IsWanted() const;
    void ShowWords(int width);
    void Centre(const String& id, int width);
    void OnPress(ui::CSkinObject* sender, void* data);

    CMediaTree& tree_;
};

} // namespace kivo::tunehive
