#include "host/QtText.h"
#include "host/Texts.h"
#include "shell/contracts/common/Text.h"
#include "shell/contracts/desktop/TuneHiveRemote.h"
#include "tests/page/Stage.h"

#include <gtest/gtest.h>
#include <QAbstractButton>
#include <QAccessible>
#include <QComboBox>
#include <QLineEdit>
#include <QMenu>
#include <QMessageBox>
#include <QPointer>
#include <QTest>
#include <QTimer>

#include <algorithm>
#include <map>
#include <set>

// The whole page, walked as somebody does who has no mouse, and as somebody who has no screen.
namespace kivo::test {
namespace {

constexpr char kTone[] = KIVO_TEST_MEDIA "long.mp3";
constexpr char kFilm[] = KIVO_TEST_MEDIA "long.mp4";

QString Say(const char16_t* id)
{
    return host::ToQString(host::GetText(id));
}

// The name as it is said; a box names its choice and leaves the rest to its label.
QString NameOf(QAccessibleInterface* access)
{
    if (access == nullptr)
        return {};
    const auto labels = access->relations(QAccessible::Label);
    return labels.isEmpty() ? access->text(QAccessible::Name)
                            : labels.first().first->text(QAccessible::Name);
}

std::vector<StageGroup> Tones()
{
    return {
        {"playing", "",      {{kTone, "One"}, {kTone, "Two"}, {kTone, "Three"}}},
        {"mine",    "",      {{kTone, "Mine"}}                                 },
        {"userb",   "Train", {{kTone, "On the way"}}                           },
    };
}

class PageWalkTest : public testing::Test {
protected:
    void Open(const std::vector<StageGroup>& groups)
    {
        stage_.emplace(Look{}, groups);
        stage_->GetTree().setFocus();
        ASSERT_TRUE(stage_->GetWindow().isActiveWindow());
    }
    [[nodiscard]] static QString Focused()
    {
        return NameOf(QAccessible::queryAccessibleInterface(QApplication::focusWidget()));
    }
    // To what has the keyboard, or to the pop-up that took it.
    static void Key(int key, Qt::KeyboardModifiers modifiers = {})
    {
        QWidget* target = QApplication::activePopupWidget();
        if (target == nullptr)
            target = QApplication::focusWidget();
        if (target == nullptr)
            target = QApplication::activeWindow();
        if (target == nullptr) {
            ADD_FAILURE() << "nothing has the keyboard";
            return;
        }
        // Media keys have no place in QTest's table of characters.
        for (const QEvent::Type type : {QEvent::KeyPress, QEvent::KeyRelease}) {
            const QString text = key == Qt::Key_Space ? QStringLiteral(" ") : QString();
            QKeyEvent event(type, key, modifiers, text);
            const QPointer<QWidget> alive = target;
            QApplication::sendEvent(target, &event);
            if (alive == nullptr)
                break;
        }
        QCoreApplication::processEvents(); // An editor commits from the event loop.
    }
    // Tab until the control of that name has the keyboard.
    static bool TabTo(const char16_t* id)
    {
        for (int press = 0; press < 40; ++press) {
            if (Focused() == Say(id))
                return true;
            Key(Qt::Key_Tab);
        }
        return false;
    }
    // Once it can be done, inside whatever loop then runs; a menu or form waits in its own.
    static void Then(const std::function<bool()>& tryIt)
    {
        auto* const timer = new QTimer(qApp);
        QObject::connect(timer, &QTimer::timeout, timer, [timer, tryIt, left = 150]() mutable {
            if (!tryIt() && --left > 0)
                return;
            timer->stop();
            if (left == 0) {
                ADD_FAILURE() << "what was waited for never came";
                QApplication::closeAllWindows(); // Lest what waits for an answer waits on.
            }
            timer->deleteLater();
        });
        timer->start(20);
    }
    // Goes through the open menu by the arrow keys to the entry and takes it.
    static bool ChooseByKeys(const QString& text)
    {
        auto* const menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
        if (menu == nullptr)
            return false;
        for (int press = 0; press < 20; ++press) {
            Key(Qt::Key_Down);
            const QAction* const action = menu->activeAction();
            if (action == nullptr || action->text().section(u'\t', 0, 0) != text)
                continue;
            Key(Qt::Key_Return);
            return true;
        }
        ADD_FAILURE() << "no entry " << text.toStdString();
        menu->close();
        return true;
    }
    [[nodiscard]] QString Current() const
    {
        return stage_->GetTree().currentIndex().data().toString();
    }
    void GoTo(const QString& row)
    {
        stage_->GetWindow().activateWindow(); // As a window manager does after a box.
        Stage::WaitUntil([this] { return stage_->GetWindow().isActiveWindow(); });
        stage_->GetTree().setFocus();
        Key(Qt::Key_Home);
        for (int press = 0; press < 20 && Current() != row; ++press)
            Key(Qt::Key_Down);
        ASSERT_EQ(Current(), row);
    }
    [[nodiscard]] std::vector<QString> Rows() const
    {
        std::vector<QString> rows;
        const QTreeView& tree = stage_->GetTree();
        for (QModelIndex row = tree.model()->index(0, 0); row.isValid(); row = tree.indexBelow(row))
            rows.push_back(row.data().toString());
        return rows;
    }
    [[nodiscard]] bool WaitForState(int state) const
    {
        return Stage::WaitUntil([&] { return stage_->GetRemote().GetState() == state; });
    }

