#include "forms/MusicCabForm.h"

#include "mediares/GroupIds.h"
#include "shell/base/MusicServer.h"
#include "shell/contracts/common/AppPath.h"
#include "shell/contracts/common/Language.h"
#include "shell/contracts/common/Text.h"

#include <vector>

namespace kivo::tunehive {

namespace {

constexpr unsigned kFormStyle = ui::wndstyle::kPopup | ui::wndstyle::kClipChildren;
constexpr unsigned kBrowserStyle = ui::wndstyle::kChild | ui::wndstyle::kVisible;
constexpr int kFormIcon = 7004;
constexpr int kBrowserId = 3343;
constexpr unsigned kBrowserFlags = 0x84;
constexpr unsigned kUnwantedOptions = 2U | 128U;
constexpr int kWaitCursor = 32512;
constexpr int kOpenMode = 3;
constexpr char16_t kBrowserName[] = u"Kivo.Plugin.MusicCabForm.Navigator";
constexpr StringView kMarker = u"kivo=1"; // Turns a link into a command.

// What follows the first `label` in a piece; empty if it isn't there.
String ValueBehind(const String& piece, StringView label)
{
    const std::size_t at = piece.find(label);
    return at != String::npos ? piece.substr(at + label.size()) : String();
}

} // namespace

CMusicCabForm::CMusicCabForm(IMusicCabOwner* owner)
    : owner_(owner)
{
    SetObjectID(u"MusicCabForm");
}

int CMusicCabForm::Create(CWnd* parent)
{
    const String title =
        common::CMutiLanSupport::GetInstance()->GetStringViaID(u"STRID_TUNEHIVE_MUSICCAB");
    if (CSkinWnd::Create(kFormStyle, u"KivoMediaMusicCabForm", title, Rect(), parent, 0) == 0)
        return 0;
    SetIcon(kFormIcon, 1);
    SetIcon(kFormIcon, 0);
    CenterWindow();
    return 1;
}

int CMusicCabForm::OnBuildControlAfter()
{
    ui::CSkinObject* area = FindControlRecusive(u"ClientArea");
    if (area == nullptr)
        return 0;
    browser_ = new ui::CSkinWebBrowser;
    browser_->SetObjectID(kBrowserName);
    area->RegisterControl(browser_);
    browser_->SetBounds(0, 0, 1, 1);
    browser_->SetAnchorStyle(ui::anchor::kFill);
    browser_->SetTranslateHandler(this);
    browser_->SetEventListener(
        Delegate<ui::BrowserEventArgs*>(this, &CMusicCabForm::OnBrowserEvent));
    if (browser_->Create(
            kBrowserName, kBrowserStyle, {0, 0, 1, 1}, this, kBrowserId, kBrowserFlags) == 0) {
        browser_->DestroyWindow();
        area->UnregisterControl(browser_);
        browser_->Release();
        browser_ = nullptr;
        return 0;
    }
    browser_->SetOptions(browser_->GetOptions() & ~kUnwantedOptions);
    browser_->Navigate(u"http://" + GetMusicServer() + u"/music/kivo_tj.jsp");
    return 1;
}

int CMusicCabForm::OnSysButton(const String& button)
{
    if (button != ui::kSysButtonClose)
        return 0;
    Release();
    return 1;
}

int CMusicCabForm::TranslateUrl(int /*reserved*/, const String& url, String& /*replacement*/)
{
    lastURL_ = url;
    return 0;
}

void CMusicCabForm::OnBrowserEvent(ui::BrowserEventArgs* args)
{
    if (args->controlId != kBrowserId)
        return;
    switch (args->event) {
    case ui::BrowserEvent::DownloadBegin:
        if (browser_ != nullptr && browser_->IsWindow() && !browser_->IsWindowVisible())
            browser_->SetCursor(kWaitCursor);
        break;
    case ui::BrowserEvent::NewWindow2: OnNewWindow(*args); break;
    default: break;
    }
}

void CMusicCabForm::OnNewWindow(ui::BrowserEventArgs& args)
{
    if (lastURL_.empty())
        return;
    args.cancel = true;
    const String url = lastURL_; // A copy: the form may go below a dialog.
    const std::size_t marker = url.find(kMarker);
    if (marker == String::npos) {
        common::SafeOpenWeb(url, kOpenMode);
        return;
    }
    // One separator stands on either side of the marker.
    const std::size_t fields = marker + kMarker.size() + 1;
    RunMusicLink(marker > 0 ? url.substr(0, marker - 1) : String(),
                 fields <= url.size() ? url.substr(fields) : String());
}

void CMusicCabForm::RunMusicLink(const String& url, const String& fields)
{
    if (owner_ == nullptr)
        return;
    const std::vector<String> pieces = common::AnalyzeString(fields, u"&");
    if (pieces.size() != 3)
        return;
    const String action = ValueBehind(pieces[0], u"p=");
    const String song = ValueBehind(pieces[1], u"song=");
    const String singer = ValueBehind(pieces[2], u"singer=");
    const String name = song + u" - " + singer;
    IMusicCabOwner* owner = owner_;
    String sid;
    if (action == u"0") {
        String group;
        String chosenURL = url;
        String chosenName = name;
        if (owner->ShowAddURLForm(this, group, chosenURL, chosenName) != 0)
            owner->AddTrack(group, chosenURL, chosenName, /*allowDuplicate=*/1, sid);
    } else if (action == u"1") {
        const String playing(kPlayingGroup);
        owner->StopPlayer();
        owner->AddTrack(playing, url, name, /*allowDuplicate=*/1, sid);
        owner->PlayTrack(playing, sid);
    }
}

} // namespace kivo::tunehive
