#pragma once

#include "shell/contracts/ui/SkinList.h"
#include "shell/contracts/ui/SkinTreeItem.h"

namespace kivo::ui {

// A tree of rows under one root that doesn't show. Thread: user interface.
class KIVO_API CSkinTree : public CSkinList {
public:
    CSkinTree();
    ~CSkinTree() override; // Frees the root and all rows.

    // Gives the tree its root, which it frees; an earlier one is freed. `show` is false.
    void AppendTree(CSkinTreeItem* root, bool show);
    [[nodiscard]] CSkinTreeItem* GetRoot() const { return root_; }

    // Takes the row out of its parent and frees it with its children. Null does nothing.
    void RemoveTreeItem(CSkinTreeItem* row);
    // The same for many at once: each parent's gaps close in one pass. Rows named twice, or below
    // another named one, are freed once. Not while a clear is under way: it looks at each child.
    void RemoveTreeItems(const std::vector<CSkinTreeItem*>& rows);

    void InsertListItem(CSkinListItem* row, int position) override;
    void RemoveItem(int position) override;
    [[nodiscard]] int GetRowCount() const override;
    [[nodiscard]] CSkinListItem* GetRowAt(int position) const override;
    [[nodiscard]] int LocateRow(const CSkinListItem* row) const override;
    void GetAllSubControls(CPtrArray& rows) const override;
    void Envisible(CSkinListItem* row) override;

    void OnFoldReported(CSkinTreeItem* row, bool expanded); // The user's fold, from the peer.

protected:
    friend class CSkinTreeItem;

    std::unique_ptr<IPeer> MakePeer() override;
    bool VisitRows(const RowVisitor& visit) const override;
    [[nodiscard]] bool IsSelectedWithAll(const CSkinListItem* row) const override;
    [[nodiscard]] CSkinTreeItem* GetParentOf(const CSkinListItem* row) const override;
    void OnSync() override;
    void OnRowGone(CSkinListItem* row) override;

private:
    void OnChildrenTouched(CSkinTreeItem* parent);
    void OnFolding(CSkinTreeItem* row);
    void OnExpanded(CSkinTreeItem* row);
    [[nodiscard]] int CountShown(const CSkinTreeItem* row) const; // Rows that show below it.
    void AppendShown(const CSkinTreeItem* row, CPtrArray& rows) const;
    // The place of a row's first child; -1: its children don't show.
    [[nodiscard]] int FirstPlaceBelow(const CSkinTreeItem* row) const;
    [[nodiscard]] static bool IsBelowMarked(const CSkinTreeItem* row);
    [[nodiscard]] bool VisitBelow(const CSkinTreeItem* row, const RowVisitor& visit) const;

    CSkinTreeItem* root_ = nullptr;
    mutable const CSkinTreeItem* lastParent_ = nullptr; // The parent that was located in last,
    mutable int lastFirst_ = 0;                         // and where its rows begin.
};

} // namespace kivo::ui
