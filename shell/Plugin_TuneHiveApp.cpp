#include "shell/Plugin_TuneHiveApp.h"

#include "medialib/IMediaLibManager.h"
#include "mediares/GroupIds.h"
#include "mediares/IMediaResManager.h"
#include "player/MediaPlayerManager.h"
#include "shell/base/DataFolder.h"
#include "shell/base/HostLibrary.h"
#include "shell/base/Settings.h"
#include "shell/contracts/base/IPluginWindowLayout.h"
#include "shell/contracts/common/AppPath.h"
#include "shell/contracts/common/Language.h"
#include "shell/contracts/framework/Paths.h"
#include "shell/contracts/host/KivoApi.h"
#include "shell/contracts/ui/SkinForm.h"
#include "shell/contracts/ui/SkinWebBrowser.h"
#include "shell/contracts/ui/SkinWndManager.h"
#include "shell/desktop/TuneHiveRemote.h"
#include "shell/TuneHiveWindow.h"

#include <algorithm>
#include <string_view>

namespace kivo::tunehive {

namespace {

constexpr unsigned kPluginId = 8006;
constexpr int kStopTimeoutMs = 5000;

// By it the host knows the plug-in; a constant of the build.
constexpr std::string_view kPluginKey =
    "7Q4mZr9KpT2vXs6LwYc1BnHd8FgJ3eRuA5tMxUo0iPkVqWzEySbCjGhNlDfOaI9r"
    "T6wQ2xLc8vBn4mKs1pZy7dHg3jFtRuE5aXoWi0kVqMzUeYbSlCjPhNnGfDkOaI8t";
static_assert(kPluginKey.size() == IPlugin::kKeyLength);

constexpr std::uint32_t kSignURL = 0; // Keys of the sign's record.
constexpr std::uint32_t kSignTitle = 1;

String GetHostText(const char16_t* id)
{
    const String key = id;
    String text;
    _GetStringViaID(&key, &text);
    return text;
}

} // namespace

CPlugin_TuneHiveApp::CPlugin_TuneHiveApp()
{
    pluginId_ = kPluginId;
    std::copy(kPluginKey.begin(), kPluginKey.end(), pluginKey_.begin());
    const String app = common::GetAppPath();
    const String language = common::CMutiLanSupport::GetInstance()->GetLangSetting();
    skinFile_ = ComposePath(u"%splugin\\tunehive\\skin.xml", {app});
    buildFile_ = ComposePath(u"%splugin\\tunehive\\build.xml", {app});
    const String plugin = ComposePath(u"plugin\\", {});
    stringTableFile_ =
        ComposePath(u"%s%s%s\\%s\\%s\\stringid.ini", {app, plugin, u"tunehive", u"lang", language});
    iconFile_ = ComposePath(u"%splugin\\tunehive\\skin\\tunehive.png", {app});
}

CPlugin_TuneHiveApp::~CPlugin_TuneHiveApp() = default;

int CPlugin_TuneHiveApp::InitInstance()
{
    CWinApp::InitInstance();
    ui::CSkinWebBrowser::InitControlContainer();
    if (LoadHostLibrary() == 0)
        return 0;
    _RegisterMsgInstance(this);
    return 1;
}

int CPlugin_TuneHiveApp::ExitInstance()
{
    ui::CSkinWebBrowser::UninitControlContainer();
    _UnRegisterMsgInstance(this);
    FreeHostLibrary();
    return CWinApp::ExitInstance();
}

int CPlugin_TuneHiveApp::OnLoad(CWnd* parent, IPluginWindowLayout* layout)
{
    displayName_ = GetHostText(u"STRID_PLUGIN_NAME");
    description_ = GetHostText(u"STRID_PLUGIN_DESCRIPTION ");
    maker_ = u"TuneHive";
    version_ = u"1.0";
    infoWord1_ = 1;
    infoWord2_ = 0;
    isLoaded_ = 1;
    layout_ = layout;

    const auto directory = GetDataFolder();
    if (!directory)
        return 0;
    CreateDirectoryW(*directory); // It may stand already.
    if (!StartManagers(*directory) || !CreateWindow(parent))
        return 0;
    ReadConfig();
    return 1;
}

bool CPlugin_TuneHiveApp::StartManagers(const String& directory)
{
    IMediaResManager* groups = GetMediaResManager();
    if (groups == nullptr || groups->Init(directory) == 0)
        return false;
    IMediaLibManager* library = GetMediaLibManager();
    if (library == nullptr || library->Initialize(ComposePath(u"%slib\\", {directory})) == 0)
        return false;
    CMediaPlayerManager::GetInstance().RegisterPlayers();
    return true;
}

bool CPlugin_TuneHiveApp::CreateWindow(CWnd* parent)
{
    window_.reset(new TuneHiveWindow(parent, this));
    window_->SetPluginId(kPluginId);
    return _KivoAPI_RegisterPluginWindow(window_.get()) != 0;
}

int CPlugin_TuneHiveApp::OnUnLoad()
{
    if (isLoaded_ == 0)
        return 1;
    if (window_)
        window_->RemoveSign();
    // The host has stopped the work already; another host may not.
    if (IMediaLibManager* library = FindMediaLibManager())
        static_cast<void>(library->StopWork(kStopTimeoutMs));
    if (window_) {
        ui::CSkinForm* form = window_->GetOwnerForm();
        if (window_->IsVisible() && form != nullptr)
            form->SetDefaultFocusObj(nullptr);
        _KivoAPI_UnregisterPluginWindow(window_.get());
        window_.reset();
    }
    if (auto* players = CMediaPlayerManager::FindInstance())
        players->Destroy();
    DestroyMediaResManager();
    DestroyMediaLibManager();
    WriteConfig();
    loadWord_ = 0;
    isLoaded_ = 0;
    return 1;
}

String CPlugin_TuneHiveApp::GetStateSignIconPath(String kind)
{
    const StringView pattern = kind == u"video" ? u"%splugin\\tunehive\\skin\\icon_video.png"
                                                : u"%splugin\\tunehive\\skin\\icon_music.png";
    return ComposePath(pattern, {common::GetAppPath()});
}

void CPlugin_TuneHiveApp::OnSignatureFun(String user, Property sign)
{
    const String url = sign.GetText(kSignURL);
    if (url.empty())
        return;
    String own;
    _KivoAPI_GetMyUid(&own);
    if (user == own) {
        ShowPage();
        return;
    }
    if (UrlIsW(url, URLIS_URL)) {
        PlaySigned(url, sign.GetText(kSignTitle));
        ShowPage();
        return;
    }
    const auto* language = common::CMutiLanSupport::GetInstance();
    const String title = language->GetStringViaID(u"TIP_TUNEHIVE");
    const String message = language->GetStringViaID(u"STRID_TUNEHIVE_TIP_MUSICLOCAL");
    _ShowMsgBox(41, &title, &message, 1, nullptr, 0);
}

void CPlugin_TuneHiveApp::PlaySigned(const String& url, const String& title)
{
    if (!window_)
        return;
    const String group(kPlayingGroup);
    String sid;
    window_->StopPlayer();
    window_->AddTrack(group, url, title, /*allowDuplicate=*/0, sid);
    window_->ExpandGroup(group);
    window_->PlayTrack(group, sid);
}

void CPlugin_TuneHiveApp::ShowPage()
{
    if (ui::CSkinForm* form = ui::CSkinWndManager::GetInstance()->GetMainForm())
        form->BringToTop();
    if (layout_ != nullptr && window_)
        layout_->ShowPluginPage(window_.get());
}

TuneHiveRemote* CPlugin_TuneHiveApp::GetRemote() const
{
    return window_ ? window_->GetRemote() : nullptr;
}

} // namespace kivo::tunehive
