#pragma once

#include "shell/contracts/ui/SkinPanel.h"

namespace kivo::tunehive {

class CMediaTree;
class ITrackPickers;

// The panel in the splitter's upper pane that makes and holds the tree. Thread: user interface.
class CMediaTreePanel : public ui::CSkinPanel {
public:
    explicit CMediaTreePanel(ITrackPickers* pickers); // Borrowed; may be null.

    void Build(CWnd* parent); // Without a node in the build file there is no tree.
    int OnBuildControlAfter() override;
    [[nodiscard]] CMediaTree* GetTree() const { return tree_; } // Null until it is built.

private:
    CWnd* parent_ = nullptr;
    ITrackPickers* pickers_;
    CMediaTree* tree_ = nullptr; // Released with the panel's controls.
};

} // namespace kivo::tunehive
