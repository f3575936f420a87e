// What CMediaTree does with tracks: adding them, playing them, and work on one or on the selection.

#include "medialib/AddFolderThread.h"
#include "mediares/GroupIds.h"
#include "player/PlayTurn.h"
#include "shell/contracts/base/Beyond.h"
#include "shell/contracts/framework/Paths.h"
#include "tree/MediaTree.h"
#include "tree/MediaTreeCategory.h"
#include "tree/MediaTreeItem.h"

#include <map>
#include <utility>

namespace kivo::tunehive {

namespace {

constexpr std::int32_t kStoredPath = 0;
constexpr std::int32_t kStoredName = 1;

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

void CMediaTree::AddDroppedFiles(const String& group, const CStringArray& paths)
{
    OpenItems(paths, group, /*playFirst=*/false);
}

void CMediaTree::ImportFolder(const String& group, const String& folder)
{
    CAddFolderThread::Start(GetHandle(), group, folder);
    SetEmptyPage(emptyPage_); // It goes while music is on its way.
}

void CMediaTree::OpenItems(const std::vector<String>& items, const String& group, bool playFirst)
{
    CStringArray files;
    std::vector<String> folders;
    for (const String& item : items) {
        const bool isFolder = IsBeyond() && !UrlIsW(item) && PathIsDirectoryW(item);
        if (isFolder)
            folders.push_back(item);
        else
            files.push_back(item);
    }
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
