// What the user does to CMediaTree: menus, clicks, drags and drops.

#include "medialib/AddFolderThread.h"
#include "mediares/GroupIds.h"
#include "shell/contracts/base/Beyond.h"
#include "tree/DragText.h"
#include "tree/ITrackPickers.h"
#include "tree/MediaTree.h"
#include "tree/MediaTreeCategory.h"
#include "tree/MediaTreeItem.h"
#include "tree/TreeMenus.h"

#include <set>

namespace kivo::tunehive {

void CMediaTree::DoMenuCommand(ui::IMenu* entry)
{
    const int command = entry->GetID();
    if (command == kCommandNewGroup || command == kCommandAddGroup) {
        NewGroup();
        return;
    }
    const bool isSeveral = GetSelectedCount() > 1;
    if (isSeveral && command == kCommandPlay) {
        PlaySelection();
        return;
    }
    if (isSeveral) {
        if (const String copied = GroupFromCommand(command, kCommandCopyTo); !copied.empty()) {
            CopySelectionTo(copied);
            return;
        }
        if (const String moved = GroupFromCommand(command, kCommandMoveTo); !moved.empty()) {
            MoveSelectionTo(moved);
            return;
        }
        if (command == kCommandDeleteTrack) {
            DeleteSelectedTracks();
            return;
        }
    }
    if (command >= kCommandAddFiles && command <= kCommandAddURL) {
        const auto selected = GetAllSelectedItem();
        AddByCommand(selected.empty() ? String(kMineGroup) : selected[0]->GetID(), command);
        return;
    }
    CSkinTree::DoMenuCommand(entry);
}

void CMediaTree::AddByCommand(const String& group, int command)
{
    if (pickers_ == nullptr)
        return;
    const LifeWatch life = Watch(); // The page may close below a dialog.
    String target = group;          // A copy: the row it came from may go meanwhile.
    String sid;
    if (command == kCommandAddFiles) {
        CStringArray paths;
        if (pickers_->PickMediaFiles(this, paths) == 0 || !life.IsAlive())
            return;
        BeginUpdate();
        for (const String& path : paths)
            AddTrack(target, path, String(), /*allowDuplicate=*/1, sid);
        EndUpdate(1);
    } else if (command == kCommandAddFolder) {
        String folder;
        if (pickers_->PickFolder(this, folder) != 0 && life.IsAlive())
            ImportFolder(target, folder);
    } else if (command == kCommandAddURL) {
        String url;
        String name;
        if (pickers_->ShowAddURLForm(this, target, url, name) != 0 && life.IsAlive())
            AddTrack(target, url, name, /*allowDuplicate=*/1, sid);
    }
}

ui::IMenu* CMediaTree::GetMultiSelectMenu()
{
    return MakeMultiSelectMenu(GetMenuDelegate());
}

ui::IMenu* CMediaTree::GetBlankAreaMenu()
{
    return MakeAddMenu(GetMenuDelegate());
}

void CMediaTree::OnLButtonDown(unsigned flags, Point point)
{
    if (!SwallowsClick(HitTest(point)))
        CSkinTree::OnLButtonDown(flags, point);
}

// Extending a selection can't mix group rows and track rows.
bool CMediaTree::SwallowsClick(const ui::CSkinListItem* hit) const
{
    constexpr int kShiftHeld = 2;
    const auto* clicked = static_cast<const ui::CSkinTreeItem*>(hit);
    const auto* anchor = static_cast<const ui::CSkinTreeItem*>(GetAnchorRow());
    if (clicked == nullptr || GetCurKeyState() != kShiftHeld || anchor == nullptr ||
        anchor->GetParentItem() == nullptr || clicked->GetParentItem() == nullptr) {
        return false;
    }
    if (anchor->IsGroup() || clicked->IsGroup())
        return true;
    if (!clicked->IsMultiSelectable())
        return GetSelectedCount() > 0 && !clicked->IsSelected();
    return IsSelectedCannotMultiSelItem();
}

// Drags. Only tracks of "playing" can be dragged, and only their own order changes by it.

int CMediaTree::GetDragText(String& text)
{
    std::vector<String> sids;
    for (ui::CSkinListItem* row : GetAllSelectedItem()) {
        const auto* treeRow = static_cast<ui::CSkinTreeItem*>(row);
        const ui::CSkinTreeItem* parent = treeRow->GetParentItem();
        if (treeRow->IsGroup() || parent == nullptr || parent->GetID() != kPlayingGroup)
            return 0;
        sids.push_back(treeRow->GetID());
    }
    text = MakeDragText(sids);
    ownDrag_ = true;
    return 1;
}

void CMediaTree::OnDragFinished()
{
    if (IsBeyond())
        ownDrag_ = false; // However it ended; otherwise files would be refused until the next drop.
}

bool CMediaTree::RefusesDrag(ui::CSkinTreeItem& row, const String& group, bool isGroupRow)
{
    const bool isOwnRefused = isGroupRow || group != kPlayingGroup;
    if (group == kHotGroup || (ownDrag_ && isOwnRefused)) {
        row.SetAcceptsDrop(0);
        return true;
    }
    if (!IsDragInProgress() || row.IsSelected())
        return false;
    // The selection follows the pointer.
    ClearAllSelected();
    row.SetSelected(1);
    Refresh(0);
    row.SetAcceptsDrop(1);
    return true;
}

void CMediaTree::TakeDroppedFiles(const String& group)
{
    const CStringArray paths = GetDroppedFiles();
    if (!paths.empty())
        AddDroppedFiles(group, paths);
}

bool CMediaTree::TakeDroppedText(const String& group, const String& sid, const String& text)
{
    ownDrag_ = false;
    if (!IsDragInProgress() || text.empty())
        return false;
    const std::vector<String> sids = ReadDragText(text);
    CMediaTreeCategory* playing = FindPlaying();
    if (sids.empty() || sid.empty() || group != kPlayingGroup || playing == nullptr)
        return false;
    playing->ReorderRows(sids, sid);
    // Hovering has selected the target; what was moved is what the user goes on with.
    BeginUpdate();
    ClearAllSelected();
    for (const String& moved : sids) {
        if (CMediaTreeItem* row = playing->FindRow(moved))
            row->SetSelected(1);
    }
    EndUpdate(1);
    return true;
}

int CMediaTree::OnBlankDragOver()
{
    return IsBeyond() && !ownDrag_ ? 1 : 0;
}

void CMediaTree::OnBlankDrop(const String& /*text*/)
{
    if (IsBeyond())
        TakeDroppedFiles(String(kMineGroup));
}

} // namespace kivo::tunehive
