#include "shell/TuneHiveWindow.h"

#include "forms/LyricPanel.h"
#include "forms/LyricWnd.h"
#include "forms/TrackPickers.h"
#include "player/IMediaPlayer.h"
#include "player/MediaPlayerManager.h"
#include "player/PlayerPanel.h"
#include "player/VolForm.h"
#include "shell/contracts/common/Language.h"
#include "shell/contracts/common/Text.h"
#include "shell/contracts/host/KivoApi.h"
#include "shell/contracts/ui/SkinForm.h"
#include "shell/contracts/ui/SkinPhoto.h"
#include "shell/contracts/ui/SkinSplitter.h"
#include "shell/desktop/TuneHiveRemote.h"
#include "tree/MediaTree.h"
#include "tree/MediaTreePanel.h"
#include "tree/ToolPanel.h"

#include <utility>

namespace kivo::tunehive {

namespace {

constexpr int kPaneHeight = 164; // The lower pane's height at first, and its least, in pixels.
constexpr int kUpperPane = 0;
constexpr int kLowerPane = 1;
constexpr int kShowCommand = 5;
constexpr int kPageShownTag = 2103;

String GetLanguageText(const char16_t* id)
{
    return common::CMutiLanSupport::GetInstance()->GetStringViaID(id);
}

// What a mode does to the lower pane's contents; null leaves the caption as it is.
struct PaneContents {
    bool showsVideo;
    bool showsPhoto;
    const char16_t* caption;
};
constexpr PaneContents kPaneContents[] = {
    {false, false, nullptr                },
    {true,  false, nullptr                },
    {false, true,  u"STRID_TUNEHIVE_KIVO" },
    {true,  false, u"STRID_TUNEHIVE_LYRIC"},
    {true,  false, u"STRID_TUNEHIVE_VIDEO"},
};

} // namespace

TuneHiveWindow::TuneHiveWindow(CWnd* parent, IPlugin* plugin)
    : IPluginWindow(parent, nullptr)
    , plugin_(plugin)
    , pickers_(std::make_unique<TrackPickers>())
{
    SetObjectID(u"TuneHiveWindow");
    SetPageTip(GetLanguageText(u"TIP_TUNEHIVE"));
    SetPageKey(u"plugin_tunehive");
    SetSkinName(u"pluginwnd");
    SetBuildName(u"Plugins TuneHiveWindow");
}

TuneHiveWindow::~TuneHiveWindow()
{
    // A host may drop a page that it has not closed.
    CloseMusicCabinet();
    ReleaseVolForm();
}

void TuneHiveWindow::Release()
{
    delete this;
}

int TuneHiveWindow::GetPageWord()
{
    return 0;
}

void TuneHiveWindow::ShowPage(int visible)
{
    SetVisible(visible);
    if (visible == 0)
        return;
    _KivoAPI_STAT_TAG_INCREASE(&kPageShownTag);
    if (ui::CSkinForm* form = GetOwnerForm())
        form->SetDefaultFocusObj(GetTree());
}

int TuneHiveWindow::CreatePage()
{
    playerPanel_ = new CPlayerPanel(this);
    RegisterControl(playerPanel_);
    playerPanel_->Build(GetParentWnd());
    CreateToolPanel();
    CreateSplitter();
    CreateTreePanel();
    CreateLyricPanel();
    volForm_ = new CVolForm(this);
    volForm_->Create(GetParentWnd());
    volForm_->CenterWindow();
    volForm_->ShowWindow(0);
    playerPanel_->AttachPlayer();
    ResetSkinData();
    DispathSkinChangeMsg();
    remote_ = std::make_unique<TuneHiveRemote>(*this);
    return 1;
}

void TuneHiveWindow::CreateToolPanel()
{
    toolPanel_ = new CToolPanel(pickers_.get());
    RegisterControl(toolPanel_);
    toolPanel_->Build(GetParentWnd());
}

void TuneHiveWindow::CreateTreePanel()
{
    ui::CSkinPanel* pane = splitter_->GetPane(kUpperPane);
    if (pane == nullptr)
        return;
    treePanel_ = new CMediaTreePanel(pickers_.get());
    pane->RegisterControl(treePanel_);
    treePanel_->Build(GetParentWnd());
    toolPanel_->SetTreePanel(treePanel_);
}

CMediaTree* TuneHiveWindow::GetTree() const
{
    return treePanel_ != nullptr ? treePanel_->GetTree() : nullptr;
}

void TuneHiveWindow::CreateSplitter()
{
    splitter_ = new ui::CSkinSplitter(0, 0);
    splitter_->SetObjectID(u"SplitterCtrl");
    RegisterControl(splitter_);
    const String key =
        common::FormatText(u"%s %s TuneHiveWindow SplitterCtrl", {u"KIVO", u"Plugins"});
    splitter_->Create(GetParentWnd(), key);
    splitter_->SetFixedPane(kLowerPane);
}

void TuneHiveWindow::CreateLyricPanel()
{
    ui::CSkinPanel* pane = splitter_->GetPane(kLowerPane);
    if (pane == nullptr)
        return;
    lyricPanel_ = new CLyricPanel(this);
    pane->RegisterControl(lyricPanel_);
    lyricPanel_->Build(GetParentWnd());
    // The first leaves picture and caption in place behind the closed pane.
    SetPaneMode(2);
    SetPaneMode(0);
}

int TuneHiveWindow::ClosePage()
{
    remote_.reset();
    CloseMusicCabinet();
    if (CMediaTree* tree = GetTree())
        tree->SaveAllGroups();
    ReleaseVolForm();
    return 1;
}

void TuneHiveWindow::ReleaseVolForm()
{
    if (CVolForm* const form = std::exchange(volForm_, nullptr))
        form->Release();
}

IPlayingList* TuneHiveWindow::GetPlayingList()
{
    return GetTree();
}

int TuneHiveWindow::GetCurrentTrackInfo(MediaInfo& info)
{
    CMediaTree* tree = GetTree();
    return tree != nullptr ? tree->GetCurrentTrackInfo(info) : 0;
}

int TuneHiveWindow::PlaySelectedElsewhere()
{
    CMediaTree* tree = GetTree();
    return tree != nullptr ? tree->PlaySelectedElsewhere() : 0;
}

void TuneHiveWindow::ShowAddMenu()
{
    if (toolPanel_ != nullptr)
        toolPanel_->ShowAddMenu();
}

void TuneHiveWindow::LayOut()
{
    RePositionSubControls();
    Refresh();
}

// True: the pane was closed and is open now.
bool TuneHiveWindow::OpenPane()
{
    if (splitter_->IsPaneVisible(kLowerPane))
        return false;
    splitter_->SetBarVisible(1);
    splitter_->SetPaneVisible(kLowerPane, 1);
    splitter_->SetFixedPane(kLowerPane);
    splitter_->SetFixedPaneSize(kPaneHeight);
    return true;
}

int TuneHiveWindow::SetPaneMode(int mode)
{
    if (lyricPanel_ == nullptr || splitter_ == nullptr)
        return 0;
    bool wasOpened = false;
    if (mode == 0) {
        splitter_->SetBarVisible(0);
        splitter_->SetPaneVisible(kLowerPane, 0);
    } else if (mode == 1) {
        splitter_->SetBarVisible(1);
        splitter_->SetPaneVisible(kLowerPane, 1);
        splitter_->SetFixedPane(kLowerPane);
        splitter_->RePositionSubControls(); // While it was hidden its height was of another day.
        if (splitter_->GetPane(kLowerPane)->GetHeight() < kPaneHeight)
            splitter_->SetFixedPaneSize(kPaneHeight);
    } else {
        wasOpened = OpenPane();
    }

    if (mode >= 0 && mode < static_cast<int>(std::size(kPaneContents))) {
        const auto& [showsVideo, showsPhoto, caption] = kPaneContents[mode];
        if (CLyricWnd* video = lyricPanel_->GetVideoWindow())
            video->SetVisible(showsVideo ? 1 : 0);
        if (showsPhoto && lyricPanel_->GetPhoto() != nullptr)
            lyricPanel_->GetPhoto()->SetVisible(1);
        if (caption != nullptr && lyricPanel_->GetCaption() != nullptr)
            lyricPanel_->GetCaption()->SetText(GetLanguageText(caption));
    }

    if (mode == 0 || mode == 1 || wasOpened) {
        LayOut();
    } else {
        lyricPanel_->RePositionSubControls();
        lyricPanel_->Refresh();
    }
    playerPanel_->ShowPaneOpen(IsPaneVisible() != 0);
    return IsPaneVisible();
}

int TuneHiveWindow::IsPaneVisible()
{
    return splitter_ != nullptr && splitter_->IsPaneVisible(kLowerPane) ? 1 : 0;
}

void TuneHiveWindow::ShowVolForm(int action, int x, int y)
{
    if (volForm_ == nullptr)
        return;
    if (volForm_->IsWindowVisible()) {
        if (action != 1)
            volForm_->ShowWindow(0);
    } else if (action != 0) {
        const Rect place = volForm_->GetWindowRect();
        volForm_->MoveWindow(
            {x, y, x + (place.right - place.left), y + (place.bottom - place.top)});
        volForm_->ShowWindow(kShowCommand);
    }
}

void TuneHiveWindow::OnVolFormShown(bool shown)
{
    playerPanel_->ShowVolumeOpen(shown);
}

int TuneHiveWindow::GetPlayState()
{
    auto* manager = CMediaPlayerManager::FindInstance();
    IMediaPlayer* player = manager != nullptr ? manager->GetPlayer(String()) : nullptr;
    return player != nullptr ? player->GetPlayState() : 0;
}

void TuneHiveWindow::StopPlayer()
{
    if (playerPanel_ != nullptr)
        playerPanel_->StopPlayback(0);
}

void TuneHiveWindow::AddTrack(
    const String& group, const String& url, const String& name, int allowDuplicate, String& sid)
{
    sid.clear();
    if (CMediaTree* tree = GetTree())
        tree->AddTrack(group, url, name, allowDuplicate, sid);
}

void TuneHiveWindow::ExpandGroup(const String& group) const
{
    if (CMediaTree* tree = GetTree())
        tree->ExpandGroup(group);
}

void TuneHiveWindow::PlayTrack(const String& group, const String& sid)
{
    if (CMediaTree* tree = GetTree())
        tree->PlayTrack(group, sid);
}

int TuneHiveWindow::ShowAddURLForm(CWnd* parent, String& group, String& url, String& name)
{
    return pickers_->ShowAddURLForm(parent, group, url, name);
}

void TuneHiveWindow::OpenMusicCabinet()
{
    if (cabinet_ != nullptr && cabinetLife_.IsAlive()) {
        cabinet_->BringToTop();
        return;
    }
    cabinet_ = new CMusicCabForm(this);
    cabinetLife_ = cabinet_->Watch();
    if (cabinet_->Create(GetParentWnd()) != 0 && cabinet_->HasBrowser()) {
        cabinet_->ShowWindow(kShowCommand);
        return;
    }
    CloseMusicCabinet();
    const String title = GetLanguageText(u"STRID_TUNEHIVE_MUSICCAB");
    const String message = GetLanguageText(u"STRID_TUNEHIVE_WEB_MISSING");
    _ShowMsgBox(41, &title, &message, 1, nullptr, 0);
}

void TuneHiveWindow::CloseMusicCabinet()
{
    if (cabinet_ != nullptr && cabinetLife_.IsAlive())
        cabinet_->Release();
    cabinet_ = nullptr;
}

void TuneHiveWindow::RemoveSign()
{
    if (playerPanel_ != nullptr)
        playerPanel_->RemoveSign();
}

} // namespace kivo::tunehive
