#include "tests/host_ui/Stage.h"

#include <gtest/gtest.h>
#include <QAbstractButton>
#include <QAccessible>
#include <QApplication>
#include <QContextMenuEvent>
#include <QLineEdit>
#include <QMenu>
#include <QTest>
#include <QTimer>
#include <QTreeView>

#include <set>
#include <utility>

namespace kivo::host {
namespace {

// The page under the user's hands: by mouse, and by the keys alone.
class ContactsHand : public testing::Test {
protected:
    ContactsHand()
    {
        stage_.Open();
        stage_.SignIn();
        stage_.AddSamples();
        stage_.GetList().setFocus();
    }

    [[nodiscard]] QRect RectOf(const QString& name)
    {
        QTreeView& list = stage_.GetList();
        for (int place = 0; place < list.model()->rowCount(); ++place) {
            const QModelIndex index = list.model()->index(place, 0);
            if (index.data().toString() == name)
                return list.visualRect(index);
        }
        ADD_FAILURE() << "no such row: " << name.toStdString();
        return {};
    }
    [[nodiscard]] QWidget* GetViewport() { return stage_.GetList().viewport(); }
    void Key(int key)
    {
        stage_.GetWindow().activateWindow(); // No desktop does it when a form has closed.
        ASSERT_TRUE(QTest::qWaitForWindowActive(&stage_.GetWindow()));
        ASSERT_NE(QApplication::focusWidget(), nullptr);
        QTest::keyClick(QApplication::focusWidget(), static_cast<Qt::Key>(key));
        Stage::Settle(); // An editor takes its Return from the loop.
    }
    void Type(const QString& text) { QTest::keyClicks(QApplication::focusWidget(), text); }

