#include "platform/ui/qt/RowView.h"

#include "platform/ui/qt/SkinLook.h"
#include "platform/ui/qt/UriList.h"
#include "platform/ui/qt/WidgetPeer.h"
#include "tests/platform/ui_qt/Desk.h"
#include "tests/support/QtInput.h"

#include <gtest/gtest.h>
#include <QApplication>
#include <QDragEnterEvent>
#include <QLineEdit>
#include <QMenu>
#include <QMimeData>
#include <QScrollBar>
#include <QTest>

namespace kivo::ui::qt {
namespace {

using Texts = std::vector<String>;

// A page with the groups A (open: a1, a2, a3), B (open: b1, b2) and C (folded: c1).
class RowViewTest : public testing::Test {
protected:
    RowViewTest()
    {
        TestTree& tree = page.GetTree();
        tree.BeginUpdate();
        groups = {tree.AddGroup(u"A", {u"a1", u"a2", u"a3"}),
                  tree.AddGroup(u"B", {u"b1", u"b2"}),
                  tree.AddGroup(u"C", {u"c1"}, /*expanded=*/false)};
        tree.EndUpdate(1);
        page.GetWindow()->activateWindow();
        GetView().setFocus();
        Settle();
        tree.log.clear();
    }

    RowView& GetView() { return *static_cast<RowView*>(WidgetOf(&page.GetTree())); }
    TestTree& GetTree() { return page.GetTree(); }
    CSkinListItem* RowNamed(const String& id)
    {
        for (int place = 0; place < GetTree().GetRowCount(); ++place)
            if (GetTree().GetRowAt(place)->GetID() == id)
                return GetTree().GetRowAt(place);
        return nullptr;
    }
    QPoint PlaceOf(const String& id, int x = 100)
    {
        const QRect rect = GetView().GetRowRect(GetView().GetModel().IndexOf(RowNamed(id)));
        return {x, rect.center().y()};
    }
    void Click(const String& id, Qt::KeyboardModifiers keys = {}, int x = 100)
    {
        QTest::mouseClick(GetView().viewport(), Qt::LeftButton, keys, PlaceOf(id, x));
    }
    Texts GetSelected()
    {
        Texts ids;
        for (const CSkinListItem* row : GetTree().GetAllSelectedItem())
            ids.push_back(row->GetID());
        return ids;
    }
    Texts GetSelectedInView()
    {
        Texts ids;
        QModelIndexList rows = GetView().selectionModel()->selectedRows();
        for (int place = 0; place < GetTree().GetRowCount(); ++place)
            if (rows.contains(GetView().GetModel().IndexOf(GetTree().GetRowAt(place))))
                ids.push_back(GetTree().GetRowAt(place)->GetID());
        return ids;
    }
    QLineEdit* GetEditor() { return GetView().viewport()->findChild<QLineEdit*>(); }

public:
    const Desk desk;
    DeskPage page;
    std::vector<TestRow*> groups;
};

TEST_F(RowViewTest, MirrorsTheSelectionBothWays)
{
    Click(u"a1");
    EXPECT_EQ(GetSelected(), Texts{u"a1"});
    Click(u"a3", Qt::ShiftModifier);
    EXPECT_EQ(GetSelected(), (Texts{u"a1", u"a2", u"a3"}));
    Click(u"a2", Qt::ControlModifier);
    EXPECT_EQ(GetSelected(), (Texts{u"a1", u"a3"}));
    RowNamed(u"b2")->SetSelected(1);
    EXPECT_EQ(GetSelectedInView(), (Texts{u"a1", u"a3", u"b2"}));
    GetTree().ClearAllSelected();
    EXPECT_EQ(GetSelectedInView(), Texts{});
    QTest::keyClick(&GetView(), Qt::Key_A, Qt::ControlModifier);
    EXPECT_EQ(GetSelected(), GetSelectedInView());
}

TEST_F(RowViewTest, ARangeNeverMixesGroupsAndTracks)
{
    Click(u"a2");
    Click(u"b1", Qt::ShiftModifier); // Across the group row B.
    EXPECT_EQ(GetSelected(), (Texts{u"a2", u"a3", u"b1"}));
    EXPECT_EQ(GetSelectedInView(), GetSelected());
    Click(u"A");
    Click(u"B", Qt::ShiftModifier);
    EXPECT_EQ(GetSelected(), (Texts{u"A", u"B"}));
    Click(u"a3");
    QTest::keyClick(&GetView(), Qt::Key_Down, Qt::ShiftModifier); // Onto the group row.
    EXPECT_EQ(GetSelected(), Texts{u"a3"});
}

TEST_F(RowViewTest, FoldsByPictureKeysAndCodeAndKeepsNothingHiddenSelected)
{
    Click(u"a2");
    Click(u"A", {}, 16); // On the fold picture: the selection stays out of it.
    EXPECT_FALSE(groups[0]->IsExpanded());
    EXPECT_EQ(ShownIn(GetTree()), (Texts{u"A", u"B", u"b1", u"b2", u"C"}));
    EXPECT_EQ(GetSelected(), Texts{});
    EXPECT_EQ(GetTree().GetCurrentRow(), groups[0]);
    EXPECT_EQ(GetView().GetModel().RowOf(GetView().currentIndex()), groups[0]);
    QTest::keyClick(&GetView(), Qt::Key_Right);
    EXPECT_TRUE(groups[0]->IsExpanded());
    QTest::keyClick(&GetView(), Qt::Key_Left);
    EXPECT_FALSE(groups[0]->IsExpanded());
    groups[0]->Expand(&GetTree(), 0, /*expanded=*/true);
    EXPECT_TRUE(GetView().isExpanded(GetView().GetModel().IndexOf(groups[0])));
}

TEST_F(RowViewTest, SendsDoubleClicksAndKeysToTheRow)
{
    QTest::mouseDClick(GetView().viewport(), Qt::LeftButton, {}, PlaceOf(u"a2"));
    EXPECT_EQ(GetTree().log, Texts{u"a2 515"});
    GetTree().log.clear();
    QTest::mouseDClick(GetView().viewport(), Qt::LeftButton, {}, PlaceOf(u"C", 16));
    EXPECT_EQ(GetTree().log, Texts{}) << "a double click on the fold picture is two presses";
    Click(u"b1");
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter, Qt::Key_Delete})
        QTest::keyClick(&GetView(), key);
    EXPECT_EQ(GetTree().log, (Texts{u"b1 4024", u"b1 4024", u"b1 4032"}));
}

