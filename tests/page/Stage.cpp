#include "tests/page/Stage.h"

#include "host/Account.h"
#include "host/ContactDesk.h"
#include "host/Contacts.h"
#include "host/EventLoop.h"
#include "host/HostSettings.h"
#include "host/MainForm.h"
#include "host/Messages.h"
#include "host/Pages.h"
#include "host/PlayerKeys.h"
#include "host/Plugins.h"
#include "host/QtText.h"
#include "host/Services.h"
#include "host/sign/SignNetwork.h"
#include "host/Texts.h"
#include "platform/base/PostQueue.h"
#include "platform/ui/qt/QtDesktop.h"
#include "shell/contracts/base/Beyond.h"
#include "shell/contracts/base/IPlugin.h"
#include "shell/contracts/base/IPluginWindow.h"
#include "shell/contracts/common/AppPath.h"
#include "shell/contracts/common/Text.h"
#include "shell/contracts/control/MediaEngineSettings.h"
#include "shell/contracts/desktop/TuneHiveRemote.h"
#include "shell/contracts/framework/Paths.h"
#include "shell/contracts/ui/SkinManager.h"
#include "shell/contracts/ui/SkinWndManager.h"
#include "tests/support/QtInput.h"
#include "tests/support/TempFolder.h"

#include <QAccessible>
#include <QElapsedTimer>
#include <QMouseEvent>
#include <QTest>
#include <QTimer>

#include <algorithm>
#include <cstdio>
#include <stdexcept>
#include <utility>

namespace kivo::test {

namespace {

constexpr int kStopWaitMs = 5000;
constexpr int kSetFont = 13; // Pixels.

ui::qt::DesktopOptions MakeOptions(const Look& look)
{
    ui::qt::DesktopOptions options;
    options.dark = look.dark;
    options.highContrast = look.highContrast;
    options.rightToLeft = look.rightToLeft;
    options.nativePickers = false;
    return options;
}

std::string EscapeXml(const std::string& text)
{
    return QString::fromStdString(text).toHtmlEscaped().toStdString();
}

void WriteGroups(const TempFolder& profile, const std::vector<StageGroup>& groups)
{
    const std::string head = "<?xml version=\"1.0\" encoding=\"utf-8\" standalone=\"no\" ?>\n";
    std::string names = head + "<Groups>\n";
    for (const StageGroup& group : groups) {
        std::string items = head + "<Items>\n";
        for (const StageTrack& track : group.tracks)
            items += "<Item path=\"" + EscapeXml(track.path) + "\" name=\"" +
                     EscapeXml(track.name) + "\" />\n";
        profile.Write("tunehive/" + group.id + ".kvm", items + "</Items>\n");
        if (!group.name.empty())
            names += "<Group id=\"" + group.id + "\" name=\"" + EscapeXml(group.name) + "\" />\n";
    }
    profile.Write("tunehive/ginfo.xml", names + "</Groups>\n");
}

String MakeAppPath()
{
    String app = common::utf8_to_CString(KIVO_APP_FOLDER);
    common::SetAppPath(app);
    return app;
}

} // namespace

void SetUpFonts(const char* font, double scale)
{
    QFont chosen{QString::fromLatin1(font)};
    chosen.setPixelSize(static_cast<int>(kSetFont * scale));
    QApplication::setFont(chosen);
}

struct Stage::Impl {
    Impl(const Look& look, const std::vector<StageGroup>& groups)
        : settings(profile.GetNative().native() + "/host.ini")
        , desktop(MakeOptions(look))
        , signs(u"Mara Lindqvist")
        , messages(host::MakeBoxMessages())
        , services({settings, account, signs, *messages, pages}, profile.GetPath())
        , desk({signs, account, contacts, services})
        , form(contacts, MakeCommands(), MakeContactCommands())
        , keys([this] { return plugins.GetRemote(); })
    {
        SetBeyond(/*on=*/true);
        WriteGroups(profile, groups);
        host::LoadTexts(KIVO_APP_FOLDER, look.locale);
        MediaEngineSettings engine;
        engine.silent = true;
        engine.gapless = true; // As in the program.
        SetMediaEngineSettings(std::move(engine));
    }

