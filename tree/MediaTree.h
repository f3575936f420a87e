#pragma once

#include "medialib/MediaInfo.h"
#include "player/IPlayingList.h"
#include "shell/contracts/base/LifeToken.h"
#include "shell/contracts/ui/SkinTree.h"
#include "tree/RowLookup.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <random>
#include <vector>

namespace kivo::tunehive {

class CEmptyPage;
class CMediaTreeCategory;
class CMediaTreeItem;
class CMediaTreeRoot;
class ITrackPickers;
class ITuneHive_AsyncCallbackParam;

// What is to be added, by what it is.
struct SortedItems {
    CStringArray files; // And addresses.
    std::vector<String> folders;
};

// The tree of groups and tracks: the only view of the groups, and the keeper of the order of their
// tracks. A track is addressed by group id and SID. Every change goes through it or through a row,
// which change the group first and the rows right after. Operations on a group that has no row do
// nothing. Thread: user interface.
class CMediaTree : public ui::CSkinTree, public IPlayingList {
public:
    explicit CMediaTree(ITrackPickers* pickers); // Borrowed; may be null: then nothing is picked.
    ~CMediaTree() override;

    virtual void LoadTree(); // Makes root, groups and tracks; "playing" unfolds if it holds any.
    LPARAM WindowProc(unsigned message, WPARAM wParam, LPARAM lParam) override;

    // On "playing". Empty or 0 without it.
    void GetCurrentURL(String& url) override;
    void GetNextURL(String& url, int wrap) override;
    void GetPrevURL(String& url, int wrap) override;
    void GetRandomURL(String& url) override;
    [[nodiscard]] int GetPlayingCount() override;
    int PlaySelected() override;
    void BeginMoves() override;
    void EndMoves() override;
    int GetCurrentTrackInfo(MediaInfo& record); // 1: "playing" is there.

    [[nodiscard]] CMediaTreeCategory* FindCategory(const String& group) const; // Null: no row.
    void SyncCategories(); // Brings the group rows in line with the manager's groups.
    void ExpandGroup(const String& group);

    // Adding. `sid` becomes that of the track; empty: it was refused.
    void AddTrack(const String& group,
                  const String& path,
                  const String& name,
                  int allowDuplicate,
                  String& sid);
    void AddPaths(const String& group, const CStringArray& paths);
    // Folders are imported. All comes a little later, when it is known what is one.
    void AddDroppedFiles(const String& group, const CStringArray& paths);
    void AddByCommand(const String& group, int command); // Asks the user: files, folder, address.

    // Adds files, folders and addresses; with `playFirst` the first of them plays: of folders
    // alone, the first track of the first import, unless something else was started meanwhile.
    void OpenItems(const std::vector<String>& items, const String& group, bool playFirst);

    void PlayTrack(const String& group, const String& sid); // Through "playing".
    void PlayGroup(const String& group);
    void PlaySelection();        // Several selected rows.
    int PlaySelectedElsewhere(); // The first selected track of any group. 0: there is none.

    void NewGroup();                       // And opens its name for editing.
    void SaveAsGroup(const String& group); // "playing" alone.
    void RenameCategory(const String& group, const String& name);
    void BeginRenameCategory(const String& group);
    void DeleteCategory(const String& group); // After a question.
    void ClearCategory(const String& group);

    void DeleteTrack(const String& group, const String& sid);
    void RenameTrack(const String& group, const String& sid, const String& name);
    void BeginRenameTrack(const String& group, const String& sid);
    void RemoveDuplicates(const String& group, const String& sid);
    void CopyTrack(const String& source, const String& sid, const String& target);
    void CopyGroupTracks(const String& source, const String& target);

    void DeleteSelectedTracks();
    void DeleteSelectedCategory();
    void RemoveSelectedDuplicates();
    void CopySelectionTo(const String& group);
    void MoveSelectionTo(const String& group);

    void SaveAllGroups(); // The only way in which changes reach the group files.
    void OnMediaInfoUpdated(ITuneHive_AsyncCallbackParam* param); // A MediaLibUpdateParam.

    void DoMenuCommand(ui::IMenu* entry) override;
    ui::IMenu* GetMultiSelectMenu() override;
    ui::IMenu* GetBlankAreaMenu() override;

    void OnLButtonDown(unsigned flags, Point point) override; // A selection keeps to one kind.
    int GetDragText(String& text) override;
    int OnBlankDragOver() override;
    void OnBlankDrop(const String& text) override;
    void OnDragFinished() override;

    // Owned by the tree as one of its controls; follows its rows. Null: none.
    void SetEmptyPage(CEmptyPage* page);

    // Hears when a first row is selected (true) and when none is any more (false).
    void SetSelectionWatch(const Delegate<bool>& watch, const LifeWatch& life);

    // For the rows: what a drop on them does.
    void TakeDroppedFiles(const String& group);
    [[nodiscard]] bool TakeDroppedText(const String& group, const String& sid, const String& text);
    // True: the drag over the row has been answered.
    [[nodiscard]] bool RefusesDrag(ui::CSkinTreeItem& row, const String& group, bool isGroupRow);
    [[nodiscard]] bool IsOwnDrag() const { return ownDrag_; }

    // For the rows: what is known of a path without touching a file. False: the library is still
    // being loaded; `info` holds a title in any case.
    bool GetKnownInfo(const String& path, MediaInfo& info) const;
    void AskForFile(const String& path);      // A row on screen wants to know of the file.
    void AskInBackground(const String& path); // Nothing unless rows fill in behind.

    // Below `count`, which is above 0. A test passes its own chance.
    [[nodiscard]] int PickNumber(int count);
    void SetChance(std::function<std::uint32_t()> chance) { chance_ = std::move(chance); }

protected:
    void OnSync() override;
    void OnSelectedSome(bool some) override;

private:
    struct PendingPlay {
        String group;
        std::uint64_t turn; // Of the player when it was asked for.
    };

    [[nodiscard]] CMediaTreeCategory* CategoryAt(int index) const;
    [[nodiscard]] int CountCategories() const;
    [[nodiscard]] CMediaTreeCategory* FindPlaying() const;
    [[nodiscard]] std::vector<CMediaTreeItem*> GetSelectedTracks() const;
    void AddCategory(const String& group);
    void MoveCurrentOfPlaying(String& url, int mode);
    void OpenSorted(const SortedItems& items, const String& group, bool playFirst);
    void OnDropSorted(ITuneHive_AsyncCallbackParam* param);
    void OnFolderImported(WPARAM wParam, LPARAM lParam);
    void OnLookedUp(const String& path, bool exists);
    void OnLibraryLoaded(ITuneHive_AsyncCallbackParam* param);
    [[nodiscard]] bool SwallowsClick(const ui::CSkinListItem* hit) const;
    String CreateSyncedGroup();
    void ImportFolder(const String& group, const String& folder);

    CEmptyPage* emptyPage_ = nullptr;
    Delegate<bool> selectionWatch_;
    LifeWatch selectionWatchLife_;
    CMediaTreeRoot* root_ = nullptr; // The toolkit's tree frees it.
    bool ownDrag_ = false;           // From the start of a drag in this tree until it has ended.
    ITrackPickers* pickers_;
    std::optional<PendingPlay> pendingPlay_;
    std::minstd_rand random_;
    std::function<std::uint32_t()> chance_;
    RowLookup lookup_;
    LifeToken life_;
};

} // namespace kivo::tunehive
