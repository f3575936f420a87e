#include "tests/page/Scenes.h"

#include "shell/contracts/common/Text.h"
#include "shell/contracts/desktop/TuneHiveRemote.h"
#include "tests/support/HttpServer.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QDragEnterEvent>
#include <QHelpEvent>
#include <QLineEdit>
#include <QMenu>
#include <QMimeData>
#include <QTest>

#include <cstdio>

namespace kivo::test {
namespace {

using Act = std::function<void(Stage& stage)>;

const char kRussian[] = "Времена года, соч. 37а: Июнь. Баркарола - П. И. Чайковский";
const char kChinese[] = "春江花月夜 — 古筝与箫合奏，1962 年现场录音完整修复版";
const char kArabic[] = "لما بدا يتثنى، تسجيل قديم من إذاعة حلب مع الفرقة";
const char kLongWay[] = "The Long Way Home - Ada Whitfield";
const char kSunday[] = "Sunday morning";
const char kBlue[] = "Blue Lanterns - Kite & Harbour";
const char kField[] = "field-recording-07.flac";
const char kGone[] = "Old Radio Play, Episode 3.mp3";
const char kVideo[] = "Harbour at Dusk, 4K test.mkv";

const char kCoffee[] = "Slow Coffee - The Window Seats";

using Tracks = std::vector<StageTrack>;

std::vector<StageGroup> MakeLibrary(const std::string& media)
{
    const Tracks playing = {
        {media + "222.mp3",  kLongWay                          },
        {media + "557.mp3",  kChinese                          },
        {media + "296.mp3",  kRussian                          },
        {media + "363.mp3",  kArabic                           },
        {media + "3725.mp3", kField                            },
        {media + "178.mp3",  kBlue                             },
        {media + "gone.mp3", kGone                             },
        {media + "271.mp3",  "Nocturne in E-flat - Op. 9 No. 2"},
    };
    const Tracks sunday = {
        {media + "320.mp3", kCoffee                      },
        {media + "188.mp3", "Rain on Tin - Ada Whitfield"},
        {media + "464.mp3", "Kungsleden - Norr"          },
    };
    return {
        {"playing", "",              playing                        },
        {"mine",    "",              {{media + "222.mp3", kLongWay}}},
        {"userb",   "For the train", {{media + "320.mp3", kCoffee}} },
        {"userc",   kSunday,         sunday                         },
    };
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

// Presses a key on an entry of the menu that is open.
void PressOnEntry(const char16_t* entry, Qt::Key key)
{
    Stage::Once([=] {
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

QMimeData& MakeFiles()
{
    static QMimeData data;
    data.setData(QStringLiteral("text/uri-list"), "file:///222.mp3");
    return data;
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

// What happens in a scene, from parts.

Act Pressed(const char16_t* button)
{
    return [=](Stage&) { Press(button); };
}

Act Chosen(const char16_t* button, const char16_t* entry)
{
    return [=](Stage&) {
        Choose(entry);
        Press(button);
    };
}

Act MenuAt(const char* row, const char16_t* unfolded)
{
    return [=](Stage& stage) {
        Unfold(unfolded);
        stage.OpenMenuAt(stage.PlaceOf(row));
    };
}

Act Clicked(const char* row)
{
    return [=](Stage& stage) { Click(stage, row); };
}

Act Focused(const char16_t* control)
{
    return [=](Stage& stage) {
        FindNamed(control)->setFocus(Qt::TabFocusReason);
        QTest::keyClick(&stage.GetWindow(), Qt::Key_Shift); // Focus shows after a key.
    };
}

Act Then(const Act& first, const Act& second)
{
    return [=](Stage& stage) {
        first(stage);
        second(stage);
    };
}

void Pause(Stage& stage)
{
    stage.GetRemote().Pause();
    Stage::WaitUntil([&] { return stage.GetRemote().GetState() == 2; }, 2000);
    Stage::Turn(200);
}

void ScrollToTheMiddle(Stage& stage)
{
    stage.GetTree().setFocus();
    QTest::keyClick(&stage.GetTree(), Qt::Key_End);
    for (int i = 0; i < 15; ++i)
        QTest::keyClick(&stage.GetTree(), Qt::Key_PageUp);
}

void OpenAddress(Stage& stage)
{
    const String url = common::utf8_to_CString(Server().GetUrl("/silent.mp3").c_str());
    stage.GetRemote().Open({url}, u"playing", /*playFirst=*/true);
    Stage::Turn(800);
}

void PlayFilm(Stage& stage)
{
    PlayRow(stage, kVideo);
    Stage::Turn(500);
}

void OpenMenuOfSeveral(Stage& stage)
{
    Click(stage, kBlue);
    Click(stage, kLongWay, Qt::ShiftModifier);
    stage.OpenMenuAt(stage.PlaceOf(kBlue));
}

void TypeWrongAddress(Stage&)
{
    Stage::Once([] {
        auto* const field = qobject_cast<QLineEdit*>(Stage::Find(Say(u"STRID_TUNEHIVE_FORM_URL")));
        if (field == nullptr)
            return false;
        field->setFocus();
        field->selectAll();
        QTest::keyClicks(field, "http://radio example.org/live");
        QTest::keyClick(field, Qt::Key_Return);
        return true;
    });
}

void OpenComboOfForm(Stage&)
{
    Stage::Once([] {
        const QWidget* const form = QApplication::activeModalWidget();
        auto* const box = form != nullptr ? form->findChild<QComboBox*>() : nullptr;
        if (box == nullptr || !box->hasFocus())
            return false;
        box->showPopup();
        return true;
    });
}

void Rename(Stage& stage)
{
    Click(stage, kBlue);
    QTest::keyClick(&stage.GetTree(), Qt::Key_F2);
}

void DragTwoRows(Stage& stage)
{
    Click(stage, kBlue);
    Click(stage, kField, Qt::ControlModifier);
    stage.StartDrag(
        stage.PlaceOf(kBlue), stage.PlaceOf(QString::fromUtf8(kChinese)), /*stepMs=*/150);
}

void ShowTipOfButton(Stage&)
{
    QWidget& button = *FindNamed(u"STRID_TUNEHIVE_TIP_NEXT");
    button.setAttribute(Qt::WA_UnderMouse);
    ShowTip(button, QPoint(16, 16));
}

void SelectByKeys(Stage& stage)
{
    stage.GetTree().setFocus(Qt::TabFocusReason);
    QTest::keyClick(&stage.GetTree(), Qt::Key_Down, Qt::ShiftModifier);
}

} // namespace

std::vector<Scene> MakeScenes(const std::string& media)
{
    const std::vector<StageGroup> none;
    const std::vector<StageGroup> library = MakeLibrary(media);
    std::vector<StageGroup> longLibrary = library;
    for (int i = 1; i <= 600; ++i)
        longLibrary[0].tracks.push_back({media + "222.mp3", "Track " + std::to_string(i)});
    std::vector<StageGroup> films = library;
    films[0].tracks.insert(films[0].tracks.begin(), {media + "dusk.mkv", kVideo});

    constexpr const char16_t* kAdd = u"STRID_TUNEHIVE_TIP_ADD";
    constexpr const char16_t* kAddress = u"STRID_TUNEHIVE_MENU_ADD_URL";
    constexpr const char16_t* kFiles = u"STRID_TUNEHIVE_MENU_ADD_LOCALFILE";
    constexpr const char16_t* kPane = u"STRID_TUNEHIVE_TIP_PANE";
    constexpr const char16_t* kVolume = u"STRID_TUNEHIVE_TIP_VOLUME";
    constexpr const char16_t* kMenu = u"STRID_KIVO_MENU";
    const Act nothing = [](Stage&) {};
    const Act filesOverFree = [](Stage& stage) { DragOver(stage, {100, 300}, MakeFiles()); };
    const Act filesOverGroup = [](Stage& stage) {
        DragOver(stage, stage.PlaceOf(kSunday), MakeFiles());
    };
    const Act tipOfGone = [](Stage& stage) {
        ShowTip(*stage.GetTree().viewport(), stage.PlaceOf(kGone));
    };
    const Act deleteGroup = [](Stage& stage) {
        Choose(u"STRID_TUNEHIVE_MENU_DELETEGROUP");
        stage.OpenMenuAt(stage.PlaceOf(kSunday));
    };
    const Act film = Then(PlayFilm, Then(Pause, Clicked(kBlue)));
    const Act track = Then(Clicked(kBlue), MenuAt(kBlue, u"STRID_TUNEHIVE_MENU_COPYTOGROUP"));
    const Act bin = Then(Clicked(kBlue), Pressed(u"STRID_TUNEHIVE_TIP_DELETE"));
    const Act secondTab = [](Stage& stage) { Tab(stage, 2); };
    std::vector<Scene> scenes;
    const auto add = [&scenes](const char* name,
                               const std::vector<StageGroup>& groups,
                               const Act& act,
                               int width = 0,
                               int height = 0) {
        scenes.push_back({name, groups, act, width, height});
    };
    add("empty", none, nothing);
    add("empty-focus", none, Focused(u"STRID_TUNEHIVE_EMPTY_FOLDER"));
    add("empty-drag", none, filesOverFree);
    add("empty-low", none, nothing, 340, 430);
    add("playing", library, PlayRussian);
    add("paused", library, Then(PlayRussian, Pause));
    add("narrow", library, PlayRussian, 280, 500);
    add("wide", library, PlayRussian, 900, 600);
    add("long", longLibrary, Then(PlayRussian, ScrollToTheMiddle));
    add("pane", library, Pressed(kPane));
    add("pane-playing", library, Then(PlayRussian, Pressed(kPane)));
    add("video", films, film, 340, 740);
    add("opening", library, OpenAddress, 600, 500);
    add("menu-add", library, Pressed(kAdd));
    add("menu-mode", library, Pressed(u"STRID_TUNEHIVE_TIP_MODE"));
    add("menu-delete", library, bin);
    add("menu-host", library, Then(PlayRussian, Pressed(kMenu)));
    add("menu-group", library, MenuAt(kSunday, u"STRID_TUNEHIVE_MENU_ADDTOGROUP"));
    add("menu-track", library, track, 340, 680);
    add("menu-several", library, OpenMenuOfSeveral);
    add("form-address", library, Chosen(kAdd, kAddress));
    add("form-error", library, Then(TypeWrongAddress, Chosen(kAdd, kAddress)));
    add("form-files", library, Chosen(kAdd, kFiles));
    add("form-combo", library, Then(OpenComboOfForm, Chosen(kAdd, kFiles)));
    add("box-delete", library, deleteGroup);
    add("box-cabinet", library, Chosen(kMenu, u"STRID_KIVO_CABINET"));
    add("picker", none, Pressed(u"STRID_TUNEHIVE_EMPTY_FILES"));
    add("rename", library, Rename);
    add("new-group", library, Chosen(kAdd, u"STRID_TUNEHIVE_MENU_NEWGROUP"));
    add("volume", library, Then(PlayRussian, Pressed(kVolume)));
    add("drag-rows", library, DragTwoRows);
    add("drag-files", library, filesOverGroup);
    add("tip-gone", library, tipOfGone);
    add("tip-button", library, ShowTipOfButton);
    add("focus-play", library, Then(PlayRussian, Focused(u"STRID_TUNEHIVE_TIP_PAUSE")));
    add("focus-flat", library, Focused(kVolume));
    add("focus-row", library, Then(PlayRussian, SelectByKeys));
    add("contacts", library, Pressed(u"STRID_KIVO_CONTACTS"));
    add("tab-focus", library, secondTab);
    return scenes;
}

} // namespace kivo::test
