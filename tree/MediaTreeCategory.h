#pragma once

#include "medialib/MediaInfo.h"
#include "mediares/BySid.h"
#include "shell/contracts/ui/SkinTreeItem.h"

#include <vector>

namespace kivo::tunehive {

class CMediaTree;
class CMediaTreeItem;
class IMediaResGroup;

// How PickRow steps from a row.
enum class RowMode : int {
    Same = 0,
    Next = 1, // Null behind the last.
    Previous = 2,
    NextWrap = 3,
    PreviousWrap = 4,
    Random = 5,
};

// The row of one group, in which its tracks stand as an ordered sequence: the group knows no order,
// the child rows are it. All work on the tracks of a group passes through here, the group first and
// the rows right after. Without a manager or group nothing happens and out values are empty.
// Thread: user interface.
class CMediaTreeCategory final : public ui::CSkinTreeItem {
public:
    CMediaTreeCategory(CMediaTree* tree, const String& id);

    // The row at a step from that of the SID. A SID without a row gives the first row, in mode
    // Random any row. Null without rows, or past an end.
    [[nodiscard]] CMediaTreeItem* PickRow(const String& sid, int mode) const;
    [[nodiscard]] CMediaTreeItem* FindRow(const String& sid) const; // Null: none has the SID.
    [[nodiscard]] int RowOffset() const; // Rows that show before it; -1 without a parent.

    void FillFromGroup(); // Loads the group and makes its rows.
    void SaveToGroup();

    // Adds a track at the end. Without `allowDuplicate` a path that is held already gives the first
    // SID that bears it, and nothing is added. Empty: refused.
    void AddRecord(String& sid, const MediaInfo& record, int allowDuplicate);
    void AddRecords(const std::vector<MediaInfo>& records); // In one batch, duplicates allowed.
    void GetRecord(const String& sid, MediaInfo& record) const;
    void GetRecords(std::vector<MediaInfo>& records) const; // Appends all, in order.
    [[nodiscard]] String GetPath(const String& sid) const;

    void ClearRows();
    void RemoveRow(const String& sid);
    void RemoveRows(const std::vector<String>& sids); // As RemoveRow for each, in one pass.
    void RemoveDuplicatesOf(const String& sid);       // All others of its path go.
    void BeginRename(const String& sid);
    void RenameRow(const String& sid, const String& name);
    void RefreshPath(const String& path);             // Builds the rows of that path anew.
    void OnLookedUp(const String& path, bool exists); // See CMediaTreeItem.
    void ReorderRows(const std::vector<String>& sids, const String& target);

    void PlayRow(const String& sid);          // Marks it as current and plays it.
    void MoveCurrent(String& path, int mode); // Moves the mark and gives the path it is on then.
    void BeginMoves(); // Until EndMoves the mark is not drawn; then where it ended.
    void EndMoves();
    void CurrentPath(String& path) const;
    [[nodiscard]] const String& GetCurrentSID() const { return current_; }
    [[nodiscard]] const String& GetLastAddedSID() const { return lastAdded_; }

    void BuildRow() override;
    int OnListEvent(ui::CSkinList* list, int context, int event, const String& text) override;
    bool OnEditEnd(const String& oldText, const String& newText) override;
    ui::IMenu* GetRowMenu(const ui::MenuDelegate& delegate) override;
    void OnRowCommand(ui::IMenu* entry) override;
    void OnRenameKey() override;
    void OnExpandChanged(ui::CSkinTree* tree, int row, bool expanded) override;
    int CompareFunc(ui::CSkinTreeItem* a, ui::CSkinTreeItem* b) override;
    int CanBeSelected() override { return 1; }
    int CanBeEdited() override { return 1; }

private:
    [[nodiscard]] CMediaTree& GetMediaTree() const;
    [[nodiscard]] IMediaResGroup* GetGroup() const;
    [[nodiscard]] IMediaResGroup* GetEditableGroup() const;
    [[nodiscard]] CMediaTreeItem* RowAt(int index) const;
    CMediaTreeItem& AppendRow(const String& sid);
    String AppendTrack(IMediaResGroup& group, const MediaInfo& record);
    void Mark(const String& sid, bool playing);
    void GetPicture(bool expanded, String& path, ui::PictureRect& source) const;

    BySid<CMediaTreeItem*> rowsBySid_; // Not owned.
    String lastAdded_;
    String current_;
    String markBeforeMoves_;
    int moves_ = 0;
};

} // namespace kivo::tunehive
