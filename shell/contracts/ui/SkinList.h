#pragma once

#include "shell/contracts/framework/Arrays.h"
#include "shell/contracts/ui/SkinListItem.h"
#include "shell/contracts/ui/SkinWnd.h"

#include <functional>

namespace kivo::ui {

class CSkinTreeItem;
class IListPeer;

enum class ListKey { Activate, Delete, Rename };

// What changed since the peer last saw the rows. It is brought in step at the end of the outermost
// bracket, or at once outside of one.
struct RowChanges {
    std::vector<CSkinTreeItem*> touchedParents; // Their child arrays are others. Empty for a list.
    std::vector<CSkinTreeItem*> folded;         // Expanded or folded.
    std::vector<CSkinListItem*> rows;           // Their cells changed; at most 32.
    bool manyRows = false;                      // More than that: paint all.
    bool items = false;                         // The rows of a plain list are others.
    bool selection = false;
    bool current = false;
    [[nodiscard]] bool IsEmpty() const
    {
        return touchedParents.empty() && folded.empty() && rows.empty() && !manyRows && !items &&
               !selection && !current;
    }
};

// A list of rows. Its view follows the rows at EndUpdate. Thread: user interface.
class KIVO_API CSkinList : public CSkinWnd {
public:
    CSkinList();
    ~CSkinList() override; // Frees its rows.

    int Create(CWnd* parent); // 1: done.

    // Brackets nest. While one is open no row's neighbour may be touched: it may be freed already.
    void BeginUpdate();
    void EndUpdate(int refresh); // 1. The view follows when the outermost bracket ends.
    [[nodiscard]] bool IsUpdating() const { return brackets_ > 0; }

    // Takes the row; a position outside the list appends. A tree derives its rows from the child
    // arrays, so there it only marks the parent changed.
    virtual void InsertListItem(CSkinListItem* row, int position);
    // Takes the row at a place out of the list, without freeing it; positions outside are ignored.
    // In a tree it marks the parent changed: the caller takes the row out of the child array.
    virtual void RemoveItem(int position);
    [[nodiscard]] virtual int GetRowCount() const; // Rows that show; a root doesn't.
    [[nodiscard]] virtual CSkinListItem* GetRowAt(int position) const; // Null: outside.
    // The place on screen, from 0, a root not counted; -1: not shown. Compares pointers only.
    [[nodiscard]] virtual int LocateRow(const CSkinListItem* row) const;
    // Empties the array and fills it with the rows in screen order, behind the root where there is
    // one. Writing to it changes nothing.
    virtual void GetAllSubControls(CPtrArray& rows) const;

    [[nodiscard]] int GetSelectedCount() const { return selectedCount_; } // O(1).
    [[nodiscard]] std::vector<CSkinListItem*> GetAllSelectedItem() const; // In screen order.
    // 1: at most one row is selected. 0, at first: as many as the user likes.
    void SetSingleSelection(int on);
    [[nodiscard]] bool IsSingleSelection() const { return singleSelection_; }
    void ClearAllSelected();
    void SelectAll(); // Rows that show, of the kind of the current row in a tree.
    [[nodiscard]] bool IsSelectedCannotMultiSelItem() const; // A selected row isn't
                                                             // multi-selectable.
    // The start of an extended selection, and the row that has the keyboard. Null: none.
    void SetAnchorRow(CSkinListItem* row) { anchorRow_ = row; }
    [[nodiscard]] CSkinListItem* GetAnchorRow() const { return anchorRow_; }
    void SetCurrentRow(CSkinListItem* row);
    [[nodiscard]] CSkinListItem* GetCurrentRow() const { return currentRow_; }

    // Opens the cell of the row at a place for editing; `select` is 1. 1: it is open; 0: no such
    // row or cell. The end comes back by OnEditEnd of the row.
    int Edit(int position, const String& cellId, int select);
    void SetEditLimitText(int units) { editLimit_ = units; } // 16-bit units, for the next edits.
    [[nodiscard]] int GetEditLimitText() const { return editLimit_; }
    [[nodiscard]] CSkinListItem* GetEditedRow() const { return editedRow_; }  // Null: none.
    [[nodiscard]] const String& GetEditedText() const { return editedText_; } // As it opened.
    void EndEdit(); // An open edit is committed.
    // The editor closed: a commit of another text than it opened with reaches OnEditEnd, cut to the
    // limit and never in the middle of a surrogate pair.
    void OnEditFinished(const String& text, bool committed);

    // 0: each row has the height that it wants. 1, at first: all have the usual one, which is what
    // lists of many thousands need.
    void SetUniformRows(int on);
    [[nodiscard]] bool HasUniformRows() const { return uniformRows_; }

    virtual void Envisible(CSkinListItem* row); // Scrolls to it, unfolding what is above it.
    void SetTooltipMaxWidth(int width);         // Pixels.
    [[nodiscard]] int GetTooltipMaxWidth() const { return tooltipMaxWidth_; }

