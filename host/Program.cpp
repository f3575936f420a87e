#include "host/Program.h"

#include "host/EventLoop.h"
#include "host/HostSettings.h"
#include "host/Messages.h"
#include "host/Pages.h"
#include "host/Playback.h"
#include "host/Plugins.h"
#include "host/Profile.h"
#include "host/Screen.h"
#include "host/Services.h"
#include "host/sign/LocalSignNetwork.h"
#include "host/StopSignals.h"
#include "host/Terminal.h"
#include "host/Texts.h"
#include "host/UserLanguage.h"
#include "platform/base/PostQueue.h"
#include "shell/contracts/base/Beyond.h"
#include "shell/contracts/common/AppPath.h"
#include "shell/contracts/common/Text.h"
#include "shell/contracts/control/MediaEngineSettings.h"
#include "shell/contracts/framework/Files.h"
#include "shell/contracts/framework/Windows.h"

#include <QApplication>
#include <QTimer>
#include <unistd.h>

#include <algorithm>
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

} // namespace

// What stands between the lock on the profile and its release. The order of the members is that of
// the start; they go in the opposite one.
class Session {
public:
    Session(const Options& options, const std::string& profile, Terminal& terminal);
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;
    ~Session() = default;

    int Run();

private:
    void SetUpEngine();
    void LoadPlugins();
    void TellFailure(const Plugins::Failure& failure);
    void StartPlaying();
    void Leave(int status); // From anywhere, also from inside a modal form.
    void Stop();
    void TellFailedWrites();

    const Options& options_;
    Terminal& terminal_;
    std::string appFolder_ = FindAppFolder();
    HostSettings settings_;
    Screen screen_;
    EventLoop loop_;
    LocalSignNetwork signs_;
    std::unique_ptr<IMessages> messages_;
    Pages pages_;
    Services services_;
    CWnd form_;
    Plugins plugins_;
    StopSignals signals_;
    std::optional<Playback> playback_;
    QTimer statusTimer_;
    std::optional<int> status_; // Set once the run is to end.
    bool pluginFailed_ = false;
    bool audioFailed_ = false;
};

Session::Session(const Options& options, const std::string& profile, Terminal& terminal)
    : options_(options)
    , terminal_(terminal)
    , settings_(profile + kSettingsFile)
    , signs_(common::PathToText(GetLocalUserName()))
    , messages_(screen_.IsVisible() ? MakeBoxMessages() : MakeTerminalMessages(terminal))
    , services_({settings_, signs_, *messages_, pages_}, common::PathToText(profile + "/"))
    , signals_([this] { Leave(kDone); })
{
    common::SetAppPath(common::PathToText(appFolder_));
    LoadTexts(appFolder_, GetEnvironmentLocale());
    SetUpEngine();
    form_.CreateHandle();
}

int Session::Run()
{
    if (!screen_.IsVisible())
        terminal_.PrintLine("there is no display; running without a window");
    LoadPlugins();
    if (!status_)
        StartPlaying();
    if (!status_)
        QApplication::exec();
    Stop();
    const bool failed = audioFailed_ && status_ == kDone;
    return failed ? kNothingPlayed : status_.value_or(kDone);
}

void Session::SetUpEngine()
{
    MediaEngineSettings engine;
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
    pages_.CreateAll();
    pages_.ShowPluginPage(pages_.GetFirst());
}

void Session::TellFailure(const Plugins::Failure& failure)
{
    pluginFailed_ = true;
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
    rules.quitsAtEnd = options_.quitAtEnd;
    rules.quitsIfNothingPlayed = !screen_.IsVisible() && !options_.items.empty();
    playback_.emplace(*remote, terminal_, rules, [this](int status) { Leave(status); });
    if (!options_.musicServer.empty())
        remote->SetMusicServer(common::utf8_to_CString(options_.musicServer));
    playback_->Open(options_.items);
    if (rules.showsStatus && terminal_.IsTerminal()) {
        QObject::connect(&statusTimer_, &QTimer::timeout, [this] { playback_->ShowStatus(); });
        statusTimer_.start(kStatusPeriodMs);
    }
}

void Session::Leave(int status)
{
    if (status_)
        return;
    status_ = status;
    QCoreApplication::exit(); // Each nested loop too, so an open form ends as if it were cancelled.
}

void Session::Stop()
{
    statusTimer_.stop();
    bool isAtRest = true;
    if (ITuneHiveRemote* const remote = plugins_.GetRemote()) {
        isAtRest = remote->StopWork(kStopWaitMs);
        PostQueue::Get().DeliverMessages(kFolderImportMessage);
    }
    playback_.reset();
    terminal_.ShowStatus({});
    pages_.CloseAll();
    if (isAtRest)
        plugins_.Unload();
    else
        plugins_.UnloadInPlace();
    settings_.Save();
    TellFailedWrites();
    if (isAtRest)
        return;
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
    if (!names.empty() && screen_.IsVisible()) {
        messages_->Show(MessageKind::Error,
                        String(),
                        common::FormatText(GetText(u"STRID_KIVO_NOT_SAVED"), {names}));
    }
}

struct Program::Impl {
    Options options;
    Terminal terminal{STDERR_FILENO, Terminal::GetColumns(STDERR_FILENO)};
};

Program::Program(Options options)
    : impl_(new Impl{std::move(options)})
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
    SetBeyond(true);
    return Session(options, profile, terminal).Run();
}

} // namespace kivo::host
