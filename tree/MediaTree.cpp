#include "tree/MediaTree.h"

#include "medialib/AddFolderThread.h"
#include "medialib/IMediaLibManager.h"
#include "medialib/MediaLibUpdateParam.h"
#include "mediares/GroupIds.h"
#include "mediares/IMediaResGroup.h"
#include "mediares/IMediaResManager.h"
#include "player/PlayTurn.h"
#include "shell/contracts/base/Beyond.h"
#include "shell/contracts/common/Language.h"
#include "shell/contracts/framework/Paths.h"
#include "shell/contracts/host/KivoApi.h"
#include "tree/EmptyPage.h"
#include "tree/MediaTreeCategory.h"
#include "tree/MediaTreeItem.h"
#include "tree/MediaTreeRoot.h"

#include <chrono>
#include <set>

namespace kivo::tunehive {

namespace {

constexpr int kGroupNameLimit = 20;
constexpr int kTooltipWidth = 300;

std::uint32_t SeedFromTime()
{
    return static_cast<std::uint32_t>(std::chrono::system_clock::now().time_since_epoch().count());
}

} // namespace

CMediaTree::CMediaTree(ITrackPickers* pickers)
    : pickers_(pickers)
    , random_(SeedFromTime())
    , chance_([this] { return static_cast<std::uint32_t>(random_()); })
    , lookup_([this](const String& path, bool exists) { OnLookedUp(path, exists); })
{
    IMediaLibManager* library = FindMediaLibManager();
    if (library == nullptr)
        return;
    library->AddListener(MediaLibListener(this, &CMediaTree::OnMediaInfoUpdated), life_.Watch());
    library->CallWhenLoaded(MediaLibListener(this, &CMediaTree::OnLibraryLoaded), life_.Watch());
}

CMediaTree::~CMediaTree()
{
    if (IMediaLibManager* library = FindMediaLibManager())
        library->RemoveListener(MediaLibListener(this, &CMediaTree::OnMediaInfoUpdated));
    _KivoAPI_Revoke(this);
}

int CMediaTree::PickNumber(int count)
{
    return static_cast<int>(chance_() % static_cast<std::uint32_t>(count));
}

CMediaTreeCategory* CMediaTree::CategoryAt(int index) const
{
    return root_ != nullptr ? static_cast<CMediaTreeCategory*>(root_->GetChild(index)) : nullptr;
}

int CMediaTree::CountCategories() const
{
    return root_ != nullptr ? root_->GetChildCount() : 0;
}

CMediaTreeCategory* CMediaTree::FindCategory(const String& group) const
{
    for (int i = 0; i < CountCategories(); ++i) {
        if (CategoryAt(i)->GetID() == group)
            return CategoryAt(i);
    }
    return nullptr;
}

CMediaTreeCategory* CMediaTree::FindPlaying() const
{
    return FindCategory(String(kPlayingGroup));
}

void CMediaTree::LoadTree()
{
    root_ = new CMediaTreeRoot(this);
    root_->BuildRow();
    AppendTree(root_, /*show=*/false);
    SyncCategories();
    for (int i = 0; i < CountCategories(); ++i) {
        const CMediaTreeCategory* category = CategoryAt(i);
        if (category->GetID() == kPlayingGroup && category->GetChildCount() > 0)
            ExpandGroup(category->GetID());
    }
    SetTooltipMaxWidth(kTooltipWidth);
}

void CMediaTree::SyncCategories()
{
    std::set<String> ids;
    if (IMediaResManager* manager = FindMediaResManager())
        manager->GetGroupIDs(ids);
    std::vector<CMediaTreeCategory*> gone;
    for (int i = 0; i < CountCategories(); ++i) {
        if (ids.erase(CategoryAt(i)->GetID()) == 0)
            gone.push_back(CategoryAt(i));
    }
    BeginUpdate();
    for (CMediaTreeCategory* category : gone)
        RemoveTreeItem(category);
    for (const String& id : ids)
        AddCategory(id);
    EndUpdate(1);
}

void CMediaTree::AddCategory(const String& group)
{
    auto* category = new CMediaTreeCategory(this, group);
    category->FillFromGroup();
    root_->AddTreeNode(category);
    category->BuildRow();
    category->Sort(this, /*recursive=*/false);
}

void CMediaTree::ExpandGroup(const String& group)
{
    CMediaTreeCategory* category = FindCategory(group);
    if (category != nullptr && !category->IsExpanded())
        category->Expand(this, LocateRow(category), /*expanded=*/true);
}

LPARAM CMediaTree::WindowProc(unsigned message, WPARAM wParam, LPARAM lParam)
{
    if (message == kFolderImportMessage) {
        OnFolderImported(wParam, lParam);
        wParam = 0; // What it carried is freed.
        lParam = 0;
    }
    return CSkinTree::WindowProc(message, wParam, lParam);
}

void CMediaTree::SetEmptyPage(CEmptyPage* page)
{
    emptyPage_ = page;
    if (page != nullptr)
        page->Follow();
}

void CMediaTree::OnSync()
{
    CSkinTree::OnSync();
    SetEmptyPage(emptyPage_);
}

void CMediaTree::SetSelectionWatch(const Delegate<bool>& watch, const LifeWatch& life)
{
    selectionWatch_ = watch;
    selectionWatchLife_ = life;
}

void CMediaTree::OnSelectedSome(bool some)
{
    if (selectionWatchLife_.IsAlive())
        selectionWatch_(some);
}

void CMediaTree::OnFolderImported(WPARAM wParam, LPARAM lParam)
{
    const FolderImport import = TakeFolderImport(wParam, lParam);
    AddPaths(import.groupId, *import.paths);
    SetEmptyPage(emptyPage_); // An import that brought nothing changes no row.
    if (!pendingPlay_ || pendingPlay_->group != import.groupId)
        return;
    const CMediaTreeCategory* category = FindCategory(import.groupId);
    const bool isOvertaken = pendingPlay_->turn != GetPlayTurn();
    const bool isPlayable = !import.paths->empty() && category != nullptr;
    if (isOvertaken || isPlayable || CAddFolderThread::GetRunningCount() == 0)
        pendingPlay_.reset();
    if (!isOvertaken && isPlayable)
        PlayTrack(import.groupId, category->GetLastAddedSID());
}

void CMediaTree::OnMediaInfoUpdated(ITuneHive_AsyncCallbackParam* param)
{
    const String& path = static_cast<MediaLibUpdateParam*>(param)->GetPath();
    for (int i = 0; i < CountCategories(); ++i)
        CategoryAt(i)->RefreshPath(path);
}

void CMediaTree::OnLookedUp(const String& path, bool exists)
{
    for (int i = 0; i < CountCategories(); ++i)
        CategoryAt(i)->OnLookedUp(path, exists);
}

// Rows that were painted before the library was there show no more than their names.
void CMediaTree::OnLibraryLoaded(ITuneHive_AsyncCallbackParam* /*param*/)
{
    BeginUpdate();
    for (int i = 0; i < CountCategories(); ++i) {
        CMediaTreeCategory* category = CategoryAt(i);
        for (int j = 0; j < category->GetChildCount(); ++j) {
            auto* row = static_cast<CMediaTreeItem*>(category->GetChild(j));
            if (row->GetCellState() == ui::RowCells::Provisional)
                row->MarkDue();
        }
    }
    EndUpdate(1);
}

bool CMediaTree::GetKnownInfo(const String& path, MediaInfo& info) const
{
    IMediaLibManager* library = FindMediaLibManager();
    const CacheLook look =
        library != nullptr ? library->PeekMediaInfo(path, info) : CacheLook::Miss;
    if (GetInfoText(info, kInfoTitle).empty())
        info[kInfoTitle] = UrlIsW(path) ? path : PathFindFileNameW(path);
    return look != CacheLook::Loading;
}

void CMediaTree::AskForFile(const String& path)
{
    lookup_.AskOnScreen(path);
}

void CMediaTree::AskInBackground(const String& path)
{
    if (IsBeyond() && !path.empty())
        lookup_.AskInBackground(path);
}

// What "playing" gives to the player.

void CMediaTree::GetCurrentURL(String& url)
{
    url.clear();
    if (const CMediaTreeCategory* playing = FindPlaying())
        playing->CurrentPath(url);
}

void CMediaTree::MoveCurrentOfPlaying(String& url, int mode)
{
    url.clear();
    if (CMediaTreeCategory* playing = FindPlaying())
        playing->MoveCurrent(url, mode);
}

void CMediaTree::GetNextURL(String& url, int wrap)
{
    MoveCurrentOfPlaying(url, static_cast<int>(wrap != 0 ? RowMode::NextWrap : RowMode::Next));
}

void CMediaTree::GetPrevURL(String& url, int wrap)
{
    MoveCurrentOfPlaying(url,
                         static_cast<int>(wrap != 0 ? RowMode::PreviousWrap : RowMode::Previous));
}

void CMediaTree::GetRandomURL(String& url)
{
    MoveCurrentOfPlaying(url, static_cast<int>(RowMode::Random));
}

int CMediaTree::GetPlayingCount()
{
    const CMediaTreeCategory* playing = FindPlaying();
    return playing != nullptr ? playing->GetChildCount() : 0;
}

int CMediaTree::PlaySelected()
{
    CMediaTreeCategory* playing = FindPlaying();
    if (playing == nullptr)
        return 0;
    for (int i = 0; i < playing->GetChildCount(); ++i) {
        if (playing->GetChild(i)->IsSelected()) {
            playing->PlayRow(String(playing->GetChild(i)->GetID()));
            return 1;
        }
    }
    return 0;
}

void CMediaTree::BeginMoves()
{
    if (CMediaTreeCategory* playing = FindPlaying())
        playing->BeginMoves();
}

void CMediaTree::EndMoves()
{
    if (CMediaTreeCategory* playing = FindPlaying())
        playing->EndMoves();
}

int CMediaTree::GetCurrentTrackInfo(MediaInfo& record)
{
    const CMediaTreeCategory* playing = FindPlaying();
    if (playing == nullptr)
        return 0;
    playing->GetRecord(playing->GetCurrentSID(), record);
    return 1;
}

// Groups.

// Empty: it was refused.
String CMediaTree::CreateSyncedGroup()
{
    IMediaResManager* manager = FindMediaResManager();
    if (manager == nullptr)
        return {};
    String id = manager->CreateGroup(manager->GetNewGroupName());
    SyncCategories();
    if (CMediaTreeCategory* category = FindCategory(id))
        Envisible(category);
    return id;
}

void CMediaTree::NewGroup()
{
    BeginRenameCategory(CreateSyncedGroup());
}

void CMediaTree::SaveAsGroup(const String& group)
{
    if (group != kPlayingGroup)
        return;
    const String id = CreateSyncedGroup();
    CopyGroupTracks(group, id);
    BeginRenameCategory(id);
}

void CMediaTree::RenameCategory(const String& group, const String& name)
{
    CMediaTreeCategory* category = FindCategory(group);
    IMediaResManager* manager = FindMediaResManager();
    if (category == nullptr || manager == nullptr || manager->RenameGroup(group, name) == 0)
        return;
    category->BuildRow();
    BeginUpdate();
    category->Sort2(this);
    EndUpdate(1);
}

void CMediaTree::BeginRenameCategory(const String& group)
{
    CMediaTreeCategory* category = FindCategory(group);
    const int place = category != nullptr ? LocateRow(category) : -1;
    if (place == -1)
        return;
    SetEditLimitText(kGroupNameLimit);
    Edit(place, u"text", 1);
}

void CMediaTree::DeleteCategory(const String& group)
{
    const auto* language = common::CMutiLanSupport::GetInstance();
    if (IsFixedGroupID(group)) {
        const String title = language->GetStringViaID(u"STRID_PROMPT_TITLE_ERROR");
        const String message = language->GetStringViaID(u"STRID_TUNEHIVE_TS_CONNOTDEL");
        _ShowMsgBox(43, &title, &message, 1, nullptr, 0);
        return;
    }
    const String title = language->GetStringViaID(u"STRID_PROMPT_TITLE_WARNING");
    const String message = language->GetStringViaID(u"STRID_TUNEHIVE_TS_DELETEGROUP");
    const LifeWatch life = Watch(); // The page may close below the box.
    int confirmed = 0;
    _ShowMsgBox(42, &title, &message, 2, &confirmed, 0);
    if (confirmed != 1 || !life.IsAlive())
        return;
    CMediaTreeCategory* category = FindCategory(group);
    IMediaResManager* manager = FindMediaResManager();
    if (category == nullptr || manager == nullptr || manager->RemoveGroup(group) == 0)
        return;
    BeginUpdate();
    RemoveTreeItem(category);
    EndUpdate(1);
}

// NOLINTNEXTLINE(readability-make-member-function-const): it changes what the tree shows.
void CMediaTree::ClearCategory(const String& group)
{
    if (CMediaTreeCategory* category = FindCategory(group))
        category->ClearRows();
}

void CMediaTree::SaveAllGroups()
{
    for (int i = 0; i < CountCategories(); ++i)
        CategoryAt(i)->SaveToGroup();
}

} // namespace kivo::tunehive
