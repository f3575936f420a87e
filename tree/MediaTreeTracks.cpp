// What CMediaTree does with tracks: adding them, playing them, and work on one or on the selection.

#include "medialib/AddFolderThread.h"
#include "medialib/IMediaLibManager.h"
#include "mediares/GroupIds.h"
#include "player/PlayTurn.h"
#include "shell/base/TuneHiveEvent.h"
#include "shell/contracts/base/Beyond.h"
#include "shell/contracts/framework/Paths.h"
#include "shell/contracts/framework/Threads.h"
#include "tree/MediaTree.h"
#include "tree/MediaTreeCategory.h"
#include "tree/MediaTreeItem.h"

#include <map>
#include <memory>
#include <utility>

namespace kivo::tunehive {

namespace {

constexpr std::int32_t kStoredPath = 0;
constexpr std::int32_t kStoredName = 1;

SortedItems SortItems(const std::vector<String>& items)
{
    SortedItems sorted;
    for (const String& item : items) {
        const bool isFolder = IsBeyond() && !UrlIsW(item) && PathIsDirectoryW(item);
        (isFolder ? sorted.folders : sorted.files).push_back(item);
    }
    return sorted;
}

class SortedDrop final : public ITuneHive_AsyncCallbackParam {
public:
    SortedDrop(const String& target, const CStringArray& paths)
        : group(target)
        , items(SortItems(paths))
    {
    }
    ~SortedDrop() override = default;

    const String group;
    const SortedItems items;
};

class DropJob final : public IJob {
public:
    DropJob(const String& group,
            const CStringArray& paths,
            const AsyncCallback& done,
            LifeWatch life)
        : group_(group)
        , paths_(paths)
        , done_(done)
        , life_(std::move(life))
    {
    }

