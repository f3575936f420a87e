#include "tree/MediaTreeItem.h"

#include "mediares/GroupIds.h"
#include "mediares/IMediaResGroup.h"
#include "mediares/IMediaResManager.h"
#include "player/IMediaPlayer.h"
#include "player/MediaPlayerManager.h"
#include "player/PlayerPanel.h"
#include "shell/base/MusicServer.h"
#include "shell/contracts/base/Beyond.h"
#include "shell/contracts/common/AppPath.h"
#include "shell/contracts/common/Text.h"
#include "shell/contracts/framework/Paths.h"
#include "shell/contracts/host/KivoApi.h"
#include "shell/contracts/ui/Canvas.h"
#include "tree/MediaTree.h"
#include "tree/TreeMenus.h"

#include <algorithm>

namespace kivo::tunehive {

namespace {

constexpr std::int32_t kStoredPath = 0; // Keys of a group's stored track record.
constexpr std::int32_t kStoredName = 1;

// Keys of the skin, 0x00BBGGRR.
constexpr ui::COLORREF kTextColour = 0xA38378;
constexpr ui::COLORREF kSelectedFill = 0xFEEEDF;
constexpr ui::COLORREF kPlayingFill = 0xFFF0B6;

IMediaResGroup* FindGroup(const String& id)
{
    IMediaResManager* manager = FindMediaResManager();
    return manager != nullptr ? manager->GetGroup(id) : nullptr;
}

String FormatLength(const String& seconds)
{
    const int length = std::max(common::CString2Int(seconds), 0);
    const String rest = common::ToText(length % 60);
    return common::ToText(length / 60) + u":" + (rest.size() < 2 ? u"0" : u"") + rest;
}

String GetDisplayText(const MediaInfo& info, const String& name)
{
    if (!name.empty())
        return name;
    const String artist = GetInfoText(info, kInfoArtist);
    const String title = GetInfoText(info, kInfoTitle);
    return artist.empty() ? title : title + u" - " + artist;
}

} // namespace

CMediaTreeItem::CMediaTreeItem(CMediaTree* tree, const String& sid)
    : CSkinTreeItem(tree, sid)
{
}

CMediaTree& CMediaTreeItem::GetMediaTree() const
{
    return *static_cast<CMediaTree*>(GetTree());
}

void CMediaTreeItem::SetPlaying(bool playing)
{
    playing_ = playing;
    BuildRow();
}

String CMediaTreeItem::GetGroupID() const
{
    return GetParentItem() != nullptr ? GetParentItem()->GetID() : String();
}

MediaInfo CMediaTreeItem::GetStoredRecord() const
{
    MediaInfo stored;
    if (IMediaResGroup* group = FindGroup(GetGroupID()))
        group->GetItem(GetSID(), stored);
    return stored;
}

void CMediaTreeItem::GetStoredName(String& name) const
{
    const MediaInfo stored = GetStoredRecord();
    const auto found = stored.find(kStoredName);
    if (found != stored.end())
        name = found->second;
}

void CMediaTreeItem::GetStoredPath(String& path) const
{
    const MediaInfo stored = GetStoredRecord();
    const auto found = stored.find(kStoredPath);
    if (found != stored.end())
        path = found->second;
}

void CMediaTreeItem::BuildRow()
{
    if (IsBeyond())
        MarkDue(); // Cells are made when somebody looks.
    else
        MakeCells();
}

void CMediaTreeItem::MakeCells()
{
    const MediaInfo stored = GetStoredRecord();
    const String path = GetInfoText(stored, kStoredPath);
    MediaInfo info;
    if (usesKnown_) {
        GetMediaTree().GetKnownInfo(path, info);
        MakeCellsFrom(info, stored, file_ != FileState::Gone);
        return;
    }
    if (IMediaResGroup* group = FindGroup(GetGroupID()))
        group->GetItemMediaInfo(GetSID(), info);
    const bool isValid = UrlIsW(path) || (!path.empty() && common::IsFileExist(path));
    file_ = isValid ? FileState::There : FileState::Gone;
    MakeCellsFrom(info, stored, isValid);
}

void CMediaTreeItem::MakeViewCells()
{
    const MediaInfo stored = GetStoredRecord();
    const String path = GetInfoText(stored, kStoredPath);
    MediaInfo info;
    const bool isLoaded = GetMediaTree().GetKnownInfo(path, info);
    MakeCellsFrom(info, stored, file_ != FileState::Gone);
    if (isLoaded)
        GetMediaTree().AskForFile(path);
}

void CMediaTreeItem::OnLookedUp(bool exists)
{
    file_ = exists ? FileState::There : FileState::Gone;
    if (GetCellState() != ui::RowCells::Provisional)
        return;
    usesKnown_ = true;
    BuildNow();
    usesKnown_ = false;
}

void CMediaTreeItem::MakeCellsFrom(const MediaInfo& info, const MediaInfo& stored, bool isValid)
{
    Clear();
    int position = 0;
    const ui::LOGFONT font = ui::GetDefaultLOGFONT();
    if (playing_) {
        const String picture =
            ComposePath(u"%splugin\\tunehive\\skin\\%s", {common::GetAppPath(), u"playing.png"});
        AddPhoto(position++, u"icon", u"Icon", picture, String(), ui::PictureRect(), 0);
    }
    if (isValid) {
        const String length = FormatLength(GetInfoText(info, kInfoLength));
        AddLabel(
            position++, u"length", u"Length", length, length, font, kTextColour, kTextColour, 0);
    }
    const String text = GetDisplayText(info, GetInfoText(stored, kStoredName));
    AddLabel(position, u"text", u"Text", text, String(), font, kTextColour, kTextColour, 0);
}

String CMediaTreeItem::MakeTooltip(const String& cellId)
{
    if (cellId != u"text")
        return CSkinTreeItem::MakeTooltip(cellId);
    String path;
    GetStoredPath(path);
    if (file_ != FileState::Gone)
        return path;
    const String id = u"STRID_TUNEHIVE_TIP_INVALID_FILE";
    String tip;
    _GetStringViaID(&id, &tip);
    return path + u"\r\n" + tip;
}

void CMediaTreeItem::RenderSelf(ui::ICanvas& canvas)
{
    if (IsSelected())
        canvas.FillRect(GetBoundsRect(), kSelectedFill);
    else if (playing_)
        canvas.FillRect(GetBoundsRect(), kPlayingFill);
}

void CMediaTreeItem::ReposControls()
{
    constexpr int kInset = 2;
    constexpr int kPictureWidth = 12;
    constexpr int kRightMargin = 15;
    CSkinTreeItem::ReposControls();
    const int inset = kInset + (playing_ ? 0 : kPictureWidth); // The texts of all rows line up.
    SetContentInset(inset);
    SetMargins(inset, 0, kRightMargin, 0);
    if (ui::CSkinCell* length = GetObjectW(u"length")) {
        length->SetAnchorStyle(ui::anchor::kRight);
        length->SetBounds(0, 0, 42, 10);
        length->SetAlignmentHor(ui::align::kTrailing);
        length->GetSkinConfig()->labelFlag = 1;
        length->SetMultiLine(0);
    }
    if (ui::CSkinCell* icon = GetObjectW(u"icon")) {
        icon->SetAnchorStyle(ui::anchor::kLeft);
        icon->SetBounds(0, 0, kPictureWidth, 10);
    }
    if (ui::CSkinCell* text = GetObjectW(u"text")) {
        text->SetAnchorStyle(ui::anchor::kFill);
        text->GetSkinConfig()->labelFlag = 1;
        text->SetMultiLine(0);
    }
}

bool CMediaTreeItem::OnEditEnd(const String& /*oldText*/, const String& newText)
{
    String name;
    GetStoredName(name);
    if (newText.empty() || newText != name)
        GetMediaTree().RenameTrack(GetGroupID(), GetSID(), newText);
    return true;
}

int CMediaTreeItem::OnListEvent(ui::CSkinList* list, int context, int event, const String& text)
{
    CMediaTree& tree = GetMediaTree();
    switch (static_cast<ui::RowEvent>(event)) {
    case ui::RowEvent::DoubleClick: tree.PlayTrack(GetGroupID(), String(GetSID())); return 1;
    case ui::RowEvent::Activate:
        if (tree.GetSelectedCount() > 0)
            tree.PlayTrack(GetGroupID(), String(GetSID()));
        return 1;
    case ui::RowEvent::Delete:
        if (tree.GetSelectedCount() > 1)
            tree.DeleteSelectedTracks();
        else
            tree.DeleteTrack(GetGroupID(), String(GetSID()));
        return 1;
    case ui::RowEvent::FilesDropped: tree.TakeDroppedFiles(GetGroupID()); return 1;
    case ui::RowEvent::DragOver:
        if (tree.RefusesDrag(*this, GetGroupID(), /*isGroupRow=*/false))
            return 1;
        break;
    case ui::RowEvent::DataDropped:
        if (tree.TakeDroppedText(GetGroupID(), GetSID(), text))
            return 1;
        break;
    default: break;
    }
    return CSkinTreeItem::OnListEvent(list, context, event, text);
}

ui::IMenu* CMediaTreeItem::GetRowMenu(const ui::MenuDelegate& delegate)
{
    const CPlayerPanel* panel = CPlayerPanel::GetInstance();
    const bool isHeld =
        panel != nullptr && (panel->GetPausedFlag() != 0 || panel->GetUserStopMark() != 0);
    return MakeTrackMenu(delegate, GetGroupID(), playing_ && !isHeld);
}

void CMediaTreeItem::OnRenameKey()
{
    if (GetGroupID() != kHotGroup)
        GetMediaTree().BeginRenameTrack(GetGroupID(), GetSID());
}

void CMediaTreeItem::OnRowCommand(ui::IMenu* entry)
{
    CMediaTree& tree = GetMediaTree();
    const String group = GetGroupID();
    const String sid = GetSID(); // A copy: a command may free the row.
    auto* manager = CMediaPlayerManager::FindInstance();
    IMediaPlayer* player = manager != nullptr ? manager->GetPlayer(String()) : nullptr;
    const int command = entry->GetID();
    switch (command) {
    case kCommandPlay: RunPlayCommand(); return;
    case kCommandPause:
        if (player != nullptr)
            player->Pause();
        return;
    case kCommandSaveGroup: tree.SaveAsGroup(group); return;
    case kCommandDeleteTrack: tree.DeleteTrack(group, sid); return;
    case kCommandRenameTrack: tree.BeginRenameTrack(group, sid); return;
    case kCommandOpenTrack: OpenTrack(); return;
    default: break;
    }
    if (const String target = GroupFromCommand(command, kCommandCopyTo); !target.empty()) {
        tree.CopyTrack(group, sid, target);
    } else if (const String moved = GroupFromCommand(command, kCommandMoveTo);
               tree.FindCategory(moved) != nullptr) {
        tree.CopyTrack(group, sid, moved);
        tree.DeleteTrack(group, sid);
    }
}

void CMediaTreeItem::RunPlayCommand()
{
    const CPlayerPanel* panel = CPlayerPanel::GetInstance();
    auto* manager = CMediaPlayerManager::FindInstance();
    IMediaPlayer* player = manager != nullptr ? manager->GetPlayer(String()) : nullptr;
    if (player != nullptr && playing_ && panel != nullptr && panel->GetPausedFlag() != 0)
        player->Play();
    else
        GetMediaTree().PlayTrack(GetGroupID(), String(GetSID()));
}

// Shows a file in its folder and an address in the browser; a listen address of the music server
// leads to the page of the song.
// NOLINTNEXTLINE(readability-make-member-function-const): it acts for the user.
void CMediaTreeItem::OpenTrack()
{
    constexpr StringView kListenPath = u"/music/gpp?";
    constexpr StringView kListen = u"gpp?";
    constexpr StringView kPage = u"new_listen.jsp?source=kivo&";
    constexpr int kOpenMode = 3;
    String path;
    GetStoredPath(path);
    if (path.find(GetMusicServer() + String(kListenPath)) != String::npos) {
        for (std::size_t at = path.find(kListen); at != String::npos;
             at = path.find(kListen, at + kPage.size())) {
            path.replace(at, kListen.size(), kPage);
        }
    }
    if (PathFileExistsW(path)) {
        const std::size_t nameLength = PathFindFileNameW(path).size();
        ShellExecuteW(u"explore", path.substr(0, path.size() - nameLength));
    } else {
        common::SafeOpenWeb(path, kOpenMode);
    }
}

} // namespace kivo::tunehive
