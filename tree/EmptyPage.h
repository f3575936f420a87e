#pragma once

#include "shell/contracts/ui/SkinPanel.h"

namespace kivo::tunehive {

class CMediaTree;

// What a tree shows below its groups before there is any music: what to do, and three ways to do
// it, each into "mine". When the first music comes, its group unfolds, so that it is seen. Beyond
// the rules of the system: without the switch neither happens. Thread: user interface.
class CEmptyPage : public ui::CSkinPanel {
public:
    explicit CEmptyPage(CMediaTree& tree); // The tree outlives it.

    // Built and put onto the tree, hidden; without a node in the build file there is none.
    void Build();
    // Shows or hides it, below the groups: after each change of rows or imports.
    void Follow();

    void CalculateBounds(const Rect& place) override;

private:
    [[nodiscard]] bool HasMusic() const; // In a group that can be edited.
    void ShowWords(int width);
    void Centre(const String& id, int width);
    void UnfoldMusic();
    void OnPress(ui::CSkinObject* sender, void* data);

    CMediaTree& tree_;
    bool hadMusic_ = true; // At the last look; what is there at the start isn't the first.
};

} // namespace kivo::tunehive