    bool RunSlice() override
    {
        PostCallback(done_, std::make_unique<SortedDrop>(group_, paths_).release(), life_);
        return false;
    }

private:
    String group_;
    CStringArray paths_;
    AsyncCallback done_;
    LifeWatch life_;
};

} // namespace

// NOLINTNEXTLINE(readability-make-member-function-const): it changes what the tree shows.
void CMediaTree::AddTrack(
    const String& group, const String& path, const String& name, int allowDuplicate, String& sid)
{
    sid.clear();
    if (CMediaTreeCategory* category = FindCategory(group)) {
        const MediaInfo record{
            {kStoredPath, path},
            {kStoredName, name}
        };
        category->AddRecord(sid, record, allowDuplicate);
    }
}

// NOLINTNEXTLINE(readability-make-member-function-const): it changes what the tree shows.
void CMediaTree::AddPaths(const String& group, const CStringArray& paths)
{
    CMediaTreeCategory* category = FindCategory(group);
    if (category == nullptr || paths.empty())
        return;
    std::vector<MediaInfo> records;
    records.reserve(paths.size());
    for (const String& path : paths) {
        records.push_back({
            {kStoredPath, path    },
            {kStoredName, String()}
        });
    }
    category->AddRecords(records);
}

// Whether a path is a folder only its disk knows, which may be slow or dead: the worker asks.
void CMediaTree::AddDroppedFiles(const String& group, const CStringArray& paths)
{
    IMediaLibManager* library = FindMediaLibManager();
    CWorker* worker = IsBeyond() && library != nullptr ? library->GetWorker() : nullptr;
    if (worker == nullptr)
        OpenSorted(SortItems(paths), group, /*playFirst=*/false);
    else
        worker->Post(
            JobPriority::RowOnScreen,
            std::make_unique<DropJob>(
                group, paths, AsyncCallback(this, &CMediaTree::OnDropSorted), life_.Watch()));
}

void CMediaTree::OnDropSorted(ITuneHive_AsyncCallbackParam* param)
{
    const auto* drop = static_cast<SortedDrop*>(param);
    OpenSorted(drop->items, drop->group, /*playFirst=*/false);
}

void CMediaTree::ImportFolder(const String& group, const String& folder)
{
    CAddFolderThread::Start(GetHandle(), group, folder);
    SetEmptyPage(emptyPage_); // It goes while music is on its way.
}

void CMediaTree::OpenItems(const std::vector<String>& items, const String& group, bool playFirst)
{
    OpenSorted(SortItems(items), group, playFirst);
}

void CMediaTree::OpenSorted(const SortedItems& items, const String& group, bool playFirst)
{
    const auto& [files, folders] = items;
    AddPaths(group, files);
    const CMediaTreeCategory* category = FindCategory(group);
    if (playFirst && !files.empty() && category != nullptr)
        PlayTrack(group, category->GetLastAddedSID());
    else if (playFirst && !folders.empty())
        pendingPlay_ = PendingPlay{group, GetPlayTurn()};
    for (const String& folder : folders)
        ImportFolder(group, folder);
}

// Playing.

void CMediaTree::PlayTrack(const String& group, const String& sid)
{
    CMediaTreeCategory* playing = FindPlaying();
    if (playing == nullptr)
        return;
    if (group == kPlayingGroup) {
        playing->PlayRow(sid);
        return;
    }
    const CMediaTreeCategory* source = FindCategory(group);
    if (source == nullptr)
        return;
    MediaInfo record;
    source->GetRecord(sid, record);
    String added;
    playing->AddRecord(added, record, /*allowDuplicate=*/1);
    if (!added.empty())
        playing->PlayRow(added);
}

void CMediaTree::PlayGroup(const String& group)
{
    CMediaTreeCategory* playing = FindPlaying();
    const CMediaTreeCategory* source = FindCategory(group);
    if (playing == nullptr || group == kPlayingGroup || source == nullptr)
        return;
    std::vector<MediaInfo> records;
    source->GetRecords(records);
    if (records.empty())
        return;
    playing->AddRecords(records);
    playing->PlayRow(String(playing->GetLastAddedSID()));
}

std::vector<CMediaTreeItem*> CMediaTree::GetSelectedTracks() const
{
    std::vector<CMediaTreeItem*> tracks;
    for (ui::CSkinListItem* row : GetAllSelectedItem()) {
        auto* treeRow = static_cast<ui::CSkinTreeItem*>(row);
        if (!treeRow->IsGroup() && treeRow->GetParentItem() != nullptr)
            tracks.push_back(static_cast<CMediaTreeItem*>(treeRow));
    }
    return tracks;
}

void CMediaTree::PlaySelection()
{
    CMediaTreeCategory* playing = FindPlaying();
    if (GetSelectedCount() == 0 || playing == nullptr)
        return;
    String first; // Of those that stand in "playing" already.
    std::vector<MediaInfo> records;
    for (const CMediaTreeItem* track : GetSelectedTracks()) {
        const String group = track->GetGroupID();
        if (group == kPlayingGroup) {
            if (first.empty())
                first = track->GetSID();
        } else if (const CMediaTreeCategory* source = FindCategory(group)) {
            MediaInfo record;
            source->GetRecord(track->GetSID(), record);
            records.push_back(std::move(record));
        }
    }
    if (!records.empty()) {
        playing->AddRecords(records);
        first = playing->GetLastAddedSID();
    }
    playing->PlayRow(first);
}

int CMediaTree::PlaySelectedElsewhere()
{
    const auto tracks = GetSelectedTracks();
    if (tracks.empty())
        return 0;
    PlayTrack(tracks.front()->GetGroupID(), String(tracks.front()->GetSID()));
    return 1;
}

// Single tracks.

// NOLINTNEXTLINE(readability-make-member-function-const): it changes what the tree shows.
void CMediaTree::DeleteTrack(const String& group, const String& sid)
{
    if (CMediaTreeCategory* category = FindCategory(group))
        category->RemoveRow(sid);
}

// NOLINTNEXTLINE(readability-make-member-function-const): it changes what the tree shows.
void CMediaTree::RenameTrack(const String& group, const String& sid, const String& name)
{
    if (CMediaTreeCategory* category = FindCategory(group))
        category->RenameRow(sid, name);
}

// NOLINTNEXTLINE(readability-make-member-function-const): it changes what the tree shows.
void CMediaTree::BeginRenameTrack(const String& group, const String& sid)
{
    if (CMediaTreeCategory* category = FindCategory(group))
        category->BeginRename(sid);
}

// NOLINTNEXTLINE(readability-make-member-function-const): it changes what the tree shows.
void CMediaTree::RemoveDuplicates(const String& group, const String& sid)
{
    if (CMediaTreeCategory* category = FindCategory(group))
        category->RemoveDuplicatesOf(sid);
}

// NOLINTNEXTLINE(readability-make-member-function-const): it changes what the tree shows.
void CMediaTree::CopyTrack(const String& source, const String& sid, const String& target)
{
    const CMediaTreeCategory* from = FindCategory(source);
    CMediaTreeCategory* to = FindCategory(target);
    if (source == target || from == nullptr || to == nullptr)
        return;
    MediaInfo record;
    from->GetRecord(sid, record);
    String added;
    to->AddRecord(added, record, /*allowDuplicate=*/1);
}

// NOLINTNEXTLINE(readability-make-member-function-const): it changes what the tree shows.
void CMediaTree::CopyGroupTracks(const String& source, const String& target)
{
    const CMediaTreeCategory* from = FindCategory(source);
    CMediaTreeCategory* to = FindCategory(target);
    if (from == nullptr || to == nullptr)
        return;
    std::vector<MediaInfo> records;
    from->GetRecords(records);
    to->AddRecords(records);
}

// The selection. Work is collected per group, so that each group's gaps close in one pass.

void CMediaTree::DeleteSelectedTracks()
{
    std::map<String, std::vector<String>> sids;
    for (const CMediaTreeItem* track : GetSelectedTracks())
        sids[track->GetGroupID()].push_back(track->GetSID());
    BeginUpdate();
    for (const auto& [group, tracks] : sids) {
        if (CMediaTreeCategory* category = FindCategory(group))
            category->RemoveRows(tracks);
    }
    EndUpdate(1);
}

void CMediaTree::DeleteSelectedCategory()
{
    const auto selected = GetAllSelectedItem();
    if (selected.size() == 1 && static_cast<ui::CSkinTreeItem*>(selected[0])->IsGroup())
        DeleteCategory(String(selected[0]->GetID()));
}

void CMediaTree::RemoveSelectedDuplicates()
{
    const auto tracks = GetSelectedTracks();
    if (GetSelectedCount() == 1 && tracks.size() == 1)
        RemoveDuplicates(tracks[0]->GetGroupID(), String(tracks[0]->GetSID()));
}

void CMediaTree::CopySelectionTo(const String& group)
{
    BeginUpdate();
    for (const CMediaTreeItem* track : GetSelectedTracks())
        CopyTrack(track->GetGroupID(), String(track->GetSID()), group);
    EndUpdate(1);
}

void CMediaTree::MoveSelectionTo(const String& group)
{
    if (FindCategory(group) == nullptr)
        return; // Nothing would arrive there.
    BeginUpdate();
    std::map<String, std::vector<String>> moved;
    for (const CMediaTreeItem* track : GetSelectedTracks()) {
        const String source = track->GetGroupID();
        if (source == group)
            continue;
        CopyTrack(source, String(track->GetSID()), group);
        moved[source].push_back(track->GetSID());
    }
    for (const auto& [source, tracks] : moved) {
        if (CMediaTreeCategory* category = FindCategory(source))
            category->RemoveRows(tracks);
    }
    EndUpdate(1);
}

} // namespace kivo::tunehive