TEST_F(RowViewTest, FindsRowsByTypingAndLeavesALoneBlankToThePlayer)
{
    QKeyEvent blank(QEvent::KeyPress, Qt::Key_Space, Qt::NoModifier, QStringLiteral(" "));
    QApplication::sendEvent(&GetView(), &blank);
    EXPECT_FALSE(blank.isAccepted());
    QTest::keyClicks(&GetView(), QStringLiteral("b2"));
    EXPECT_EQ(GetTree().GetCurrentRow(), RowNamed(u"b2"));
}

TEST_F(RowViewTest, EditsInPlace)
{
    struct Ending {
        const char* name;
        const char16_t* typed;
        Qt::Key key;
        Texts log;
    };
    const Ending endings[] = {
        {"Enter",     u"new",   Qt::Key_Return, {u"a1 > new"}},
        {"Unchanged", u"",      Qt::Key_Return, {}           },
        {"Escape",    u"other", Qt::Key_Escape, {}           },
    };
    for (const Ending& ending : endings) {
        SCOPED_TRACE(ending.name);
        GetTree().log.clear();
        CSkinListItem* row = GetTree().GetRowAt(1);
        GetTree().SetCurrentRow(row);
        QTest::keyClick(&GetView(), Qt::Key_F2);
        QLineEdit* editor = GetEditor();
        ASSERT_NE(editor, nullptr);
        EXPECT_EQ(GetTree().GetEditedRow(), row);
        QTest::keyClicks(editor, ToQt(ending.typed));
        QTest::keyClick(editor, ending.key);
        Settle();
        EXPECT_EQ(GetTree().log, ending.log);
        EXPECT_EQ(GetTree().GetEditedRow(), nullptr);
        EXPECT_EQ(GetEditor(), nullptr);
    }
}

