#include "tree/MediaTreeCategory.h"

#include "mediares/IMediaResGroup.h"
#include "mediares/IMediaResManager.h"
#include "player/IMediaPlayer.h"
#include "player/MediaPlayerManager.h"
#include "player/PlayerPanel.h"
#include "tree/MediaTree.h"
#include "tree/MediaTreeItem.h"
#include "tree/TreeAdapter.h"

#include <algorithm>
#include <set>
#include <utility>

namespace kivo::tunehive {

namespace {

constexpr std::int32_t kStoredPath = 0;
constexpr std::int32_t kStoredName = 1;
constexpr int kTrackNameLimit = 50;

// One bracket around a batch of row changes.
class UpdateBracket {
public:
    explicit UpdateBracket(ui::CSkinList& list)
        : list_(list)
    {
        list_.BeginUpdate();
    }
    UpdateBracket(const UpdateBracket&) = delete;
    UpdateBracket& operator=(const UpdateBracket&) = delete;
    ~UpdateBracket() { list_.EndUpdate(1); }

private:
    ui::CSkinList& list_;
};

} // namespace

CMediaTreeCategory::CMediaTreeCategory(CMediaTree* tree, const String& id)
    : CSkinTreeItem(tree, id)
{
    SetGroup(true);
}

CMediaTree& CMediaTreeCategory::GetMediaTree() const
{
    return *static_cast<CMediaTree*>(GetTree());
}

IMediaResGroup* CMediaTreeCategory::GetGroup() const
{
    IMediaResManager* manager = FindMediaResManager();
    return manager != nullptr ? manager->GetGroup(GetID()) : nullptr;
}

IMediaResGroup* CMediaTreeCategory::GetEditableGroup() const
{
    IMediaResGroup* group = GetGroup();
    return group != nullptr && group->IsEditable() != 0 ? group : nullptr;
}

CMediaTreeItem* CMediaTreeCategory::RowAt(int index) const
{
    return static_cast<CMediaTreeItem*>(GetChild(index));
}

CMediaTreeItem* CMediaTreeCategory::FindRow(const String& sid) const
{
    CMediaTreeItem* const* const found = rowsBySid_.Find(sid);
    return found != nullptr ? *found : nullptr;
}

CMediaTreeItem* CMediaTreeCategory::PickRow(const String& sid, int mode) const
{
    const int count = GetChildCount();
    if (count == 0)
        return nullptr;
    const CMediaTreeItem* row = FindRow(sid);
    const bool isRandom = mode == static_cast<int>(RowMode::Random);
    if (row == nullptr)
        return RowAt(isRandom ? GetMediaTree().PickNumber(count) : 0);
    const int index = IndexOf(row);
    switch (static_cast<RowMode>(mode)) {
    case RowMode::Same: return RowAt(index);
    case RowMode::Next: return RowAt(index + 1);
    case RowMode::Previous: return RowAt(index - 1);
    case RowMode::NextWrap: return RowAt((index + 1) % count);
    case RowMode::PreviousWrap: return RowAt((count + index - 1) % count);
    case RowMode::Random: return RowAt((index + GetMediaTree().PickNumber(2 * count)) % count);
    default: return nullptr;
    }
}

int CMediaTreeCategory::RowOffset() const
{
    const CSkinTreeItem* parent = GetParentItem();
    if (parent == nullptr)
        return -1;
    int offset = 0;
    for (int i = 0; i < parent->GetChildCount(); ++i) {
        const CSkinTreeItem* sibling = parent->GetChild(i);
        if (sibling == this)
            break;
        offset += 1 + (sibling->IsExpanded() ? sibling->GetChildCount() : 0);
    }
    return offset;
}

CMediaTreeItem& CMediaTreeCategory::AppendRow(const String& sid)
{
    auto* row = new CMediaTreeItem(&GetMediaTree(), sid);
    AddTreeNode(row);
    rowsBySid_.Add(sid, row);
    row->BuildRow();
    return *row;
}

void CMediaTreeCategory::FillFromGroup()
{
    IMediaResGroup* group = GetGroup();
    if (group == nullptr)
        return;
    std::vector<String> sids;
    group->Load(sids);
    for (const String& sid : sids)
        AppendRow(sid);
}

void CMediaTreeCategory::SaveToGroup()
{
    IMediaResGroup* group = GetGroup();
    if (group == nullptr)
        return;
    std::vector<String> sids;
    sids.reserve(static_cast<std::size_t>(GetChildCount()));
    for (int i = 0; i < GetChildCount(); ++i)
        sids.push_back(GetChild(i)->GetID());
    group->Save(sids);
}

// Adds the track and its row. Empty: the group refused it.
String CMediaTreeCategory::AppendTrack(IMediaResGroup& group, const MediaInfo& record)
{
    String sid = group.AddItem(record);
    if (sid.empty())
        return sid;
    CMediaTreeItem& row = AppendRow(sid);
    if (IsExpanded())
        GetMediaTree().InsertListItem(&row, RowOffset() + GetChildCount());
    GetMediaTree().AskInBackground(GetInfoText(record, kStoredPath));
    return sid;
}

void CMediaTreeCategory::AddRecord(String& sid, const MediaInfo& record, int allowDuplicate)
{
    sid.clear();
    IMediaResGroup* group = GetEditableGroup();
    if (group == nullptr)
        return;
    if (allowDuplicate == 0) {
        std::set<String> held;
        group->FindItems(GetInfoText(record, kStoredPath), held);
        if (!held.empty()) {
            sid = *held.begin();
            return;
        }
    }
    const UpdateBracket bracket(GetMediaTree());
    sid = AppendTrack(*group, record);
    if (!sid.empty())
        lastAdded_ = sid;
}

void CMediaTreeCategory::AddRecords(const std::vector<MediaInfo>& records)
{
    IMediaResGroup* group = GetEditableGroup();
    if (group == nullptr)
        return;
    const UpdateBracket bracket(GetMediaTree());
    bool isFirst = true;
    for (const MediaInfo& record : records) {
        const String sid = AppendTrack(*group, record);
        if (isFirst && !sid.empty()) {
            lastAdded_ = sid;
            isFirst = false;
        }
    }
}

void CMediaTreeCategory::GetRecord(const String& sid, MediaInfo& record) const
{
    if (IMediaResGroup* group = GetGroup())
        group->GetItem(sid, record);
}

void CMediaTreeCategory::GetRecords(std::vector<MediaInfo>& records) const
{
    IMediaResGroup* group = GetGroup();
    if (group == nullptr)
        return;
    for (int i = 0; i < GetChildCount(); ++i) {
        MediaInfo record;
        group->GetItem(GetChild(i)->GetID(), record);
        records.push_back(std::move(record));
    }
}

String CMediaTreeCategory::GetPath(const String& sid) const
{
    MediaInfo record;
    GetRecord(sid, record);
    const auto found = record.find(kStoredPath);
    return found != record.end() ? std::move(found->second) : String();
}

void CMediaTreeCategory::ClearRows()
{
    IMediaResGroup* group = GetEditableGroup();
    if (group == nullptr)
        return;
    group->Clear();
    CMediaTree& tree = GetMediaTree();
    const UpdateBracket bracket(tree);
    rowsBySid_.Clear();
    for (int i = 0; i < GetChildCount(); ++i) {
        CMediaTreeItem* row = RowAt(i);
        tree.RemoveItem(tree.LocateRow(row)); // A place outside, as of a folded group, is ignored.
        row->Release();
    }
    GetChildren().clear();
    ChildrenChanged();
}

void CMediaTreeCategory::RemoveRow(const String& sid)
{
    RemoveRows({sid});
}

void CMediaTreeCategory::RemoveRows(const std::vector<String>& sids)
{
    IMediaResGroup* group = GetEditableGroup();
    if (group == nullptr)
        return;
    CMediaTree& tree = GetMediaTree();
    std::vector<CSkinTreeItem*> rows;
    for (const String& sid : sids) {
        group->RemoveItem(sid);
        CMediaTreeItem* row = FindRow(sid);
        if (row == nullptr)
            continue;
        rowsBySid_.Remove(sid);
        rows.push_back(row);
        if (sid == current_)
            current_.clear();
    }
    if (rows.empty())
        return;
    const UpdateBracket bracket(tree);
    tree.RemoveTreeItems(rows);
}

void CMediaTreeCategory::RemoveDuplicatesOf(const String& sid)
{
    IMediaResGroup* group = GetEditableGroup();
    if (group == nullptr)
        return;
    std::set<String> held;
    group->FindItems(GetPath(sid), held);
    held.erase(sid);
    RemoveRows({held.begin(), held.end()});
}

void CMediaTreeCategory::BeginRename(const String& sid)
{
    const int place = GetMediaTree().LocateRow(PickRow(sid, static_cast<int>(RowMode::Same)));
    if (place == -1)
        return;
    GetMediaTree().SetEditLimitText(kTrackNameLimit);
    GetMediaTree().Edit(place, u"text", 1);
}

void CMediaTreeCategory::RenameRow(const String& sid, const String& name)
{
    IMediaResGroup* group = GetGroup();
    if (group == nullptr)
        return;
    MediaInfo record;
    if (group->GetItem(sid, record) == 0)
        return;
    record[kStoredName] = name;
    group->SetItem(sid, record);
    if (CMediaTreeItem* row = PickRow(sid, static_cast<int>(RowMode::Same))) {
        const UpdateBracket bracket(GetMediaTree());
        row->BuildRow();
    }
}

void CMediaTreeCategory::RefreshPath(const String& path)
{
    IMediaResGroup* group = GetGroup();
    if (group == nullptr)
        return;
    std::set<String> held;
    group->FindItems(path, held);
    if (held.empty())
        return;
    const UpdateBracket bracket(GetMediaTree());
    for (const String& sid : held) {
        if (CMediaTreeItem* row = FindRow(sid))
            row->BuildRow();
    }
}

void CMediaTreeCategory::OnLookedUp(const String& path, bool exists)
{
    IMediaResGroup* group = GetGroup();
    if (group == nullptr)
        return;
    std::set<String> held;
    group->FindItems(path, held);
    for (const String& sid : held) {
        if (CMediaTreeItem* row = FindRow(sid))
            row->OnLookedUp(exists);
    }
}

void CMediaTreeCategory::ReorderRows(const std::vector<String>& sids, const String& target)
{
    const std::set<String> moved(sids.begin(), sids.end());
    const CMediaTreeItem* targetRow = FindRow(target);
    std::set<int> selection;
    for (const String& sid : moved) {
        const CMediaTreeItem* row = FindRow(sid);
        if (row == nullptr)
            return; // One that has gone cancels the whole move.
        selection.insert(IndexOf(row));
    }
    if (targetRow == nullptr)
        return;
    const int targetIndex = IndexOf(targetRow);
    const UpdateBracket bracket(GetMediaTree());
    CTreeAdapter adapter(&GetChildren()); // The rows on screen are derived from the child array.
    MoveBlock(adapter, selection, targetIndex);
    ChildrenChanged();
}

// NOLINTNEXTLINE(readability-make-member-function-const): it changes a row.
void CMediaTreeCategory::Mark(const String& sid, bool playing)
{
    if (moves_ > 0)
        return;
    if (CMediaTreeItem* row = PickRow(sid, static_cast<int>(RowMode::Same)))
        row->SetPlaying(playing);
}

void CMediaTreeCategory::PlayRow(const String& sid)
{
    {
        const UpdateBracket bracket(GetMediaTree());
        Mark(current_, /*playing=*/false);
        current_ = sid;
        Mark(current_, /*playing=*/true);
    }
    const String path = GetPath(current_);
    if (path.empty())
        return;
    if (CPlayerPanel* panel = CPlayerPanel::GetInstance()) {
        panel->StopPlayback(0);
        panel->ClearPausedFlag();
    }
    auto* manager = CMediaPlayerManager::FindInstance();
    if (IMediaPlayer* player = manager != nullptr ? manager->GetPlayer(path) : nullptr)
        player->SetURL(path, /*autoplay=*/1);
}

void CMediaTreeCategory::MoveCurrent(String& path, int mode)
{
    {
        const UpdateBracket bracket(GetMediaTree());
        Mark(current_, /*playing=*/false);
        const CMediaTreeItem* row = PickRow(current_, mode);
        current_ = row != nullptr ? row->GetSID() : String();
        if (row != nullptr)
            Mark(current_, /*playing=*/true);
    }
    path = GetPath(current_);
}

void CMediaTreeCategory::BeginMoves()
{
    if (moves_++ == 0)
        markBeforeMoves_ = current_;
}

void CMediaTreeCategory::EndMoves()
{
    if (--moves_ > 0 || markBeforeMoves_ == current_)
        return;
    const UpdateBracket bracket(GetMediaTree());
    // A mark whose track has gone stood on the first row.
    if (CMediaTreeItem* row = PickRow(markBeforeMoves_, static_cast<int>(RowMode::Same)))
        row->SetPlaying(/*playing=*/false);
    if (CMediaTreeItem* row = FindRow(current_))
        row->SetPlaying(/*playing=*/true);
}

void CMediaTreeCategory::CurrentPath(String& path) const
{
    path = GetPath(current_);
}

} // namespace kivo::tunehive
