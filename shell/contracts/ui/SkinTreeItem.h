#pragma once

#include "shell/contracts/framework/Arrays.h"
#include "shell/contracts/ui/SkinListItem.h"

namespace kivo::ui {

class CSkinTree;

// A row of a tree: a row with a parent and children. The child array is the order on screen; it may
// be changed freely inside an update bracket, and ChildrenChanged tells the tree of changes that
// didn't come by an operation of this class. Thread: user interface.
class KIVO_API CSkinTreeItem : public CSkinListItem {
public:
    CSkinTreeItem(CSkinTree* tree, const String& id);
    ~CSkinTreeItem() override; // Frees the child rows.

    [[nodiscard]] CSkinTree* GetTree() const;
    [[nodiscard]] CSkinTreeItem* GetParentItem() const
    {
        return parentItem_;
    } // Null: the root, or
      // in no tree.
    // Row pointers, CSkinTreeItem*, in display order. Writable for block moves.
    [[nodiscard]] CPtrArray& GetChildren();
    [[nodiscard]] const CPtrArray& GetChildren() const;
    [[nodiscard]] int GetChildCount() const;
    [[nodiscard]] CSkinTreeItem* GetChild(int index) const; // Null: there is none.
    // The child's index; -1: no child. Compares pointers only. Near O(1).
    [[nodiscard]] int IndexOf(const CSkinTreeItem* child) const;

    void AddTreeNode(CSkinTreeItem* child); // Appends it; the tree frees it from here on.
    void ChildrenChanged();                 // The child array was written from outside.

    void SetGroup(bool isGroup);
    [[nodiscard]] bool IsGroup() const { return isGroup_; }
    [[nodiscard]] bool IsExpanded() const { return expanded_; }
    // Shows or hides the children; `row` is the row's place and has no effect. Runs OnExpandChanged
    // when the state is another. A fold deselects the children and, if one of them was current,
    // makes this row current.
    void Expand(CSkinTree* tree, int row, bool expanded);

    // Moves this row among its siblings to where CompareFunc puts it, behind those that compare
    // equal. `recursive` sorts the children too. Sort2 is Sort without the children.
    void Sort(CSkinTree* tree, bool recursive);
    void Sort2(CSkinTree* tree);

    [[nodiscard]] int GetIndent() const override; // 18 for each level below the first.
    // As the base; DoubleClick folds or unfolds a group.
    int OnListEvent(CSkinList* list, int context, int event, const String& text) override;

    virtual void OnExpandChanged(CSkinTree* tree, int row, bool expanded) = 0;
    virtual int CompareFunc(CSkinTreeItem* a, CSkinTreeItem* b); // <0, 0, >0. The base: 0.
    int CanBeSelected() override = 0;                            // 1: the user may select it.
    int CanBeEdited() override = 0; // 1: its text may be edited in place.

private:
    friend class CSkinTree;
    struct Children;

    Children& MakeChildren();
    [[nodiscard]] bool HasChildGroups() const;
    void Renumber() const;
    void TakeOut(CSkinTreeItem* child);
    void TakeOutMarked();
    void SortChildren();

    CSkinTreeItem* parentItem_ = nullptr;
    std::unique_ptr<Children> children_; // Made at the first child; a track has none.
    mutable std::int32_t hint_ = 0;      // About where it stands among its siblings.
    bool isGroup_ = false;
    bool expanded_ = false;
    bool touched_ = false; // Among the changes of the tree, and
    bool folding_ = false; // the same for its fold.
    bool marked_ = false;  // For the length of RemoveTreeItems.
};

} // namespace kivo::ui
