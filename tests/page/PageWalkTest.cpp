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

#include <algorithm>
#include <map>
#include <set>

// The whole page, walked as somebody does who has no mouse, and as somebody who has no screen.
namespace kivo::test {
namespace {

constexpr char kTone[] = KIVO_TEST_MEDIA "long.mp3";

// The name as it is said; a box names its choice and leaves the rest to its label.
QString NameOf(QAccessibleInterface* access)
{
    if (access == nullptr)
        return {};
    const auto labels = access->relations(QAccessible::Label);
    return labels.isEmpty() ? access->text(QAccessible::Name)
                            : labels.first().first->text(QAccessible::Name);
}

struct Control {
    const char16_t* name;
    QAccessible::Role role;
};

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
    [[nodiscard]] bool WaitForTitle(const char16_t* title) const
    {
        return Stage::WaitUntil([&] { return stage_->GetRemote().GetTitle() == title; });
    }

    std::optional<Stage> stage_;
};

TEST_F(PageWalkTest, TabGoesRoundOnceThroughAllThatCanBeUsed)
{
    Open(Tones());
    GoTo(QStringLiteral("One")); // A selection, so that the bin can be used.
    ASSERT_TRUE(TabTo(u"STRID_KIVO_MENU"));
    constexpr Control kOrder[] = {
        {u"STRID_KIVO_MENU",              QAccessible::Button},
        {u"STRID_KIVO_CONTACTS",          QAccessible::Button},
        {u"TIP_TUNEHIVE",                 QAccessible::Button},
        {u"STRID_TUNEHIVE_NAME_POSITION", QAccessible::Slider},
        {u"STRID_TUNEHIVE_TIP_PREV",      QAccessible::Button},
        {u"STRID_TUNEHIVE_TIP_PLAY",      QAccessible::Button},
        {u"STRID_TUNEHIVE_TIP_NEXT",      QAccessible::Button},
        {u"STRID_TUNEHIVE_TIP_VOLUME",    QAccessible::Button},
        {u"STRID_TUNEHIVE_TIP_PANE",      QAccessible::Button},
        {u"STRID_TUNEHIVE_TIP_ADD",       QAccessible::Button},
        {u"STRID_TUNEHIVE_TIP_DELETE",    QAccessible::Button},
        {u"STRID_TUNEHIVE_TIP_MODE",      QAccessible::Button},
        {u"STRID_TUNEHIVE_NAME_TREE",     QAccessible::Tree  },
        {u"STRID_KIVO_MENU",              QAccessible::Button},
    };
    for (const auto& [name, role] : kOrder) {
        EXPECT_EQ(Focused(), Say(name));
        EXPECT_EQ(QAccessible::queryAccessibleInterface(QApplication::focusWidget())->role(), role)
            << Focused().toStdString();
        Key(Qt::Key_Tab);
    }
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
    EXPECT_TRUE(WaitForTitle(u"Two"));
    ASSERT_TRUE(WaitForState(3));
    Key(Qt::Key_Left, Qt::ControlModifier);
    EXPECT_TRUE(WaitForTitle(u"One"));
    ASSERT_TRUE(WaitForState(3));
    ASSERT_TRUE(TabTo(u"STRID_TUNEHIVE_NAME_POSITION"));
    Key(Qt::Key_PageUp);
    EXPECT_TRUE(Stage::WaitUntil([&] { return stage_->GetRemote().GetPosition() > 2.5; }));
    ASSERT_TRUE(TabTo(u"STRID_TUNEHIVE_TIP_STOP"));
    Key(Qt::Key_Space);
    EXPECT_TRUE(WaitForState(1));
    EXPECT_FALSE(Focused().isEmpty()) << "the button that went dead passes the keyboard on";
}

TEST_F(PageWalkTest, RenamesAndDeletesByKeys)
{
    Open(Tones());
    GoTo(QStringLiteral("Two"));
    Key(Qt::Key_F2);
    QTest::keyClicks(QApplication::focusWidget(), QStringLiteral("hand"));
    Key(Qt::Key_Left, Qt::ControlModifier); // In a field it goes a word back,
    QTest::keyClicks(QApplication::focusWidget(), QStringLiteral("Second"));
    Key(Qt::Key_Space); // and this is a blank.
    Key(Qt::Key_Return);
    EXPECT_EQ(stage_->GetRemote().GetState(), 0) << "nothing plays for a key in a field";
    GoTo(QStringLiteral("Second hand"));
    Key(Qt::Key_Delete);
    EXPECT_FALSE(stage_->FindRow(QStringLiteral("Second hand")).isValid());

    GoTo(QStringLiteral("Train"));
    Stage::Once([] {
        QWidget* const box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        if (box == nullptr || !box->isAncestorOf(QApplication::focusWidget()))
            return false;
        Key(Qt::Key_Tab);
        Key(Qt::Key_Space);
        return true;
    });
    Key(Qt::Key_Delete);
    EXPECT_FALSE(stage_->FindRow(QStringLiteral("Train")).isValid());
}

TEST_F(PageWalkTest, AddsAnAddressAndAGroupAndSetsTheModeByKeys)
{
    Open({});
    ASSERT_TRUE(TabTo(u"STRID_TUNEHIVE_TIP_ADD"));
    Stage::Once([] {
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
    Stage::Once([] { return ChooseByKeys(Say(u"STRID_TUNEHIVE_MENU_ADD_URL")); });
    Key(Qt::Key_Return);
    GoTo(Say(u"STRID_TUNEHIVE_NOWPLAYING"));
    Key(Qt::Key_Right); // Unfolds.
    EXPECT_TRUE(stage_->FindRow(QStringLiteral("Radio")).isValid());

    ASSERT_TRUE(TabTo(u"STRID_TUNEHIVE_TIP_ADD"));
    Stage::Once([] { return ChooseByKeys(Say(u"STRID_TUNEHIVE_MENU_NEWGROUP")); });
    Key(Qt::Key_Space);
    ASSERT_NE(qobject_cast<QLineEdit*>(QApplication::focusWidget()), nullptr);
    QTest::keyClicks(QApplication::focusWidget(), QStringLiteral("Evening"));
    Key(Qt::Key_Return);
    EXPECT_TRUE(stage_->FindRow(QStringLiteral("Evening")).isValid());

    ASSERT_TRUE(TabTo(u"STRID_TUNEHIVE_TIP_MODE"));
    Stage::Once([] { return ChooseByKeys(Say(u"STRID_TUNEHIVE_MENU_MODE_RANDOMREP")); });
    Key(Qt::Key_Space);
    QString checked;
    Stage::Once([&checked] {
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
    Stage::Once([] { return ChooseByKeys(Say(u"STRID_TUNEHIVE_MENU_SAVEGROUP")); });
    stage_->OpenMenuAt(QPoint(5, 5), QContextMenuEvent::Keyboard);
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

TEST_F(PageWalkTest, AScreenReaderFindsNamesAndRolesOnThePageAndInAForm)
{
    Open(Tones());
    ASSERT_TRUE(TabTo(u"STRID_TUNEHIVE_TIP_PANE"));
    Key(Qt::Key_Return);
    std::map<QString, QAccessible::Role> found;
    Collect(QAccessible::queryAccessibleInterface(&stage_->GetWindow()), found, 0);
    Stage::Once([&found] {
        QWidget* const form = QApplication::activeModalWidget();
        if (form == nullptr)
            return false;
        Collect(QAccessible::queryAccessibleInterface(form), found, 0);
        Key(Qt::Key_Escape);
        return true;
    });
    Stage::Once([] { return ChooseByKeys(Say(u"STRID_TUNEHIVE_MENU_ADD_URL")); });
    ASSERT_TRUE(TabTo(u"STRID_TUNEHIVE_TIP_ADD"));
    Key(Qt::Key_Return);
    constexpr Control kBesideThoseOfTab[] = {
        {u"STRID_TUNEHIVE_TIP_STOP",      QAccessible::Button      }, // It is disabled.
        {u"STRID_TUNEHIVE_NAME_SPLITTER", QAccessible::Splitter    },
        {u"STRID_TUNEHIVE_TIP_CLOSEPANE", QAccessible::Button      },
        {u"STRID_TUNEHIVE_FORM_GROUP",    QAccessible::ComboBox    },
        {u"STRID_TUNEHIVE_FORM_URL",      QAccessible::EditableText},
        {u"STRID_TUNEHIVE_FORM_URLNAME",  QAccessible::EditableText},
        {u"STRID_KIVO_OK",                QAccessible::Button      },
        {u"STRID_KIVO_CANCEL",            QAccessible::Button      },
    };
    for (const auto& [name, role] : kBesideThoseOfTab) {
        const auto it = found.find(Say(name));
        ASSERT_NE(it, found.end()) << Say(name).toStdString();
        EXPECT_EQ(it->second, role) << Say(name).toStdString();
    }
}

TEST_F(PageWalkTest, AScreenReaderReadsRowsWithTheirLengths)
{
    Open(Tones());
    const auto read = [this] {
        return stage_->FindRow(QStringLiteral("One")).data(Qt::AccessibleTextRole).toString();
    };
    ASSERT_TRUE(Stage::WaitUntil([&] { return read() == QStringLiteral("One, 0:30"); }))
        << read().toStdString();
    QAccessibleInterface* const tree = QAccessible::queryAccessibleInterface(&stage_->GetTree());
    ASSERT_NE(tree->tableInterface(), nullptr);
    EXPECT_EQ(tree->tableInterface()->rowCount(), static_cast<int>(Rows().size()));
    QAccessibleInterface* const row = tree->tableInterface()->cellAt(1, 0);
    ASSERT_NE(row, nullptr);
    EXPECT_EQ(row->role(), QAccessible::TreeItem);
    EXPECT_EQ(row->text(QAccessible::Name), QStringLiteral("One, 0:30"));
}

} // namespace
} // namespace kivo::test