    std::optional<Stage> stage_;
};

TEST_F(PageWalkTest, TabGoesRoundOnceThroughAllThatCanBeUsed)
{
    Open(Tones());
    GoTo(QStringLiteral("One")); // A selection, so that the bin can be used.
    ASSERT_TRUE(TabTo(u"STRID_KIVO_MENU"));
    std::string order;
    do {
        order += Focused().toStdString() + "\n";
        Key(Qt::Key_Tab);
    } while (Focused() != Say(u"STRID_KIVO_MENU") && order.size() < 1000);
    std::string expected;
    for (const char16_t* id : {u"STRID_KIVO_MENU",
                               u"STRID_KIVO_CONTACTS",
                               u"TIP_TUNEHIVE",
                               u"STRID_TUNEHIVE_NAME_POSITION",
                               u"STRID_TUNEHIVE_TIP_PREV",
                               u"STRID_TUNEHIVE_TIP_PLAY",
                               u"STRID_TUNEHIVE_TIP_NEXT",
                               u"STRID_TUNEHIVE_TIP_VOLUME",
                               u"STRID_TUNEHIVE_TIP_PANE",
                               u"STRID_TUNEHIVE_TIP_ADD",
                               u"STRID_TUNEHIVE_TIP_DELETE",
                               u"STRID_TUNEHIVE_TIP_MODE",
                               u"STRID_TUNEHIVE_NAME_TREE"})
        expected += Say(id).toStdString() + "\n";
    EXPECT_EQ(order, expected);
}

// What has the keyboard looks otherwise than before: its own part of the picture changes.
TEST_F(PageWalkTest, TheFocusShowsWhereverItIs)
{
    Open(Tones());
    GoTo(QStringLiteral("One"));
    std::set<QWidget*> seen;
    for (int press = 0; press < 14; ++press) {
        Key(Qt::Key_Tab);
        QWidget* const focused = QApplication::focusWidget();
        ASSERT_NE(focused, nullptr);
        if (!seen.insert(focused).second)
            break;
        const QImage with = focused->grab().toImage();
        focused->clearFocus();
        const QImage without = focused->grab().toImage();
        EXPECT_TRUE(with != without) << focused->accessibleName().toStdString();
        focused->setFocus(Qt::TabFocusReason);
    }
    EXPECT_GT(seen.size(), 11U);
}

TEST_F(PageWalkTest, PlaysPausesStepsAndStopsByKeys)
{
    Open(Tones());
    GoTo(QStringLiteral("One"));
    Key(Qt::Key_Return);
    ASSERT_TRUE(WaitForState(3));
    Key(Qt::Key_Space);
    EXPECT_TRUE(WaitForState(2));
    Key(Qt::Key_MediaTogglePlayPause);
    EXPECT_TRUE(WaitForState(3));
    Key(Qt::Key_Right, Qt::ControlModifier);
    EXPECT_TRUE(Stage::WaitUntil([&] { return stage_->GetRemote().GetTitle() == u"Two"; }));
    ASSERT_TRUE(WaitForState(3));
    Key(Qt::Key_Left, Qt::ControlModifier);
    EXPECT_TRUE(Stage::WaitUntil([&] { return stage_->GetRemote().GetTitle() == u"One"; }));
    ASSERT_TRUE(WaitForState(3));
    ASSERT_TRUE(TabTo(u"STRID_TUNEHIVE_NAME_POSITION"));
    Key(Qt::Key_PageUp);
    EXPECT_TRUE(Stage::WaitUntil([&] { return stage_->GetRemote().GetPosition() > 2.5; }));
    ASSERT_TRUE(TabTo(u"STRID_TUNEHIVE_TIP_STOP"));
    Key(Qt::Key_Space);
    EXPECT_TRUE(WaitForState(1));
    EXPECT_FALSE(Focused().isEmpty()) << "the button that went dead passes the keyboard on";
}

TEST_F(PageWalkTest, TurnsTheVolumeByKeys)
{
    Open(Tones());
    GoTo(QStringLiteral("One"));
    Key(Qt::Key_Return);
    ASSERT_TRUE(WaitForState(3));
    const int before = stage_->GetRemote().GetVolume();
    ASSERT_TRUE(TabTo(u"STRID_TUNEHIVE_TIP_VOLUME"));
    Key(Qt::Key_Return);
    ASSERT_TRUE(Stage::WaitUntil([] { return QApplication::activePopupWidget() != nullptr; }));
    Stage::Turn(20);
    QTest::keyClick(QApplication::activePopupWidget()->focusWidget(), Qt::Key_Up);
    EXPECT_GT(stage_->GetRemote().GetVolume(), before);
    Key(Qt::Key_Escape);
    EXPECT_TRUE(Stage::WaitUntil([] { return QApplication::activePopupWidget() == nullptr; }));
}

TEST_F(PageWalkTest, RenamesMovesAndDeletesByKeys)
{
    Open(Tones());
    GoTo(QStringLiteral("Two"));
    Key(Qt::Key_F2);
    QTest::keyClicks(QApplication::focusWidget(), QStringLiteral("hand"));
    Key(Qt::Key_Left, Qt::ControlModifier); // In a field it goes a word back,
    QTest::keyClicks(QApplication::focusWidget(), QStringLiteral("Second"));
    Key(Qt::Key_Space); // and this is a blank.
    Key(Qt::Key_Return);
    EXPECT_TRUE(stage_->FindRow(QStringLiteral("Second hand")).isValid());
    EXPECT_EQ(stage_->GetRemote().GetState(), 0) << "nothing plays for a key in a field";

    GoTo(QStringLiteral("Second hand"));
    Key(Qt::Key_Delete);
    EXPECT_FALSE(stage_->FindRow(QStringLiteral("Second hand")).isValid());

    // The question is answered by keys as well.
    struct Answer {
        std::vector<int> keys;
        bool isDeleted;
    };
    const Answer answers[] = {
        {{Qt::Key_Return},             false}, // The default is no.
        {{Qt::Key_Escape},             false},
        {{Qt::Key_Tab, Qt::Key_Space}, true },
    };
    for (const auto& [keys, isDeleted] : answers) {
        GoTo(QStringLiteral("Train"));
        Then([&answered = keys] {
            QWidget* const box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
            if (box == nullptr || !box->isAncestorOf(QApplication::focusWidget()))
                return false;
            for (const int key : answered)
                Key(key);
            return true;
        });
        Key(Qt::Key_Delete);
        EXPECT_EQ(stage_->FindRow(QStringLiteral("Train")).isValid(), !isDeleted);
    }
}

TEST_F(PageWalkTest, AddsAnAddressAndAGroupAndSetsTheModeByKeys)
{
    Open({});
    ASSERT_TRUE(TabTo(u"STRID_TUNEHIVE_TIP_ADD"));
    Then([] {
        auto* const field = qobject_cast<QLineEdit*>(QApplication::focusWidget());
        if (field == nullptr || QApplication::activeModalWidget() == nullptr)
            return false;
        EXPECT_EQ(Focused(), Say(u"STRID_TUNEHIVE_FORM_URLNAME"));
        QTest::keyClicks(field, QStringLiteral("Radio"));
        Key(Qt::Key_Backtab);
        EXPECT_EQ(Focused(), Say(u"STRID_TUNEHIVE_FORM_URL"));
        Key(Qt::Key_End);
        QTest::keyClicks(QApplication::focusWidget(), QStringLiteral("radio.example/live"));
        Key(Qt::Key_Backtab);
        EXPECT_EQ(Focused(), Say(u"STRID_TUNEHIVE_FORM_GROUP"));
        Key(Qt::Key_Down); // From "My media" to "Playing".
        Key(Qt::Key_Tab);
        Key(Qt::Key_Return);
        return true;
    });
    Then([] { return ChooseByKeys(Say(u"STRID_TUNEHIVE_MENU_ADD_URL")); });
    Key(Qt::Key_Return);
    GoTo(Say(u"STRID_TUNEHIVE_NOWPLAYING"));
    Key(Qt::Key_Right); // Unfolds.
    EXPECT_TRUE(stage_->FindRow(QStringLiteral("Radio")).isValid());

    ASSERT_TRUE(TabTo(u"STRID_TUNEHIVE_TIP_ADD"));
    Then([] { return ChooseByKeys(Say(u"STRID_TUNEHIVE_MENU_NEWGROUP")); });
    Key(Qt::Key_Space);
    ASSERT_NE(qobject_cast<QLineEdit*>(QApplication::focusWidget()), nullptr);
    QTest::keyClicks(QApplication::focusWidget(), QStringLiteral("Evening"));
    Key(Qt::Key_Return);
    EXPECT_TRUE(stage_->FindRow(QStringLiteral("Evening")).isValid());

    ASSERT_TRUE(TabTo(u"STRID_TUNEHIVE_TIP_MODE"));
    Then([] { return ChooseByKeys(Say(u"STRID_TUNEHIVE_MENU_MODE_RANDOMREP")); });
    Key(Qt::Key_Space);
    QString checked;
    Then([&checked] {
        auto* const menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
        for (const QAction* const action : menu != nullptr ? menu->actions() : QList<QAction*>()) {
            if (action->isChecked())
                checked = action->text();
        }
        if (menu != nullptr)
            menu->close();
        return menu != nullptr;
    });
    Key(Qt::Key_Space);
    EXPECT_EQ(checked, Say(u"STRID_TUNEHIVE_MENU_MODE_RANDOMREP"));
}

TEST_F(PageWalkTest, TheMenuKeyOpensTheMenuOfTheRow)
{
    Open(Tones());
    GoTo(QStringLiteral("Three"));
    Then([] { return ChooseByKeys(Say(u"STRID_TUNEHIVE_MENU_SAVEGROUP")); });
    const QPoint corner(5, 5);
    QContextMenuEvent menu(
        QContextMenuEvent::Keyboard, corner, stage_->GetTree().viewport()->mapToGlobal(corner));
    QApplication::sendEvent(stage_->GetTree().viewport(), &menu);
    ASSERT_NE(qobject_cast<QLineEdit*>(QApplication::focusWidget()), nullptr)
        << "the new group's name waits for its text";
    Key(Qt::Key_Escape);
    EXPECT_EQ(Rows().size(), 7U);
}

TEST_F(PageWalkTest, OpensThePaneAndMovesItsBorderByKeys)
{
    Open(Tones());
    ASSERT_TRUE(TabTo(u"STRID_TUNEHIVE_TIP_PANE"));
    Key(Qt::Key_Return);
    ASSERT_TRUE(TabTo(u"STRID_TUNEHIVE_NAME_SPLITTER"));
    const int before = stage_->GetTree().height();
    Key(Qt::Key_Up);
    EXPECT_LT(stage_->GetTree().height(), before);
    ASSERT_TRUE(TabTo(u"STRID_TUNEHIVE_TIP_CLOSEPANE"));
    Key(Qt::Key_Space);
    EXPECT_GT(stage_->GetTree().height(), before);
}

TEST_F(PageWalkTest, AFilmGoesToTheFullScreenAndBackByKeys)
{
    Open({
        {"playing", "", {{kFilm, "Film"}}}
    });
    GoTo(QStringLiteral("Film"));
    Key(Qt::Key_Return);
    ASSERT_TRUE(WaitForState(3));
    const auto isFull = [] {
        const QWidgetList all = QApplication::topLevelWidgets();
        return std::any_of(all.begin(), all.end(), [](const QWidget* widget) {
            return widget->isVisible() && widget->isFullScreen();
        });
    };
    ASSERT_TRUE(Stage::WaitUntil([&] { return Stage::Find(Say(u"STRID_TUNEHIVE_NAME_VIDEO")); }));
    Key(Qt::Key_F11);
    EXPECT_TRUE(Stage::WaitUntil(isFull));
    Key(Qt::Key_F11);
    EXPECT_TRUE(Stage::WaitUntil([&] { return !isFull(); }));
}

TEST_F(PageWalkTest, BoxesAnswerInTheProgramsLanguage)
{
    stage_.emplace(Look{.locale = "de"}, Tones());
    GoTo(QStringLiteral("Train"));
    QStringList answers;
    Then([&answers] {
        auto* const box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        if (box == nullptr)
            return false;
        for (const auto button : {QMessageBox::Yes, QMessageBox::No})
            answers.append(box->button(button)->text());
        box->reject();
        return true;
    });
    Key(Qt::Key_Delete);
    EXPECT_EQ(answers, (QStringList{QStringLiteral("Ja"), QStringLiteral("Nein")}));
}

// The names and roles of all that a screen reader can come to below the object.
void Collect(QAccessibleInterface* access, std::map<QString, QAccessible::Role>& found, int depth)
{
    if (access == nullptr || depth > 20 || access->state().invisible)
        return;
    const QAccessible::Role role = access->role();
    const QString name = NameOf(access);
    const bool canBeUsed = access->state().focusable || role == QAccessible::Button;
    if (canBeUsed && role != QAccessible::Client) {
        EXPECT_FALSE(name.isEmpty()) << access->object()->metaObject()->className();
        EXPECT_FALSE(name.startsWith(QLatin1String("STRID"))) << name.toStdString();
        found[name] = role;
    }
    if (role == QAccessible::Tree)
        return;
    for (int child = 0; child < access->childCount(); ++child)
        Collect(access->child(child), found, depth + 1);
}

TEST_F(PageWalkTest, AScreenReaderFindsNamesAndRoles)
{
    Open(Tones());
    GoTo(QStringLiteral("One"));
    ASSERT_TRUE(TabTo(u"STRID_TUNEHIVE_TIP_PANE"));
    Key(Qt::Key_Return);
    std::map<QString, QAccessible::Role> found;
    Collect(QAccessible::queryAccessibleInterface(&stage_->GetWindow()), found, 0);
    struct Control {
        const char16_t* name;
        QAccessible::Role role;
    };
    const Control kControls[] = {
        {u"STRID_KIVO_MENU",              QAccessible::Button  },
        {u"STRID_TUNEHIVE_NAME_POSITION", QAccessible::Slider  },
        {u"STRID_TUNEHIVE_TIP_PREV",      QAccessible::Button  },
        {u"STRID_TUNEHIVE_TIP_PLAY",      QAccessible::Button  },
        {u"STRID_TUNEHIVE_TIP_NEXT",      QAccessible::Button  },
        {u"STRID_TUNEHIVE_TIP_STOP",      QAccessible::Button  },
        {u"STRID_TUNEHIVE_TIP_VOLUME",    QAccessible::Button  },
        {u"STRID_TUNEHIVE_TIP_PANE",      QAccessible::Button  },
        {u"STRID_TUNEHIVE_TIP_ADD",       QAccessible::Button  },
        {u"STRID_TUNEHIVE_TIP_DELETE",    QAccessible::Button  },
        {u"STRID_TUNEHIVE_TIP_MODE",      QAccessible::Button  },
        {u"STRID_TUNEHIVE_NAME_TREE",     QAccessible::Tree    },
        {u"STRID_TUNEHIVE_NAME_SPLITTER", QAccessible::Splitter},
        {u"STRID_TUNEHIVE_TIP_CLOSEPANE", QAccessible::Button  },
    };
    for (const auto& [name, role] : kControls) {
        const auto it = found.find(Say(name));
        ASSERT_NE(it, found.end()) << Say(name).toStdString();
        EXPECT_EQ(it->second, role) << Say(name).toStdString();
    }
}

TEST_F(PageWalkTest, AScreenReaderReadsRowsWithTheirLengths)
{
    Open(Tones());
    ASSERT_TRUE(Stage::WaitUntil([&] {
        const QVariant read = stage_->FindRow(QStringLiteral("One")).data(Qt::AccessibleTextRole);
        return read.toString() == QStringLiteral("One, 0:30");
    })) << stage_->FindRow(QStringLiteral("One"))
               .data(Qt::AccessibleTextRole)
               .toString()
               .toStdString();
    QAccessibleInterface* const tree = QAccessible::queryAccessibleInterface(&stage_->GetTree());
    ASSERT_NE(tree->tableInterface(), nullptr);
    EXPECT_EQ(tree->tableInterface()->rowCount(), static_cast<int>(Rows().size()));
    QAccessibleInterface* const row = tree->tableInterface()->cellAt(1, 0);
    ASSERT_NE(row, nullptr);
    EXPECT_EQ(row->role(), QAccessible::TreeItem);
    EXPECT_EQ(row->text(QAccessible::Name), QStringLiteral("One, 0:30"));
}

// What an open form holds for a screen reader.
TEST_F(PageWalkTest, AScreenReaderFindsTheFieldsOfAForm)
{
    Open({});
    std::map<QString, QAccessible::Role> found;
    Then([&found] {
        QWidget* const form = QApplication::activeModalWidget();
        if (form == nullptr)
            return false;
        Collect(QAccessible::queryAccessibleInterface(form), found, 0);
        Key(Qt::Key_Escape);
        return true;
    });
    Then([] { return ChooseByKeys(Say(u"STRID_TUNEHIVE_MENU_ADD_URL")); });
    ASSERT_TRUE(TabTo(u"STRID_TUNEHIVE_TIP_ADD"));
    Key(Qt::Key_Return);
    EXPECT_EQ(found[Say(u"STRID_TUNEHIVE_FORM_GROUP")], QAccessible::ComboBox);
    EXPECT_EQ(found[Say(u"STRID_TUNEHIVE_FORM_URL")], QAccessible::EditableText);
    EXPECT_EQ(found[Say(u"STRID_TUNEHIVE_FORM_URLNAME")], QAccessible::EditableText);
    EXPECT_EQ(found[Say(u"STRID_KIVO_OK")], QAccessible::Button);
    EXPECT_EQ(found[Say(u"STRID_KIVO_CANCEL")], QAccessible::Button);
}

} // namespace
} // namespace kivo::test
