#include "host/Program.h"

#include "host/Account.h"
#include "host/ContactDesk.h"
#include "host/Contacts.h"
#include "host/EventLoop.h"
#include "host/FirstPaint.h"
#include "host/HostSettings.h"
#include "host/MainForm.h"
#include "host/Messages.h"
#include "host/Pages.h"
#include "host/Playback.h"
#include "host/PlayerKeys.h"
#include "host/Plugins.h"
#include "host/Profile.h"
#include "host/Screen.h"
#include "host/Screenshot.h"
#include "host/Services.h"
#include "host/sign/SignNetwork.h"
#include "host/StopSignals.h"
#include "host/Terminal.h"
#include "host/Texts.h"
#include "host/UserLanguage.h"
#include "host/WindowMemory.h"
#include "platform/base/PostQueue.h"
#include "platform/ui/qt/QtDesktop.h"
#include "shell/contracts/base/Beyond.h"
#include "shell/contracts/base/IPlugin.h"
#include "shell/contracts/base/IPluginWindow.h"
#include "shell/contracts/common/AppPath.h"
#include "shell/contracts/common/Text.h"
#include "shell/contracts/control/MediaEngineSettings.h"
#include "shell/contracts/framework/Files.h"
#include "shell/contracts/framework/Paths.h"
#include "shell/contracts/ui/SkinManager.h"
#include "shell/contracts/ui/SkinWndManager.h"

#include <QApplication>
#include <QTimer>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <optional>
#include <system_error>
#include <utility>

namespace kivo::host {

namespace {

enum ExitStatus : int { kDone = 0, kNothingPlayed = 1, kWrongUse = 2, kProfileInUse = 3 };

constexpr int kStopWaitMs = 5000;
constexpr int kStatusPeriodMs = 1000;
constexpr int kRestPeriodMs = 250;
constexpr char kSettingsFile[] = "/host.ini";
constexpr char kVolumeKey[] = "volume";
constexpr char kMuteKey[] = "mute";

// Ends in a separator.
std::string FindAppFolder()
{
    std::error_code error;
    const std::filesystem::path program = std::filesystem::read_symlink("/proc/self/exe", error);
    return program.parent_path().native() + "/";
}

// The looks that the form needs before a plug-in brings its own.
void IncludeSkin()
{
    ui::CSkinManager& skin = *ui::CSkinManager::GetInstance();
    const String app = common::GetAppPath();
    skin.IncludeSkinFile(ComposePath(u"%sskin\\skin.xml", {app}));
    skin.IncludeSkinFile(ComposePath(u"%sskin\\host_skin.xml", {app}));
    skin.IncludeSkinBuildFile(ComposePath(u"%sskin\\host_build.xml", {app}));
}

} // namespace

// What stands between the lock on the profile and its release. The order of the members is that of
// the start; they go in the opposite one.
class Session {
public:
    Session(const Options& options,
            const std::string& profile,
            Terminal& terminal,
            const Program::MakeSigns& makeSigns);
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;
    ~Session() = default;

    int Run();

private:
    void SetUpEngine();
    void OpenForm();
    void ShowForm();
    [[nodiscard]] MainForm::Commands MakeCommands();
    [[nodiscard]] ContactCommands MakeContactCommands();
    void ActivateSign(const String& id);
    void LoadPlugins();
    void TellFailure(const Plugins::Failure& failure);
    void StartPlaying();
    void TakePicture();
    void Leave(int status); // From anywhere, also from inside a modal form.
    void Stop();
    void TellFailedWrites();