TEST_F(RowViewTest, AnEditKeepsItsLimitAndOutlivesItsRow)
{
    GetTree().SetEditLimitText(3);
    EXPECT_EQ(GetTree().Edit(1, u"text", 1), 1);
    QTest::keyClicks(GetEditor(), QStringLiteral("12345"));
    GetTree().EndEdit();
    EXPECT_EQ(GetTree().log, Texts{u"a1 > 123"});
    Settle();
    EXPECT_EQ(GetTree().Edit(2, u"text", 1), 1);
    GetTree().RemoveTreeItem(static_cast<CSkinTreeItem*>(GetTree().GetRowAt(2)));
    Settle();
    EXPECT_EQ(GetEditor(), nullptr);
    EXPECT_EQ(GetTree().Edit(1, u"text", 1), 1);
    EXPECT_EQ(GetTree().Edit(2, u"no such cell", 1), 0);
}

TEST_F(RowViewTest, TheEditorsTextStandsWhereTheRowsDid)
{
    const QImage before = Grab(GetView());
    EXPECT_EQ(GetTree().Edit(1, u"text", 1), 1);
    GetEditor()->deselect();
    GetEditor()->home(false);
    const QImage after = Grab(GetView());
    // The first dark pixel of the text on the row's middle lines.
    const auto firstDark = [&](const QImage& image) {
        const QPoint middle = PlaceOf(u"a1") * image.devicePixelRatio();
        const int from = static_cast<int>(30 * image.devicePixelRatio());
        for (int x = from; x < image.width(); ++x)
            for (int y = middle.y() - 4; y < middle.y() + 4; ++y)
                if (qGray(image.pixel(x, y)) < 110)
                    return x;
        return -1;
    };
    EXPECT_NEAR(firstDark(before), firstDark(after), 1);
}

TEST_F(RowViewTest, AsksForTheMenuThatFits)
{
    struct Asked {
        const char* name = nullptr;
        QPoint place;
        const char* entry = nullptr;
    };
    const Asked cases[] = {
        {"OneRow",   PlaceOf(u"a2"),                      "Play a2"},
        { "Blank", QPoint(60, GetView().viewport()->height() - 5),   "Blank"},
    };
    for (const Asked& asked : cases) {
        SCOPED_TRACE(asked.name);
        QTest::mousePress(GetView().viewport(), Qt::RightButton, {}, asked.place);
        InMenu([&asked](QMenu& menu) {
            EXPECT_EQ(menu.actions().at(0)->text(), QLatin1String(asked.entry));
        });
        QContextMenuEvent event(
            QContextMenuEvent::Mouse, asked.place, GetView().viewport()->mapToGlobal(asked.place));
        QApplication::sendEvent(GetView().viewport(), &event);
    }
    Click(u"a1");
    Click(u"a3", Qt::ShiftModifier);
    InMenu([](QMenu& menu) { EXPECT_EQ(menu.actions().at(0)->text(), QStringLiteral("Several")); });
    QContextMenuEvent key(QContextMenuEvent::Keyboard, QPoint(), QPoint());
    QApplication::sendEvent(GetView().viewport(), &key);
}

TEST_F(RowViewTest, RunsTheChosenCommandOnTheRow)
{
    Click(u"b2");
    InMenu([](QMenu& menu) {
        QTest::keyClick(&menu, Qt::Key_Down);
        QTest::keyClick(&menu, Qt::Key_Return);
    });
    QContextMenuEvent key(QContextMenuEvent::Keyboard, QPoint(), QPoint());
    QApplication::sendEvent(GetView().viewport(), &key);
    EXPECT_EQ(GetTree().log, Texts{u"b2 command 1"});
}

// Sends a drag over a row and drops there, as the desktop does.
void Drop(RowView& view, const QPoint& place, const QMimeData& carried)
{
    const Qt::DropActions actions = Qt::CopyAction | Qt::MoveAction;
    QDragEnterEvent enter(place, actions, &carried, Qt::LeftButton, {});
    QApplication::sendEvent(view.viewport(), &enter);
    QDragMoveEvent move(place, actions, &carried, Qt::LeftButton, {});
    QApplication::sendEvent(view.viewport(), &move);
    QDropEvent drop(place, actions, &carried, Qt::LeftButton, {});
    QApplication::sendEvent(view.viewport(), &drop);
}

