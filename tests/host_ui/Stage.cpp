#include "tests/host_ui/Stage.h"

#include "host/QtText.h"
#include "shell/contracts/base/Beyond.h"
#include "shell/contracts/common/AppPath.h"
#include "shell/contracts/common/Language.h"
#include "shell/contracts/ui/SkinManager.h"
#include "shell/contracts/ui/SkinWndManager.h"

#include <gtest/gtest.h>
#include <QAbstractButton>
#include <QAccessible>
#include <QApplication>
#include <QDir>
#include <QLineEdit>
#include <QTest>
#include <QTimer>
#include <QTreeView>

#include <stdexcept>

namespace kivo::host {

namespace {

String FromUtf8(const std::string& text)
{
    return common::utf8_to_CString(text);
}

QString GetAccessibleName(QWidget& widget)
{
    QAccessibleInterface* const access = QAccessible::queryAccessibleInterface(&widget);
    return access != nullptr ? access->text(QAccessible::Name) : QString();
}

template <class Widget>
Widget& FindNamed(QWidget& below, const QString& name)
{
    for (Widget* const widget : below.findChildren<Widget*>()) {
        if (widget->isVisible() && GetAccessibleName(*widget) == name)
            return *widget;
    }
    throw std::runtime_error("nothing is called " + name.toStdString());
}

struct Ender {
    Ender() = default;
    Ender(const Ender&) = delete;
    Ender& operator=(const Ender&) = delete;
    ~Ender() { ui::CSkinWndManager::GetInstance()->InterruptAllModalForms(); }
};

} // namespace

Stage::Stage(const StageLook& look)
{
    pictures = FromUtf8(KIVO_APP_FOLDER "plugin/tunehive/skin/icon_");
    SetBeyond(true);
    common::SetAppPath(FromUtf8(KIVO_APP_FOLDER));
    common::CMutiLanSupport& texts = *common::CMutiLanSupport::GetInstance();
    texts.Clear();
    texts.AddTable(FromUtf8(KIVO_HOST_FOLDER "lang/en/stringid.ini"));
    texts.AddTable(
        FromUtf8(std::string(KIVO_HOST_FOLDER "lang/") + look.language + "/stringid.ini"));
    texts.SetLangSetting(FromUtf8(look.language));
    ui::CSkinManager& skin = *ui::CSkinManager::GetInstance();
    skin.Clear();
    skin.IncludeSkinFile(FromUtf8(KIVO_APP_FOLDER "skin/skin.xml"));
    skin.IncludeSkinFile(FromUtf8(KIVO_APP_FOLDER "plugin/tunehive/skin.xml"));
    skin.IncludeSkinFile(FromUtf8(KIVO_APP_FOLDER "skin/host_skin.xml"));
    skin.IncludeSkinBuildFile(FromUtf8(KIVO_HOST_FOLDER "skin/host_build.xml"));
    QFont font(QStringLiteral("DejaVu Sans"));
    font.setPixelSize(static_cast<int>(13 * look.fontScale));
    QApplication::setFont(font);
    ui::qt::DesktopOptions options;
    options.dark = look.dark;
    options.rightToLeft = look.rightToLeft;
    options.highContrast = false;
    desktop_ = std::make_unique<ui::qt::QtDesktop>(options);
    desktop_->ApplySkin();
}

Stage::~Stage()
{
    network.listener = nullptr;
    form_.reset();
    PostQueue::Get().RunPending();
    desktop_.reset();
    ui::CSkinManager::GetInstance()->Clear();
    ui::CSkinManager::GetInstance()->SetRightToLeft(false);
    QGuiApplication::setLayoutDirection(Qt::LeftToRight);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    common::CMutiLanSupport::GetInstance()->Clear();
    SetBeyond(false);
}

void Stage::Open(int width, int height)
{
    form_ = std::make_unique<MainForm>(contacts, MakeCommands(), MakeContactCommands());
    form_->Open({width, height}, std::nullopt);
    desk.SetWindow(form_.get());
    contacts.SetAccountOn(account.IsOn());
    network.SetListener(&contacts);
    form_->ShowWindow(/*command=*/5);
    EXPECT_TRUE(QTest::qWaitForWindowActive(&GetWindow()));
    EXPECT_EQ(ui::CSkinManager::GetInstance()->TakeBuildFaults(), std::vector<String>());
    Settle();
}

void Stage::SignIn()
{
    ContactsRoom::SignIn(u"mara@example.org");
    Settle();
}

void Stage::AddSamples()
{
    Add(u"sam@example.org", u"Sam Okafor", SignPresence::Offline);
    Add(u"leyla@example.org", u"ليلى حداد", SignPresence::Offline);
    Add(u"tomas@example.org", u"Tomás Rey", SignPresence::Offline);
    Add(u"priya@example.org", u"Priya Raman", SignPresence::Away);
    Add(u"oksana@example.org", u"Оксана Гринчук", SignPresence::Busy);
    Add(u"lin@example.org", u"林 小雨", SignPresence::Online);
    Add(u"jonas@example.org", u"Jonas Ekberg", SignPresence::Online);
    network.SetSignOf(u"jonas@example.org",
                      u"music",
                      u"Slow Coffee - The Window Seats",
                      u"http://radio.example.org/live");
    network.SetSignOf(u"lin@example.org",
                      u"music",
                      u"春江花月夜 — 古筝与箫合奏，1962 年录音，上海音乐学院",
                      u"https://radio.example.org/guzheng");
    network.SetSignOf(
        u"oksana@example.org", u"video", u"Harbour at Dusk, 4K test.mkv", u"/Harbour");
    Settle();
}

QWidget& Stage::GetWindow()
{
    for (QWidget* const widget : QApplication::topLevelWidgets()) {
        if (widget->windowTitle() == QLatin1String("kivo") && widget->isVisible())
            return *widget;
    }
    throw std::runtime_error("there is no window");
}

QTreeView& Stage::GetList()
{
    auto* const list = GetWindow().findChild<QTreeView*>();
    if (list == nullptr)
        throw std::runtime_error("there is no list");
    return *list;
}

QAbstractButton& Stage::GetButton(QWidget& below, const QString& name)
{
    return FindNamed<QAbstractButton>(below, name);
}

QAbstractButton& Stage::GetButtonAt(QWidget& form, const String& id)
{
    const ui::CSkinObject* const control =
        ui::CSkinWndManager::GetInstance()->GetModalForms().back()->FindControlRecusive(id);
    if (control == nullptr)
        throw std::runtime_error("the form has no such control");
    return GetButton(form, ToQString(control->GetAccessibleName()));
}

QLineEdit& Stage::GetField(QWidget& below, const QString& name)
{
    return FindNamed<QLineEdit>(below, name);
}

void Stage::InModal(std::function<void(QWidget& form)> act)
{
    auto* const timer = new QTimer(QCoreApplication::instance());
    QObject::connect(timer, &QTimer::timeout, timer, [timer, act = std::move(act)] {
        QWidget* const form = QApplication::activeModalWidget();
        if (form == nullptr)
            return; // Not yet.
        timer->stop();
        timer->deleteLater();
        const Ender ender; // Whatever happens: an open form would wait for ever.
        ASSERT_TRUE(QTest::qWaitForWindowActive(form));
        ASSERT_TRUE(QTest::qWaitFor([form] {
            const QWidget* const focused = QApplication::focusWidget();
            return focused != nullptr && form->isAncestorOf(focused);
        }));
        try {
            act(*form);
        } catch (const std::runtime_error& error) {
            ADD_FAILURE() << error.what();
        }
    });
    timer->start(0);
}

void Stage::Settle()
{
    PostQueue::Get().RunPending();
    for (int turn = 0; turn < 3; ++turn) {
        QCoreApplication::sendPostedEvents();
        QCoreApplication::processEvents();
    }
}

QImage Stage::Grab(QWidget& widget, const std::string& name)
{
    Settle();
    QImage image = widget.grab().toImage();
    const QString folder = qEnvironmentVariable("KIVO_PICTURES");
    if (!folder.isEmpty())
        image.save(QDir(folder).filePath(QString::fromStdString(name) + QLatin1String(".png")));
    return image;
}

} // namespace kivo::host