    host::MainForm::Commands MakeCommands()
    {
        host::MainForm::Commands commands;
        commands.quit = [] {};
        commands.show = [this](IPluginWindow* page) { pages.ShowPluginPage(page); };
        commands.showSigns = [this](bool show) { services.ShowMediaState(show); };
        commands.areSignsShown = [this] { return services.IsMediaStateShown(); };
        commands.getOwnName = [this] { return signs.GetOwnId(); };
        commands.isAccountOn = [this] { return account.IsOn(); };
        commands.isTitleOnly = [this] { return account.IsTitleOnly(); };
        commands.setTitleOnly = [this](bool titleOnly) { desk.SetTitleOnly(titleOnly); };
        commands.signOut = [this] { desk.SignOut(); };
        commands.goToOwnSign = [this] { services.ActivateOwnSign(); };
        commands.hasCabinet = [this] { return plugins.GetRemote() != nullptr; };
        commands.openCabinet = [this] { plugins.GetRemote()->OpenWebForm(); };
        return commands;
    }

    host::ContactCommands MakeContactCommands()
    {
        host::ContactCommands commands;
        commands.activateSign = [](const String& /*id*/) {};
        commands.answer = [this](const String& id) { desk.Answer(id); };
        commands.remove = [this](const String& id) { desk.Remove(id); };
        commands.rename = [this](const String& id, const String& name) { desk.Rename(id, name); };
        commands.addContact = [this] { desk.AddContact(); };
        commands.setUpAccount = [this] { desk.SetUpAccount(); };
        commands.givePassword = [this] { desk.GivePassword(); };
        commands.judgeCertificate = [this] { desk.JudgeCertificate(); };
        commands.tryNow = [this] { desk.SignIn(); };
        commands.getSignPicture = [this](const String& kind) {
            IPlugin* const plugin = plugins.FindForSign(kind);
            return plugin != nullptr ? plugin->GetStateSignIconPath(kind) : String();
        };
        commands.getServer = [this] { return desk.GetServer(); };
        commands.getNow = [] { return std::int64_t{0}; };
        return commands;
    }

    void Open(int width, int height)
    {
        ui::CSkinManager& skin = *ui::CSkinManager::GetInstance();
        for (const char16_t* file : {u"%sskin\\skin.xml", u"%sskin\\host_skin.xml"})
            skin.IncludeSkinFile(ComposePath(file, {app}));
        skin.IncludeSkinBuildFile(ComposePath(u"%sskin\\host_build.xml", {app}));
        desktop.ApplySkin();
        form.Open({width, height}, std::nullopt);
        form.SetOwnName(signs.GetOwnId());
        desk.SetWindow(&form);
        contacts.SetAccountOn(account.IsOn());
        signs.SetListener(&contacts);
        pages.SetView(&form);
        if (!plugins.Load(KIVO_APP_FOLDER, &form, &pages).empty())
            throw std::runtime_error("the plug-in can't be loaded");
        desktop.ApplySkin();
        pages.CreateAll();
        for (IPluginWindow* const page : pages.GetAll()) {
            if (const IPlugin* const plugin = plugins.Find(page->GetPluginId()))
                form.SetPagePicture(page, plugin->GetIconFile());
        }
        pages.ShowPluginPage(pages.GetFirst());
        form.ShowWindow(/*command=*/5);
    }

    void Close()
    {
        form.EndEdits();
        if (ITuneHiveRemote* const remote = plugins.GetRemote()) {
            remote->StopWork(kStopWaitMs);
            PostQueue::Get().DeliverMessages(kFolderImportMessage);
        }
        pages.CloseAll();
        plugins.Unload();
        signs.SetListener(nullptr);
        pages.SetView(nullptr);
    }