    [[nodiscard]] CSkinListItem* HitTest(Point point) const; // In its own area; null: no row.
    [[nodiscard]] int GetCurKeyState() const
    {
        return keyState_;
    } // 2: Shift was held at the press.
    // The left button went down. The base lets the toolkit's selection have the click; an override
    // that doesn't call it swallows the click.
    virtual void OnLButtonDown(unsigned flags, Point point);

    // Drag and drop.
    void SetCanDrag(int on);
    void SetCanDrop(int on);
    [[nodiscard]] bool CanDrag() const { return canDrag_; }
    [[nodiscard]] bool CanDrop() const { return canDrop_; }
    virtual int GetDragText(String& text); // 0: no drag starts. The base gives 0.
    [[nodiscard]] bool IsDragInProgress() const { return dragInProgress_; } // Over this list.
    [[nodiscard]] const CStringArray& GetDroppedFiles() const { return droppedFiles_; }
    virtual int OnBlankDragOver();                // Over no row. 1: a drop is welcome. The base: 0.
    virtual void OnBlankDrop(const String& text); // Files are in the list; `text` is else the data.
    virtual void OnDragFinished(); // A drag that began here has ended, however it did.

    // The menu to show for a row, or null for the empty area. The caller's; null: none.
    virtual IMenu* GetPopupMenu(CSkinListItem* row);
    virtual IMenu* GetMultiSelectMenu();      // Several rows are selected. The base: null.
    virtual IMenu* GetBlankAreaMenu();        // The base: null.
    virtual void DoMenuCommand(IMenu* entry); // The base: OnRowCommand of the row whose menu it
                                              // was, else of the first selected row.

    // Reports of the peer. Each may destroy rows; those that send a row event may destroy the list.
    bool OnPress(CSkinListItem* hit, Point point, bool shift); // False: swallow the click.
    void OnDoubleClick(CSkinListItem* row);
    void OnButtonCell(CSkinListItem* row);                       // Its button was pressed.
    void OnKey(ListKey key);                                     // On the current row.
    void OnContextMenu(CSkinListItem* row, int x, int y);        // (-1, -1): asked for by a key.
    void OnSelectionReported(CSkinListItem* row, bool selected); // Tells the peer nothing.
    void OnCurrentReported(CSkinListItem* row);
    int OnDragStart(String& text);       // 0: no drag starts.
    bool OnDragOver(CSkinListItem* row); // True: a drop is welcome. Null: the empty area.
    void OnDragLeave();
    void OnFilesDropped(CSkinListItem* row, const CStringArray& paths);
    void OnTextDropped(CSkinListItem* row, const String& text);
    void OnDragEnd(); // The drag that began here is over.

    [[nodiscard]] IListPeer* GetListPeer() const; // Null: there is none.

protected:
    friend class CSkinListItem;

    std::unique_ptr<IPeer> MakePeer() override;
    using RowVisitor = std::function<bool(CSkinListItem*)>; // False: stop.
    // All rows in screen order, those of folded groups too. False: the visitor stopped.
    virtual bool VisitRows(const RowVisitor& visit) const;
    [[nodiscard]] virtual bool IsSelectedWithAll(const CSkinListItem* row) const;
    [[nodiscard]] virtual CSkinTreeItem* GetParentOf(const CSkinListItem* row) const;
    virtual void OnSync(); // The changes are about to be handed over.
    // A first row was selected, or the last one is no longer. No row may be touched from here.
    virtual void OnSelectedSome(bool some);
    virtual void OnRowGone(CSkinListItem* row);   // From the row's destructor.
    [[nodiscard]] MenuDelegate GetMenuDelegate(); // Calls DoMenuCommand.
    void ItemsChanged();
    void SendRowEvent(CSkinListItem* row, RowEvent event, const String& text);
    RowChanges changes_; // Since the last Sync; a tree adds its own.
    void Sync();         // Hands the changes over unless a bracket is open.
    [[nodiscard]] bool IsDying() const { return dying_; }
    void SetDying() { dying_ = true; }

private:
    void OnRowChanged(CSkinListItem* row);
    void OnRowSelected(CSkinListItem* row);
    void RunMenuCommand(IMenu* entry);
    void Drop(CSkinListItem* row, RowEvent event, const String& text);

    std::vector<CSkinListItem*> items_;
    std::vector<CSkinCell> scratch_;            // The cells of the row that was laid out last.
    const CSkinListItem* scratchRow_ = nullptr; // Inside its ReposControls.
    CStringArray droppedFiles_;
    String editedText_;
    CSkinListItem* anchorRow_ = nullptr;
    CSkinListItem* currentRow_ = nullptr;
    CSkinListItem* editedRow_ = nullptr;
    CSkinListItem* pressedRow_ = nullptr;
    CSkinListItem* menuRow_ = nullptr;
    int brackets_ = 0;
    int selectedCount_ = 0;
    int editLimit_ = 0;
    int tooltipMaxWidth_ = 300;
    int keyState_ = 0;
    bool pressTaken_ = false;
    bool pressing_ = false;
    bool singleSelection_ = false;
    bool uniformRows_ = true;
    bool canDrag_ = false;
    bool canDrop_ = false;
    bool dragInProgress_ = false;
    bool reporting_ = false; // The peer knows already.
    bool dying_ = false;
};

} // namespace kivo::ui
