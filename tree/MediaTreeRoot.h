#pragma once

#include "shell/contracts/ui/SkinTreeItem.h"

namespace kivo::tunehive {

// The row above the groups, which shows nothing. Thread: user interface.
class CMediaTreeRoot final : public ui::CSkinTreeItem {
public:
    explicit CMediaTreeRoot(ui::CSkinTree* tree)
        : CSkinTreeItem(tree, String())
    {
    }

    void BuildRow() override {}
    ui::IMenu* GetRowMenu(const ui::MenuDelegate& /*delegate*/) override { return nullptr; }
    void OnRowCommand(ui::IMenu* /*entry*/) override {}
    void OnExpandChanged(ui::CSkinTree* /*tree*/, int /*row*/, bool /*expanded*/) override {}
    int CanBeSelected() override { return 1; }
    int CanBeEdited() override { return 1; }
};

} // namespace kivo::tunehive