TEST_F(RowViewTest, TakesFilesAndTexts)
{
    QMimeData files;
    files.setData(QStringLiteral("text/uri-list"), "file:///m/a%20b.mp3\r\nfile:///m/%E9.mp3\r\n");
    Drop(GetView(), PlaceOf(u"a2"), files);
    EXPECT_EQ(GetTree().log, (Texts{u"a2 4105", u"a2 4104 /m/a b.mp3 /m/\xDCE9.mp3"}));
    GetTree().log.clear();
    QMimeData text;
    text.setText(QStringLiteral("KIVO2006TREEDRAG:playing#a"));
    Drop(GetView(), PlaceOf(u"B"), text);
    EXPECT_EQ(GetTree().log, (Texts{u"B 4105", u"B 4106 KIVO2006TREEDRAG:playing#a"}));
    GetTree().log.clear();
    Drop(GetView(), QPoint(60, GetView().viewport()->height() - 5), text);
    EXPECT_EQ(GetTree().log, Texts{u"blank KIVO2006TREEDRAG:playing#a"});
    EXPECT_FALSE(GetTree().IsDragInProgress());
}

// As of tracks that can't be dragged: Qt's own view would sweep the selection along instead.
TEST_F(RowViewTest, ARefusedDragLeavesTheSelection)
{
    GetTree().refusesDrags = true;
    Click(u"a1");
    Click(u"a2", Qt::ControlModifier);
    QWidget& rows = *GetView().viewport();
    QTest::mousePress(&rows, Qt::LeftButton, {}, PlaceOf(u"a2"));
    for (const char16_t* over : {u"a3", u"B", u"b1", u"b2"}) {
        const QPointF place = PlaceOf(over);
        test::DragTo(rows, place);
    }
    EXPECT_EQ(rows.cursor().shape(), Qt::ForbiddenCursor);
    QTest::mouseRelease(&rows, Qt::LeftButton, {}, PlaceOf(u"b2"));
    EXPECT_EQ(rows.cursor().shape(), Qt::ArrowCursor);
    EXPECT_EQ(GetSelected(), (Texts{u"a1", u"a2"}));
}

TEST_F(RowViewTest, StaysWhereItIsWhenRowsComeAbove)
{
    GetTree().BeginUpdate();
    for (int count = 0; count < 200; ++count)
        GetTree().AddRow(*groups[1], u"more" + common::ToText(count));
    GetTree().EndUpdate(1);
    Settle();
    RowView& view = GetView();
    view.verticalScrollBar()->setValue(1500);
    const CSkinListItem* top = view.GetModel().RowOf(view.indexAt(QPoint(5, 1)));
    const int offset = view.visualRect(view.GetModel().IndexOf(top)).top();
    GetTree().BeginUpdate();
    for (int count = 0; count < 20; ++count)
        GetTree().AddRow(*groups[0], u"above" + common::ToText(count));
    GetTree().EndUpdate(1);
    Settle();
    EXPECT_EQ(view.visualRect(view.GetModel().IndexOf(top)).top(), offset);
}

TEST_F(RowViewTest, GoesWithItsList)
{
    const QPointer<RowView> view = &GetView();
    GetTree().Edit(1, u"text", 1);
    GetTree().GetParent()->UnregisterControl(&GetTree());
    GetTree().Release();
    Settle();
    EXPECT_TRUE(view.isNull());
}

struct UriCase {
    const char* name;
    const char* bytes;
    Texts entries;
};

TEST(UriList, ReadsFilesOfThisMachineAndAddressesAlone)
{
    const UriCase cases[] = {
        {"Plain",                 "file:///a/b.mp3\r\n",                       {u"/a/b.mp3"}                       },
        {"Localhost",             "file://localhost/a",                        {u"/a"}                             },
        {"Bytes",                 "file:///%FF%c3%a9",                         {u"/\xDCFF\u00E9"}                  },
        {"CommentsAndBlankLines", "#x\r\n\r\nfile:///a\n",                     {u"/a"}                             },
        {"OtherHost",             "file://server/share/a",                     {}                                  },
        {"Address",               "HTTP://radio.example/live?a=%20",           {u"HTTP://radio.example/live?a=%20"}},
        {"OtherSchemes",          "javascript:alert(1)\nftp://a/b\nsmb://a/b", {}                                  },
        {"ZeroByte",              "file:///a%00b",                             {}                                  },
        {"HalfEscape",            "file:///a%2",                               {u"/a%2"}                           },
        {"Empty",                 "",                                          {}                                  },
    };
    for (const UriCase& row : cases) {
        SCOPED_TRACE(row.name);
        const CStringArray entries = ReadUriList(row.bytes);
        EXPECT_EQ(Texts(entries.begin(), entries.end()), row.entries);
    }
}

} // namespace
} // namespace kivo::ui::qt