    TempFolder profile;
    String app = MakeAppPath();
    host::HostSettings settings;
    host::Account account{settings};
    ui::qt::QtDesktop desktop;
    host::EventLoop loop;
    host::SignNetwork signs;
    host::Contacts contacts;
    std::unique_ptr<host::IMessages> messages;
    host::Pages pages;
    host::Services services;
    host::ContactDesk desk;
    host::MainForm form;
    host::Plugins plugins;
    host::PlayerKeys keys;
    QWidget* window = nullptr;
};

Stage::Stage(const Look& look, const std::vector<StageGroup>& groups, int width, int height)
    : impl_(std::make_unique<Impl>(look, groups))
{
    impl_->Open(width, height);
    for (QWidget* const widget : QApplication::topLevelWidgets()) {
        if (widget->isVisible() && widget->isWindow())
            impl_->window = widget;
    }
    impl_->window->activateWindow();
    // The last input was the mouse's, as after most starts: no focus shows until a key is pressed.
    const QPointF corner(2, 2);
    QMouseEvent press(QEvent::MouseButtonPress,
                      corner,
                      impl_->window->mapToGlobal(corner),
                      Qt::LeftButton,
                      Qt::LeftButton,
                      Qt::NoModifier);
    QApplication::sendEvent(impl_->window, &press);
    Turn(50);
}

Stage::~Stage()
{
    CloseAllModal();
    impl_->Close();
    impl_.reset();
    ui::CSkinManager::GetInstance()->Clear();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    SetBeyond(/*on=*/false);
}

QWidget& Stage::GetWindow() const
{
    return *impl_->window;
}

QTreeView& Stage::GetTree() const
{
    const QString name = Say(u"STRID_TUNEHIVE_NAME_TREE");
    for (QTreeView* const tree : impl_->window->findChildren<QTreeView*>()) {
        if (tree->accessibleName() == name)
            return *tree;
    }
    throw std::runtime_error("the page has no tree");
}

ITuneHiveRemote& Stage::GetRemote() const
{
    return *impl_->plugins.GetRemote();
}

QString Say(const char16_t* id)
{
    return host::ToQString(host::GetText(id));
}

QWidget* Stage::Find(const QString& name)
{
    for (QWidget* const widget : QApplication::allWidgets()) {
        if (!widget->isVisible())
            continue;
        const QAccessibleInterface* const access = QAccessible::queryAccessibleInterface(widget);
        if (access != nullptr && access->role() != QAccessible::StaticText &&
            access->text(QAccessible::Name) == name)
            return widget;
    }
    return nullptr;
}

QModelIndex Stage::FindRow(const QString& text) const
{
    const QAbstractItemModel& model = *GetTree().model();
    for (QModelIndex row = model.index(0, 0); row.isValid(); row = GetTree().indexBelow(row)) {
        if (row.data().toString() == text)
            return row;
    }
    return {};
}

QPoint Stage::PlaceOf(const QString& text) const
{
    return GetTree().visualRect(FindRow(text)).center();
}

bool Stage::Play(const std::vector<std::string>& paths) const
{
    std::vector<String> texts;
    texts.reserve(paths.size());
    for (const std::string& path : paths)
        texts.push_back(common::PathToText(path));
    GetRemote().Open(texts, u"playing", /*playFirst=*/true);
    return WaitUntil([this] { return GetRemote().GetState() == 3; });
}

bool Stage::WaitUntil(const std::function<bool()>& isSo, int milliseconds)
{
    QElapsedTimer clock;
    clock.start();
    while (!isSo()) {
        if (clock.elapsed() > milliseconds)
            return false;
        Turn(10);
    }
    return true;
}

void Stage::Turn(int milliseconds)
{
    QElapsedTimer clock;
    clock.start();
    do {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents | QEventLoop::AllEvents, 10);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    } while (clock.elapsed() < milliseconds);
}

void Stage::Once(const std::function<bool()>& tryIt)
{
    auto* const timer = new QTimer(qApp);
    QObject::connect(timer, &QTimer::timeout, timer, [timer, tryIt, left = 300]() mutable {
        if (!tryIt() && --left > 0)
            return;
        timer->deleteLater();
        if (left > 0)
            return;
        std::fputs("page: what was waited for never came\n", stderr);
        QApplication::closeAllWindows(); // Lest what waits for an answer waits on.
    });
    timer->start(20);
}

void Stage::StartDrag(const QPoint& from, const QPoint& to, int stepMs) const
{
    QWidget& rows = *GetTree().viewport();
    QWindow* const window = GetWindow().windowHandle();
    const QPoint goal = rows.mapTo(&GetWindow(), to);
    for (const int step : {1, 2, 3})
        QTimer::singleShot(
            stepMs * step, window, [=] { QTest::mouseMove(window, goal + QPoint(step, 0)); });
    QTest::mousePress(&rows, Qt::LeftButton, {}, from);
    for (const int way : {20, 40}) {
        const QPointF place(from + QPoint(0, way));
        DragTo(rows, place);
    }
}

void Stage::OpenMenuAt(const QPoint& place, QContextMenuEvent::Reason reason) const
{
    QWidget& rows = *GetTree().viewport();
    QContextMenuEvent event(reason, place, rows.mapToGlobal(place));
    QApplication::sendEvent(&rows, &event);
}

void Stage::CloseAllModal()
{
    ui::CSkinWndManager::GetInstance()->InterruptAllModalForms();
    impl_->desktop.CloseDialogs();
}

} // namespace kivo::test
