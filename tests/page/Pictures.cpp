// kivo_pictures OUTDIR MEDIADIR LOOK [SCENE…]: takes a picture of everything that a user meets on
// the first day, in one look of the desktop. `scripts/pictures` goes through all looks.

#include "host/QtText.h"
#include "host/Texts.h"
#include "shell/contracts/common/Text.h"
#include "shell/contracts/desktop/TuneHiveRemote.h"
#include "tests/page/Stage.h"
#include "tests/support/HttpServer.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QContextMenuEvent>
#include <QDir>
#include <QDragEnterEvent>
#include <QElapsedTimer>
#include <QHelpEvent>
#include <QLineEdit>
#include <QMenu>
#include <QMimeData>
#include <QPainter>
#include <QTest>
#include <QTimer>

#include <algorithm>
#include <cstdio>
#include <functional>
#include <string>
#include <vector>

namespace kivo::test {
namespace {

constexpr Look kLooks[] = {
    {.name = "light"        },
    {                     .name = "dark",           .dark = true},
    {                     .name = "rtl",    .rightToLeft = true},
    {                     .name = "dark-rtl",           .dark = true, .rightToLeft = true},
    {  .name = "font150",       .fontScale = 1.5},
    {   .name = "contrast",      .highContrast = true},
    {.name = "dark-contrast", .dark = true, .highContrast = true},
    {           .name = "german",                       .locale = "de"},
    {                 .name = "chinese",                       .locale = "zh_CN"},
};

std::string mediaFolder; // NOLINT(cppcoreguidelines-avoid-non-const-global-variables)

std::string File(const std::string& name)
{
    return mediaFolder + name;
}

const char kRussian[] = "Времена года, соч. 37а: Июнь. Баркарола - П. И. Чайковский";
const char kChinese[] = "春江花月夜 — 古筝与箫合奏，1962 年现场录音完整修复版";
const char kArabic[] = "لما بدا يتثنى، تسجيل قديم من إذاعة حلب مع الفرقة";
const char kBlue[] = "Blue Lanterns - Kite & Harbour";
const char kGone[] = "Old Radio Play, Episode 3.mp3";
const char kVideo[] = "Harbour at Dusk, 4K test.mkv";

std::vector<StageGroup> Library()
{
    return {
        {"playing",
         "",                         {
             {File("222.mp3"), "The Long Way Home - Ada Whitfield"},
             {File("557.mp3"), kChinese},
             {File("296.mp3"), kRussian},
             {File("363.mp3"), kArabic},
             {File("3725.mp3"), "field-recording-07.flac"},
             {File("178.mp3"), kBlue},
             {File("gone.mp3"), kGone},
             {File("271.mp3"), "Nocturne in E-flat - Op. 9 No. 2"},
         }                                                                       },
        {"mine",    "",              {{File("222.mp3"), "The Long Way Home - Ada Whitfield"}}},
        {"userb",   "For the train", {{File("320.mp3"), "Slow Coffee - The Window Seats"}}   },
        {"userc",
         "Sunday morning",           {
             {File("320.mp3"), "Slow Coffee - The Window Seats"},
             {File("188.mp3"), "Rain on Tin - Ada Whitfield"},
             {File("464.mp3"), "Kungsleden - Norr"},
         }                                                         },
    };
}

std::vector<StageGroup> LongLibrary()
{
    std::vector<StageGroup> groups = Library();
    const char* const files[] = {"222.mp3", "557.mp3", "296.mp3", "363.mp3", "178.mp3"};
    for (int i = 0; i < 600; ++i)
        groups[0].tracks.push_back({File(files[i % 5]), "Track " + std::to_string(i + 1)});
    return groups;
}

std::vector<StageGroup> Films()
{
    std::vector<StageGroup> groups = Library();
    groups[0].tracks.insert(groups[0].tracks.begin(), {File("dusk.mkv"), kVideo});
    return groups;
}

std::vector<StageGroup> Nothing()
{
    return {};
}

// What happens on the page before its picture; may wait in a loop of its own while it is taken.
using Act = void (*)(Stage& stage);

QString Say(const char16_t* id)
{
    return host::ToQString(host::GetText(id));
}

QWidget* FindNamed(const char16_t* id)
{
    QWidget* const widget = Stage::Find(Say(id));
    if (widget == nullptr)
        std::fprintf(stderr, "pictures: there is no \"%s\"\n", qPrintable(Say(id)));
    return widget;
}

void Press(const char16_t* id)
{
    auto* const button = qobject_cast<QAbstractButton*>(FindNamed(id));
    if (button == nullptr)
        return;
    QCursor::setPos(button->mapToGlobal(QPoint(8, button->height() - 4)));
    button->click();
}

void Click(Stage& stage, const char* row, Qt::KeyboardModifiers keys = {})
{
    QTest::mouseClick(
        stage.GetTree().viewport(), Qt::LeftButton, keys, stage.PlaceOf(QString::fromUtf8(row)));
}

void PlayRow(Stage& stage, const char* row)
{
    const QPoint place = stage.PlaceOf(QString::fromUtf8(row));
    QTest::mouseDClick(stage.GetTree().viewport(), Qt::LeftButton, {}, place);
    Stage::WaitUntil([&] { return stage.GetRemote().GetState() == 3; });
}

void PlayRussian(Stage& stage)
{
    PlayRow(stage, kRussian);
    stage.GetRemote().Seek(114);
    Stage::Turn(300);
    Click(stage, kBlue);
}

void OpenMenuAt(Stage& stage, const QPoint& place)
{
    QContextMenuEvent event(
        QContextMenuEvent::Mouse, place, stage.GetTree().viewport()->mapToGlobal(place));
    QApplication::sendEvent(stage.GetTree().viewport(), &event);
}

// Does it as soon as it can be done, from inside whatever loop then runs.
void Once(const std::function<bool()>& tryIt)
{
    auto* const timer = new QTimer(qApp);
    QObject::connect(timer, &QTimer::timeout, timer, [timer, tryIt, left = 60]() mutable {
        if (tryIt() || --left == 0)
            timer->deleteLater();
    });
    timer->start(50);
}

// Presses a key on an entry of the menu that is open.
void PressOnEntry(const char16_t* entry, Qt::Key key)
{
    Once([=] {
        auto* const menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
        if (menu == nullptr)
            return false;
        for (QAction* const action : menu->actions()) {
            if (action->text().section(u'\t', 0, 0) != Say(entry))
                continue;
            menu->setActiveAction(action);
            QTest::keyClick(menu, key);
            return true;
        }
        return false;
    });
}

void Unfold(const char16_t* entry)
{
    PressOnEntry(entry, qApp->isRightToLeft() ? Qt::Key_Left : Qt::Key_Right);
}

void Choose(const char16_t* entry)
{
    PressOnEntry(entry, Qt::Key_Return);
}

void DragOver(Stage& stage, const QPoint& place, const QMimeData& data)
{
    QWidget& viewport = *stage.GetTree().viewport();
    const auto actions = Qt::CopyAction | Qt::MoveAction;
    QDragEnterEvent enter(place, actions, &data, Qt::LeftButton, {});
    QApplication::sendEvent(&viewport, &enter);
    QDragMoveEvent move(place, actions, &data, Qt::LeftButton, {});
    QApplication::sendEvent(&viewport, &move);
}

// Drags the selected rows with the mouse; the drag waits in a loop of its own over `to`.
void DragRows(Stage& stage, const QPoint& from, const QPoint& to)
{
    QWidget& viewport = *stage.GetTree().viewport();
    QWindow* const window = stage.GetWindow().windowHandle();
    const QPoint goal = viewport.mapTo(&stage.GetWindow(), to);
    for (const int step : {1, 2, 3})
        QTimer::singleShot(
            150 * step, window, [=] { QTest::mouseMove(window, goal + QPoint(step, 0)); });
    QTest::mousePress(&viewport, Qt::LeftButton, {}, from);
    for (const int way : {20, 40}) {
        const QPointF place(from + QPoint(0, way));
        QMouseEvent move(QEvent::MouseMove,
                         place,
                         viewport.mapToGlobal(place),
                         Qt::NoButton,
                         Qt::LeftButton,
                         Qt::NoModifier);
        QApplication::sendEvent(&viewport, &move);
    }
}

QMimeData* MakeFiles()
{
    static QMimeData data;
    data.setData(QStringLiteral("text/uri-list"),
                 QByteArray::fromStdString("file://" + File("222.mp3")));
    return &data;
}

void ShowTip(QWidget& widget, const QPoint& place)
{
    QHelpEvent event(QEvent::ToolTip, place, widget.mapToGlobal(place));
    QApplication::sendEvent(&widget, &event);
}

void Tab(Stage& stage, int times)
{
    for (int i = 0; i < times; ++i) {
        QWidget* const focused = QApplication::focusWidget();
        QTest::keyClick(focused != nullptr ? focused : &stage.GetWindow(), Qt::Key_Tab);
    }
}

HttpServer& Server()
{
    static HttpServer server;
    server.Serve("/silent.mp3", [](const HttpRequest&, HttpAnswer& answer) { answer.Hang(); });
    return server;
}

struct Scene {
    const char* name = nullptr;
    std::vector<StageGroup> (*world)() = nullptr;
    Act act = nullptr;
    int width = 0;
    int height = 0;
};

const Scene kScenes[] = {
    {"empty",                                            Nothing, [](Stage&) {}                                                                                       },
    {"empty-focus",
     Nothing,                                                     [](Stage&) {
         FindNamed(u"STRID_TUNEHIVE_EMPTY_FOLDER")->setFocus(Qt::TabFocusReason);
         QTest::keyClick(QApplication::focusWidget(), Qt::Key_Shift);
     }                                                                                                                                                   },
    {"empty-drag",                                       Nothing, [](Stage& stage) { DragOver(stage, QPoint(100, 300), *MakeFiles()); }                               },
    {"empty-low",                                        Nothing, [](Stage&) {},                                                                                        340, 430},
    {"playing",                                               Library,                                                      PlayRussian                                                                                                                                                 },
    {"paused",
     Library,[](Stage& stage) {
         PlayRussian(stage);
         stage.GetRemote().Pause();
         Stage::WaitUntil([&] { return stage.GetRemote().GetState() == 2; }, 2000);
     }},
    {"narrow",                                             Library,                                                    PlayRussian,                                                                                                                                                                                                             280, 500},
    {"wide",                                       Library,PlayRussian,900, 600},
    {"long",
     LongLibrary,       [](Stage& stage) {
         PlayRow(stage, kRussian);
         stage.GetTree().setFocus();
         QTest::keyClick(&stage.GetTree(), Qt::Key_End);
         for (int i = 0; i < 15; ++i)
             QTest::keyClick(&stage.GetTree(), Qt::Key_PageUp);
     }                                                                                                        },
    {"pane",                                               Library,                                                      [](Stage&) { Press(u"STRID_TUNEHIVE_TIP_PANE"); }                                                                                                                                                    },
    {"pane-playing",
     Library,                                                    [](Stage& stage) {
         PlayRussian(stage);
         Press(u"STRID_TUNEHIVE_TIP_PANE");
     }                                          },
    {"video",
     Films,[](Stage& stage) {
         PlayRow(stage, kVideo);
         Stage::Turn(500);
         stage.GetRemote().Pause();
         Stage::Turn(500);
         Click(stage, kBlue);
     },340,
     740},
    {"opening",
     Library,                                                    [](Stage& stage) {
         stage.GetRemote().Open({common::utf8_to_CString(Server().GetUrl("/silent.mp3").c_str())},
                                u"playing",
                                /*playFirst=*/true);
         Stage::Turn(800);
     },                                                                                                        600,
     500},
    {"menu-add",                                             Library,                                                 [](Stage&) { Press(u"STRID_TUNEHIVE_TIP_ADD"); }                                                                                                                                                              },
    {"menu-mode",                                          Library,                                                     [](Stage&) { Press(u"STRID_TUNEHIVE_TIP_MODE"); }                                                                                                                                                   },
    {"menu-delete",
     Library,                                                       [](Stage& stage) {
         Click(stage, kBlue);
         Press(u"STRID_TUNEHIVE_TIP_DELETE");
     }                                                                                                                                                 },
    {"menu-host",
     Library,[](Stage& stage) {
         PlayRussian(stage);
         Press(u"STRID_KIVO_MENU");
     }},
    {"menu-group",
     Library,[](Stage& stage) {
         Unfold(u"STRID_TUNEHIVE_MENU_ADDTOGROUP");
         OpenMenuAt(stage, stage.PlaceOf("Sunday morning"));
     }},
    {"menu-track",
     Library,                                                    [](Stage& stage) {
         Click(stage, kBlue);
         Unfold(u"STRID_TUNEHIVE_MENU_COPYTOGROUP");
         OpenMenuAt(stage, stage.PlaceOf(kBlue));
     },340,
     680},
    {"menu-several",
     Library,                                                    [](Stage& stage) {
         Click(stage, kBlue);
         Click(stage, "The Long Way Home - Ada Whitfield", Qt::ShiftModifier);
         OpenMenuAt(stage, stage.PlaceOf(kBlue));
     }                                                                                                                                                                                                                                                        },
    {"form-address",
     Library,                                                    [](Stage&) {
         Choose(u"STRID_TUNEHIVE_MENU_ADD_URL");
         Press(u"STRID_TUNEHIVE_TIP_ADD");
     }                                                                                                                                                                                                                                                    },
    {"form-error",
     Library,                                                 [](Stage&) {
         Once([] {
             auto* const field =
                 qobject_cast<QLineEdit*>(Stage::Find(Say(u"STRID_TUNEHIVE_FORM_URL")));
             if (field == nullptr)
                 return false;
             field->setFocus();
             field->selectAll();
             QTest::keyClicks(field, "http://radio example.org/live");
             QTest::keyClick(field, Qt::Key_Return);
             return true;
         });
         Choose(u"STRID_TUNEHIVE_MENU_ADD_URL");
         Press(u"STRID_TUNEHIVE_TIP_ADD");
     }                                                                                                                                                              },
    {"form-files",
     Library,                                                     [](Stage&) {
         Choose(u"STRID_TUNEHIVE_MENU_ADD_LOCALFILE");
         Press(u"STRID_TUNEHIVE_TIP_ADD");
     }                                                                                                                                                   },
    {"form-combo",
     Library,                                                     [](Stage&) {
         Once([] {
             const QWidget* const form = QApplication::activeModalWidget();
             auto* const box = form != nullptr ? form->findChild<QComboBox*>() : nullptr;
             if (box == nullptr || !box->hasFocus())
                 return false;
             box->showPopup();
             return true;
         });
         Choose(u"STRID_TUNEHIVE_MENU_ADD_LOCALFILE");
         Press(u"STRID_TUNEHIVE_TIP_ADD");
     }                                                                                                                                                   },
    {"box-delete",
     Library,                                                     [](Stage& stage) {
         Choose(u"STRID_TUNEHIVE_MENU_DELETEGROUP");
         OpenMenuAt(stage, stage.PlaceOf("Sunday morning"));
     }                                                                                                                                                   },
    {"box-cabinet",
     Library,                                                     [](Stage&) {
         Choose(u"STRID_KIVO_CABINET");
         Press(u"STRID_KIVO_MENU");
     }                                                                                                                                                   },
    {"picker",                                       Nothing,                                                     [](Stage&) { Press(u"STRID_TUNEHIVE_EMPTY_FILES"); }                                                                                                                                                   },
    {"rename",
     Library,                                                     [](Stage& stage) {
         Click(stage, kBlue);
         QTest::keyClick(&stage.GetTree(), Qt::Key_F2);
     }                                                                                                                                                   },
    {"new-group",
     Library,                                                     [](Stage&) {
         Choose(u"STRID_TUNEHIVE_MENU_NEWGROUP");
         Press(u"STRID_TUNEHIVE_TIP_ADD");
     }                                                                                                                                                   },
    {"volume",
     Library,     [](Stage& stage) {
         PlayRussian(stage);
         Press(u"STRID_TUNEHIVE_TIP_VOLUME");
     }},
    {"drag-rows",
     Library,                                                     [](Stage& stage) {
         Click(stage, kBlue);
         Click(stage, "field-recording-07.flac", Qt::ControlModifier);
         DragRows(stage, stage.PlaceOf(kBlue), stage.PlaceOf(kChinese));
     }                                                                                                                                                   },
    {"drag-files",
     Library,                                                     [](Stage& stage) { DragOver(stage, stage.PlaceOf("Sunday morning"), *MakeFiles()); }                                                                                                                                                   },
    {"tip-gone",
     Library,                                                     [](Stage& stage) { ShowTip(*stage.GetTree().viewport(), stage.PlaceOf(kGone)); }                                                                                                                                                   },
    {"tip-button",
     Library,                                                     [](Stage&) {
         QWidget& button = *FindNamed(u"STRID_TUNEHIVE_TIP_NEXT");
         button.setAttribute(Qt::WA_UnderMouse);
         ShowTip(button, QPoint(16, 16));
     }                                                                                                                                                   },
    {"focus-play",
     Library,                                                     [](Stage& stage) {
         PlayRussian(stage);
         if (QWidget* const button = FindNamed(u"STRID_TUNEHIVE_TIP_PAUSE"))
             button->setFocus(Qt::TabFocusReason);
         QTest::keyClick(&stage.GetWindow(), Qt::Key_Shift);
     }                },
    {"focus-flat",
     Library,                                                     [](Stage& stage) {
         FindNamed(u"STRID_TUNEHIVE_TIP_VOLUME")->setFocus(Qt::TabFocusReason);
         QTest::keyClick(&stage.GetWindow(), Qt::Key_Shift);
     }                    },
    {"focus-row",
     Library,                                                     [](Stage& stage) {
         PlayRussian(stage);
         stage.GetTree().setFocus(Qt::TabFocusReason);
         QTest::keyClick(&stage.GetTree(), Qt::Key_Down, Qt::ShiftModifier);
     }                                                                                                                                                   },
    {"contacts",                                       Library,                                                     [](Stage&) { Press(u"STRID_KIVO_CONTACTS"); }                                                                                                                                                   },
    {"tab-focus",                                       Library,                                                     [](Stage& stage) { Tab(stage, 2); }                                                                                                                                                   },
};

// All that shows, as it lies on the screen.
QImage TakePicture(const Stage& stage)
{
    QList<QWidget*> shown;
    QRect whole = stage.GetWindow().geometry();
    for (QWidget* const widget : QApplication::topLevelWidgets()) {
        if (!widget->isVisible() || widget == &stage.GetWindow())
            continue;
        shown.append(widget);
        whole = whole.united(widget->geometry());
    }
    std::stable_sort(shown.begin(), shown.end(), [](const QWidget* a, const QWidget* b) {
        return a->width() * a->height() > b->width() * b->height();
    });
    shown.prepend(&stage.GetWindow());
    const qreal ratio = stage.GetWindow().devicePixelRatioF();
    const bool isAlone = shown.size() == 1;
    const QRect canvas = isAlone ? whole : whole.adjusted(-16, -16, 16, 16);
    QImage picture((QSizeF(canvas.size()) * ratio).toSize(), QImage::Format_RGB32);
    picture.setDevicePixelRatio(ratio);
    picture.fill(QColor(0x8E8A84));
    QPainter painter(&picture);
    for (QWidget* const widget : shown)
        painter.drawPixmap(widget->geometry().topLeft() - canvas.topLeft(), widget->grab());
    return picture;
}

void Take(const Look& look, const Scene& scene, const QDir& folder)
{
    constexpr int kSettled = 1200; // Milliseconds; menus and forms are open by then.
    constexpr int kLongestAct = 12000;
    const int width = static_cast<int>(scene.width * look.fontScale);
    Stage stage(look, scene.world(), width > 0 ? std::max(width, 280) : 0, scene.height);
    Stage::Turn(400); // The rows' lengths have come.
    bool isTaken = false;
    QTimer timer;
    timer.setSingleShot(true);
    QObject::connect(&timer, &QTimer::timeout, [&] {
        TakePicture(stage).save(folder.filePath(QString::fromLatin1(scene.name) + ".png"));
        isTaken = true;
        stage.CloseAllModal();
        QTest::keyClick(stage.GetWindow().windowHandle(), Qt::Key_Escape); // Ends a drag.
    });
    // From the act on: it may wait in a loop of its own until its menu or form is closed.
    QTimer::singleShot(0, [&] {
        scene.act(stage);
        if (!isTaken && !timer.isActive())
            timer.start(kSettled);
    });
    QTimer watch;
    QElapsedTimer clock;
    clock.start();
    QObject::connect(&watch, &QTimer::timeout, [&] {
        const bool waits = QApplication::activePopupWidget() != nullptr ||
                           QApplication::activeModalWidget() != nullptr ||
                           clock.elapsed() > kLongestAct; // In a drag, say.
        if (!isTaken && !timer.isActive() && waits)
            timer.start(kSettled);
    });
    watch.start(50);
    Stage::WaitUntil([&] { return isTaken; }, 30000);
    Stage::Turn(50);
}

int Run(int argc, char** argv)
{
    QApplication application(argc, argv);
    const QStringList arguments = QApplication::arguments();
    if (arguments.size() < 4) {
        std::fprintf(stderr, "usage: kivo_pictures OUTDIR MEDIADIR LOOK [SCENE...]\n");
        return 2;
    }
    mediaFolder = arguments[2].toStdString() + "/";
    const Look* const look =
        std::find_if(std::begin(kLooks), std::end(kLooks), [&](const Look& one) {
            return arguments[3] == QLatin1String(one.name);
        });
    if (look == std::end(kLooks)) {
        std::fprintf(stderr, "pictures: there is no look \"%s\"\n", qPrintable(arguments[3]));
        return 2;
    }
    SetUpFonts(qEnvironmentVariable("KIVO_PICTURE_FONT", "DejaVu Sans").toUtf8(), look->fontScale);
    const QDir folder(arguments[1]);
    QDir().mkpath(folder.path());
    for (const Scene& scene : kScenes) {
        if (arguments.size() > 4 && !arguments.mid(4).contains(QLatin1String(scene.name)))
            continue;
        Take(*look, scene, folder);
    }
    return 0;
}

} // namespace
} // namespace kivo::test

int main(int argc, char** argv)
{
    return kivo::test::Run(argc, argv);
}