    const Options& options_;
    Terminal& terminal_;
    std::string appFolder_ = FindAppFolder();
    HostSettings settings_;
    WindowMemory memory_{settings_};
    Account account_{settings_};
    Screen screen_;
    ui::qt::QtDesktop desktop_;
    EventLoop loop_;
    std::unique_ptr<ISignNetwork> signs_;
    Contacts contacts_;
    std::unique_ptr<IMessages> messages_;
    Pages pages_;
    Services services_;
    ContactDesk desk_;
    MainForm form_;
    Plugins plugins_;
    PlayerKeys keys_;
    StopSignals signals_;
    std::optional<Playback> playback_;
    std::optional<Screenshot> screenshot_;
    std::optional<FirstPaint> firstPaint_;
    QTimer statusTimer_;
    QTimer restTimer_;
    std::optional<int> status_; // Set once the run is to end.
    bool audioFailed_ = false;
    bool closedByUser_ = false;
};

Session::Session(const Options& options,
                 const std::string& profile,
                 Terminal& terminal,
                 const Program::MakeSigns& makeSigns)
    : options_(options)
    , terminal_(terminal)
    , settings_(profile + kSettingsFile)
    , signs_(makeSigns(common::PathToText(GetLocalUserName())))
    , messages_(screen_.IsVisible() ? MakeBoxMessages() : MakeTerminalMessages(terminal))
    , services_({settings_, account_, *signs_, *messages_, pages_},
                common::PathToText(profile + "/"))
    , desk_({*signs_, account_, contacts_, services_})
    , form_(contacts_, MakeCommands(), MakeContactCommands())
    , keys_([this] { return plugins_.GetRemote(); })
    , signals_([this] { Leave(kDone); })
{
    common::SetAppPath(common::PathToText(appFolder_));
    LoadTexts(appFolder_, GetEnvironmentLocale());
    SetUpEngine();
    OpenForm();
}

MainForm::Commands Session::MakeCommands()
{
    MainForm::Commands commands;
    commands.quit = [this] {
        closedByUser_ = true;
        Leave(kDone);
    };
    commands.show = [this](IPluginWindow* page) { pages_.ShowPluginPage(page); };
    commands.showSigns = [this](bool show) { services_.ShowMediaState(show); };
    commands.areSignsShown = [this] { return services_.IsMediaStateShown(); };
    commands.getOwnName = [this] {
        return account_.IsOn() ? GetNameOf(account_.Get().address)
                               : common::PathToText(GetLocalUserName());
    };
    commands.isAccountOn = [this] { return account_.IsOn(); };
    commands.isTitleOnly = [this] { return account_.IsTitleOnly(); };
    commands.setTitleOnly = [this](bool titleOnly) { desk_.SetTitleOnly(titleOnly); };
    commands.signOut = [this] { desk_.SignOut(); };
    commands.goToOwnSign = [this] { services_.ActivateOwnSign(); };
    commands.hasCabinet = [this] { return plugins_.GetRemote() != nullptr; };
    commands.openCabinet = [this] {
        if (ITuneHiveRemote* const remote = plugins_.GetRemote())
            remote->OpenWebForm();
    };
    return commands;
}

ContactCommands Session::MakeContactCommands()
{
    ContactCommands commands;
    commands.activateSign = [this](const String& id) { ActivateSign(id); };
    commands.answer = [this](const String& id) { desk_.Answer(id); };
    commands.remove = [this](const String& id) { desk_.Remove(id); };
    commands.rename = [this](const String& id, const String& name) { desk_.Rename(id, name); };
    commands.addContact = [this] { desk_.AddContact(); };
    commands.setUpAccount = [this] { desk_.SetUpAccount(); };
    commands.givePassword = [this] { desk_.GivePassword(); };
    commands.judgeCertificate = [this] { desk_.JudgeCertificate(); };
    commands.tryNow = [this] { desk_.TryNow(); };
    commands.getSignPicture = [this](const String& kind) {
        IPlugin* const plugin = plugins_.FindForSign(kind);
        return plugin != nullptr ? plugin->GetStateSignIconPath(kind) : String();
    };
    commands.getServer = [this] { return desk_.GetServer(); };
    commands.getNow = [] {
        const auto now = std::chrono::steady_clock::now().time_since_epoch();
        return std::int64_t{std::chrono::duration_cast<std::chrono::milliseconds>(now).count()};
    };
    return commands;
}

// The plug-in that has the sign's picture knows what it means.
void Session::ActivateSign(const String& id)
{
    const Contact* const contact = contacts_.Find(id);
    if (contact == nullptr || !contact->sign)
        return;
    if (IPlugin* const plugin = plugins_.FindForSign(contact->sign->kind))
        plugin->OnSignatureFun(id, contact->sign->sign);
}

void Session::OpenForm()
{
    IncludeSkin();
    desktop_.ApplySkin();
    form_.Open(memory_.GetSize(), memory_.GetPlace());
    desk_.SetWindow(&form_);
    contacts_.SetAccountOn(account_.IsOn());
    signs_->SetListener(&contacts_);
    pages_.SetView(&form_);
}

void Session::ShowForm()
{
    form_.ShowWindow(/*command=*/5);
    memory_.RestoreMaximized(form_);
}

int Session::Run()
{
    LoadPlugins();
    if (!screen_.IsVisible())
        terminal_.PrintLine("there is no display; running without a window");
    if (screen_.IsVisible() || !options_.screenshot.empty())
        ShowForm();
    StartPlaying();
    TakePicture();
    firstPaint_.emplace([this] { desk_.SignIn(); }); // Signing in takes nothing from the start.
    if (!status_)
        QApplication::exec();
    Stop();
    const bool isSoundLost = audioFailed_ && status_ == kDone;
    return isSoundLost ? kNothingPlayed : status_.value_or(kDone);
}

void Session::SetUpEngine()
{
    MediaEngineSettings engine;
    engine.gapless = true;
    if (!options_.audioFile.empty()) {
        engine.audioFile = common::PathToText(options_.audioFile);
        engine.audioFileFailed = [this] {
            audioFailed_ = true;
            terminal_.PrintLine(ForTerminal(options_.audioFile) + " can't be written");
        };
    }
    engine.loadVolume = [this] {
        MediaEngineVolume volume;
        volume.volume = std::clamp(settings_.GetNumber(kVolumeKey, volume.volume), 0, 100);
        volume.mute = settings_.GetNumber(kMuteKey, 0) != 0;
        return volume;
    };
    engine.storeVolume = [this](const MediaEngineVolume& volume) {
        settings_.SetNumber(kVolumeKey, volume.volume);
        settings_.SetNumber(kMuteKey, volume.mute ? 1 : 0);
    };
    SetMediaEngineSettings(std::move(engine));
}

void Session::LoadPlugins()
{
    for (const Plugins::Failure& failure : plugins_.Load(appFolder_, &form_, &pages_))
        TellFailure(failure);
    desktop_.ApplySkin(); // Each plug-in has brought its own part.
    pages_.CreateAll();
    memory_.RestorePane(form_);
    for (IPluginWindow* const page : pages_.GetAll()) {
        if (const IPlugin* const plugin = plugins_.Find(page->GetPluginId()))
            form_.SetPagePicture(page, plugin->GetIconFile());
    }
    pages_.ShowPluginPage(pages_.GetFirst());
}

void Session::TellFailure(const Plugins::Failure& failure)
{
    const String text =
        common::FormatText(GetText(u"STRID_KIVO_PLUGIN_FAILED"), {failure.name, failure.reason});
    messages_->Show(MessageKind::Error, String(), text);
}

void Session::StartPlaying()
{
    ITuneHiveRemote* const remote = plugins_.GetRemote();
    const bool wantsToPlay = !options_.items.empty() || options_.quitAtEnd;
    if (remote == nullptr) {
        if (!wantsToPlay || (screen_.IsVisible() && !options_.quitAtEnd))
            return;
        terminal_.PrintLine("nothing could be played: there is no player");
        status_ = kNothingPlayed;
        return;
    }
    Playback::Rules rules;
    rules.showsStatus = !screen_.IsVisible();
    const bool isForPicture = !options_.screenshot.empty(); // Then the picture ends the run.
    rules.quitsAtEnd = options_.quitAtEnd && !isForPicture;
    rules.quitsIfNothingPlayed = !screen_.IsVisible() && !options_.items.empty() && !isForPicture;
    playback_.emplace(*remote, terminal_, rules, [this](int status) { Leave(status); });
    if (!options_.musicServer.empty())
        remote->SetMusicServer(common::utf8_to_CString(options_.musicServer));
    playback_->Open(options_.items);
    if (rules.quitsAtEnd || rules.quitsIfNothingPlayed) {
        QObject::connect(&restTimer_, &QTimer::timeout, [this] { playback_->CheckRest(); });
        restTimer_.start(kRestPeriodMs);
    }
    if (rules.showsStatus && terminal_.IsTerminal()) {
        QObject::connect(&statusTimer_, &QTimer::timeout, [this] { playback_->ShowStatus(); });
        statusTimer_.start(kStatusPeriodMs);
    }
}

void Session::TakePicture()
{
    if (options_.screenshot.empty() || status_)
        return;
    screenshot_.emplace(options_.screenshot, [this](bool isWritten) {
        if (!isWritten)
            terminal_.PrintLine(ForTerminal(options_.screenshot) + " can't be written");
        Leave(isWritten ? kDone : kNothingPlayed);
    });
    if (playback_ && !options_.items.empty() && !playback_->HasSettled())
        playback_->SetSettledListener([this] { screenshot_->Start(); });
    else
        screenshot_->Start();
}

void Session::Leave(int status)
{
    if (status_)
        return;
    status_ = status;
    ui::CSkinWndManager::GetInstance()->InterruptAllModalForms();
    desktop_.CloseDialogs();
    QCoreApplication::exit(); // Each nested loop too.
}

void Session::Stop()
{
    statusTimer_.stop();
    restTimer_.stop();
    screenshot_.reset();
    firstPaint_.reset();
    form_.EndEdits();
    bool isAtRest = true;
    if (ITuneHiveRemote* const remote = plugins_.GetRemote()) {
        isAtRest = remote->StopWork(kStopWaitMs);
        PostQueue::Get().DeliverMessages(kFolderImportMessage);
    }
    playback_.reset();
    terminal_.ShowStatus({});
    memory_.Keep(form_);
    pages_.CloseAll();
    if (isAtRest)
        plugins_.Unload();
    else
        plugins_.UnloadInPlace();
    signs_->SetListener(nullptr);
    pages_.SetView(nullptr);
    settings_.Save();
    TellFailedWrites();
    if (isAtRest)
        return;
    signs_.reset(); // Contacts see what plays until the network has said that nothing does.
    terminal_.PrintLine("a disk doesn't answer; what could be saved is saved");
    std::_Exit(status_.value_or(kDone));
}

void Session::TellFailedWrites()
{
    String names;
    for (const String& path : TakeFailedWrites()) {
        terminal_.PrintLine(ForTerminal(path) + " could not be saved; its older form stands");
        names += path + u"\n";
    }
    // Whoever ends the session waits for no answer.
    if (!names.empty() && screen_.IsVisible() && closedByUser_) {
        messages_->Show(MessageKind::Error,
                        String(),
                        common::FormatText(GetText(u"STRID_KIVO_NOT_SAVED"), {names}));
    }
}

struct Program::Impl {
    Options options;
    MakeSigns makeSigns;
    Terminal terminal{STDERR_FILENO, Terminal::GetColumns(STDERR_FILENO)};
};

Program::Program(Options options)
    : Program(std::move(options), [](const String& localName) {
        return std::make_unique<SignNetwork>(localName, LoadXmppSignNetwork);
    })
{
}

Program::Program(Options options, MakeSigns makeSigns)
    : impl_(new Impl{std::move(options), std::move(makeSigns)})
{
}

Program::~Program() = default;

int Program::Run()
{
    const Options& options = impl_->options;
    Terminal& terminal = impl_->terminal;
    const std::string profile = options.profile.empty() ? GetDefaultProfile() : options.profile;
    const ProfileLock lock(profile);
    switch (lock.GetState()) {
    case ProfileState::Ours: break;
    case ProfileState::InUse:
        terminal.PrintLine("the profile " + ForTerminal(profile) + " is in use by another kivo");
        return kProfileInUse;
    case ProfileState::Failed:
        terminal.PrintLine(ForTerminal(profile) + ": " + lock.GetError());
        return kWrongUse;
    }
    RestoreProfile(profile);
    SetBeyond(/*on=*/true);
    return Session(options, profile, terminal, impl_->makeSigns).Run();
}

} // namespace kivo::host