    Stage stage_;
};

TEST_F(ContactsHand, ADoubleClickOrTheButtonInTheRowGoesToTheSign)
{
    const QRect jonas = RectOf(QStringLiteral("Jonas Ekberg"));
    const auto click = [&](const QPoint& place) {
        QTest::mouseClick(GetViewport(), Qt::LeftButton, {}, place);
        return std::exchange(stage_.activated, String());
    };
    EXPECT_EQ(click(jonas.center()), u"");
    QTest::mouseDClick(GetViewport(), Qt::LeftButton, {}, jonas.center());
    EXPECT_EQ(std::exchange(stage_.activated, String()), u"jonas@example.org ");
    EXPECT_EQ(click({jonas.right() - 28, jonas.center().y()}), u"jonas@example.org ");
    // Where there is no button, the same place only selects.
    const QRect oksana = RectOf(QStringLiteral("Оксана Гринчук"));
    EXPECT_EQ(click({oksana.right() - 28, oksana.center().y()}), u"");
    const QModelIndex row = stage_.GetList().indexAt(jonas.center());
    EXPECT_EQ(row.data(Qt::AccessibleTextRole).toString(),
              QStringLiteral("Jonas Ekberg, Online, plays Slow Coffee - The Window Seats"));
}

TEST_F(ContactsHand, ByKeysAlone)
{
    Key(Qt::Key_Home);
    Key(Qt::Key_Return);
    EXPECT_EQ(stage_.activated, u"jonas@example.org ");
    Type(QStringLiteral("pri"));
    Key(Qt::Key_F2);
    Type(QStringLiteral("Pia"));
    Key(Qt::Key_Return);
    EXPECT_EQ(stage_.network.TakeLog(), u"rename:priya@example.org=Pia ");
    EXPECT_EQ(stage_.activated, u"jonas@example.org "); // The Return was the editor's.
    Stage::InModal([](QWidget& form) {
        QTest::keyClick(&form, Qt::Key_Return); // Enter alone removes nobody.
    });
    Key(Qt::Key_Delete);
    EXPECT_EQ(stage_.network.TakeLog(), u"");
    Stage::InModal([](QWidget& form) {
        QTest::keyClick(&Stage::GetButton(form, QStringLiteral("Remove")), Qt::Key_Space);
    });
    Key(Qt::Key_Delete);
    EXPECT_EQ(stage_.network.TakeLog(), u"remove:priya@example.org ");
}

TEST_F(ContactsHand, TheMenuKeyOpensTheRowsMenu)
{
    Key(Qt::Key_Home);
    QStringList entries;
    QTimer::singleShot(0, [&] {
        auto* const menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
        ASSERT_NE(menu, nullptr);
        for (const QAction* const action : menu->actions())
            entries += action->text();
        QTest::keyClick(menu, Qt::Key_Down);
        QTest::keyClick(menu, Qt::Key_Return);
    });
    QContextMenuEvent event(QContextMenuEvent::Keyboard, {}, {});
    QApplication::sendEvent(GetViewport(), &event);
    EXPECT_EQ(entries, QStringList({"Play it here", "", "Rename", "Remove…"}));
    EXPECT_EQ(stage_.activated, u"jonas@example.org ");
}

TEST_F(ContactsHand, AnAccountIsSetUpByKeysAlone)
{
    Stage::InModal([](QWidget& form) {
        const auto key = [](Qt::Key which) { QTest::keyClick(QApplication::focusWidget(), which); };
        QTest::keyClicks(&Stage::GetField(form, QStringLiteral("XMPP address")),
                         QStringLiteral("x")); // Behind what stands there: another server.
        QTest::keyClicks(QApplication::focusWidget(), QStringLiteral("secret"));
        key(Qt::Key_Tab); // To "Remember the password",
        key(Qt::Key_Space);
        key(Qt::Key_Tab); // "Show friends what I play",
        key(Qt::Key_Space);
        key(Qt::Key_Tab); // "Only the title, not the address".
        key(Qt::Key_Space);
        QTest::keyClick(&form, Qt::Key_Return);
    });
    stage_.desk.SetUpAccount();
    EXPECT_EQ(stage_.network.TakeLog(), u"publish:title in:mara@example.orgx@:0 password:secret ");
}

TEST_F(ContactsHand, MoreIsShownInTheSameForm)
{
    int before = 0;
    int after = 0;
    Stage::InModal([&](QWidget& form) {
        before = form.height();
        Stage::GetButton(form, QStringLiteral("Server and port…")).click();
        after = form.height();
        EXPECT_TRUE(Stage::GetField(form, QStringLiteral("Port")).isVisible());
    });
    stage_.desk.SetUpAccount();
    EXPECT_GT(after, before);
}

TEST_F(ContactsHand, EverythingHasANameAndCanBeReachedByTab)
{
    QWidget& window = stage_.GetWindow();
    std::set<const QWidget*> reached;
    for (int step = 0; step < 20; ++step) {
        QTest::keyClick(&window, Qt::Key_Tab);
        reached.insert(QApplication::focusWidget());
    }
    for (QWidget* const widget : window.findChildren<QWidget*>()) {
        const bool isControl = qobject_cast<QAbstractButton*>(widget) != nullptr ||
                               qobject_cast<QTreeView*>(widget) != nullptr;
        if (!isControl || !widget->isVisible())
            continue;
        QAccessibleInterface* const access = QAccessible::queryAccessibleInterface(widget);
        EXPECT_NE(access->text(QAccessible::Name), QString()) << widget->metaObject()->className();
        EXPECT_TRUE(reached.contains(widget)) << access->text(QAccessible::Name).toStdString();
    }
}

TEST_F(ContactsHand, SelectionStaysWithItsPersonWhenOthersComeAndGo)
{
    Key(Qt::Key_Home);
    Key(Qt::Key_Down);
    Key(Qt::Key_Up);
    stage_.Add(u"aaron@example.org", u"Aaron", SignPresence::Online);
    stage_.network.listener->OnContactGone(u"sam@example.org");
    Stage::Settle();
    const QModelIndexList selected = stage_.GetList().selectionModel()->selectedRows();
    ASSERT_EQ(selected.size(), 1);
    EXPECT_EQ(selected.front().data().toString(), QStringLiteral("Jonas Ekberg"));
}

TEST_F(ContactsHand, AnEditSurvivesWhatTheNetworkSaysAndGoesWithItsPerson)
{
    Type(QStringLiteral("pri"));
    Key(Qt::Key_F2);
    Type(QStringLiteral("Pi"));
    stage_.Add(u"priya@example.org", u"Priya R.", SignPresence::Online);
    Stage::Settle();
    Type(QStringLiteral("a"));
    Key(Qt::Key_Return);
    EXPECT_EQ(stage_.network.TakeLog(), u"rename:priya@example.org=Pia ");
    Key(Qt::Key_F2);
    stage_.network.listener->OnContactGone(u"priya@example.org");
    Stage::Settle();
    stage_.GetList().setFocus();
    Key(Qt::Key_Home);
    EXPECT_EQ(stage_.network.TakeLog(), u"");
}

// A stranger's text widens nothing, and a row stays a row.
TEST_F(ContactsHand, HostileTextsKeepTheirLine)
{
    const int width = stage_.GetWindow().width();
    const int height = RectOf(QStringLiteral("Jonas Ekberg")).height();
    const String evil = u"<b>Jonas</b>\u202E\r\n" + String(10240, u'W');
    stage_.network.listener->OnContact({u"jonas@example.org", evil, SignPresence::Online});
    stage_.network.SetSignOf(u"jonas@example.org", u"music", evil, u"http://a.example/");
    stage_.network.SetSign(u"music", evil, {});
    stage_.network.SetState(SignConnection::UntrustedCertificate, 0, evil);
    Stage::Grab(stage_.GetWindow(), "contacts-hostile");
    EXPECT_EQ(stage_.GetWindow().width(), width);
    const QModelIndex row = stage_.GetList().model()->index(1, 0);
    EXPECT_EQ(stage_.GetList().visualRect(row).height(), height);
    EXPECT_TRUE(row.data().toString().startsWith(QStringLiteral("<b>Jonas</b> WW")));
    EXPECT_FALSE(row.data().toString().contains(QChar(0x202E)));
    Stage::InModal([](QWidget& form) { EXPECT_LE(form.width(), 360); });
    stage_.desk.Remove(u"jonas@example.org");
}

} // namespace
} // namespace kivo::host
