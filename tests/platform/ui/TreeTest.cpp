#include "platform/ui/NullPeers.h"
#include "tests/platform/ui/Rows.h"

#include <gtest/gtest.h>

namespace kivo::ui {
namespace {

using Ids = std::vector<String>;

class Tree : public testing::Test {
protected:
    ~Tree() override { GetNullPeerFactory().ClearScripts(); }

    TestTree tree_;
    TestRow* a_ = tree_.AddGroup(u"A", {u"a1", u"a2", u"a3"});
    TestRow* b_ = tree_.AddGroup(u"B", {u"b1", u"b2"}, /*expanded=*/false);
    TestRow* c_ = tree_.AddGroup(u"C", {u"c1"});
};

TEST_F(Tree, RowsAreLocatedAndFoundByTheirPlaceOnScreen)
{
    EXPECT_EQ(tree_.Shown(), (Ids{u"A", u"a1", u"a2", u"a3", u"B", u"C", u"c1"}));
    EXPECT_EQ(tree_.GetRowCount(), 7);
    for (int place = 0; place < 7; ++place)
        EXPECT_EQ(tree_.LocateRow(tree_.GetRowAt(place)), place);
    EXPECT_EQ(tree_.GetRowAt(7), nullptr);
    EXPECT_EQ(tree_.LocateRow(b_->GetChild(0)), -1);
    EXPECT_EQ(tree_.LocateRow(tree_.GetRoot()), -1);
    CPtrArray rows;
    tree_.GetAllSubControls(rows);
    // The rows of a group begin two behind its place: the root stands in front.
    EXPECT_EQ(rows[0], tree_.GetRoot());
    EXPECT_EQ(rows[static_cast<std::size_t>(tree_.LocateRow(a_) + 2)], a_->GetChild(0));
    tree_.Envisible(b_->GetChild(1)); // Unfolds what is above.
    EXPECT_EQ(tree_.LocateRow(b_->GetChild(1)), 6);
    tree_.RemoveItem(-1);
    tree_.RemoveItem(99);
    EXPECT_EQ(tree_.GetRowCount(), 9);
}

TEST_F(Tree, AFoldTakesSelectionAndCurrentRowOutOfTheDark)
{
    a_->GetChild(1)->SetSelected(1);
    c_->GetChild(0)->SetSelected(1);
    tree_.SetCurrentRow(a_->GetChild(1));
    tree_.OnFoldReported(a_, /*expanded=*/false);
    EXPECT_EQ(tree_.Selected(), Ids{u"c1"});
    EXPECT_EQ(tree_.GetCurrentRow(), a_);
    EXPECT_EQ(tree_.GetRowCount(), 4);
    const int folds = tree_.folds;
    tree_.OnFoldReported(a_, /*expanded=*/false);
    EXPECT_EQ(tree_.folds, folds); // It is folded already.
}

TEST_F(Tree, TheSelectionIsCountedAndGivenInScreenOrder)
{
    c_->GetChild(0)->SetSelected(1);
    a_->GetChild(2)->SetSelected(1);
    a_->GetChild(2)->SetSelected(1);
    a_->SetSelected(1);
    EXPECT_EQ(tree_.GetSelectedCount(), 3);
    EXPECT_EQ(tree_.Selected(), (Ids{u"A", u"a3", u"c1"}));
    EXPECT_FALSE(tree_.IsSelectedCannotMultiSelItem());
    a_->SetMultiSelectable(0);
    EXPECT_TRUE(tree_.IsSelectedCannotMultiSelItem());
    tree_.RemoveTreeItem(a_);
    EXPECT_EQ(tree_.GetSelectedCount(), 1);
    tree_.ClearAllSelected();
    EXPECT_EQ(tree_.GetSelectedCount(), 0);
    tree_.SetCurrentRow(c_->GetChild(0));
    tree_.SelectAll();
    EXPECT_EQ(tree_.Selected(), Ids{u"c1"}); // Of the current row's kind, and shown.
}

TEST_F(Tree, RemovingManyFreesEachOnce)
{
    auto* a1 = a_->GetChild(0);
    auto* a3 = a_->GetChild(2);
    tree_.SetCurrentRow(a3);
    tree_.SetAnchorRow(a1);
    tree_.RemoveTreeItems({a3, nullptr, a1, a3, c_, c_->GetChild(0)});
    EXPECT_EQ(tree_.Shown(), (Ids{u"A", u"a2", u"B"}));
    EXPECT_EQ(tree_.GetCurrentRow(), nullptr);
    EXPECT_EQ(tree_.GetAnchorRow(), nullptr);
    tree_.RemoveTreeItem(nullptr);
    tree_.RemoveTreeItem(tree_.GetRoot());
    EXPECT_EQ(tree_.GetRowCount(), 3);
}

TEST_F(Tree, AGroupSortsToItsPlaceBehindItsEquals)
{
    auto* late = tree_.AddGroup(u"AB", {});
    late->Sort(&tree_, /*recursive=*/false);
    EXPECT_EQ(tree_.Shown(), (Ids{u"A", u"a1", u"a2", u"a3", u"AB", u"B", u"C", u"c1"}));
    late->SetObjectID(u"D");
    late->Sort2(&tree_);
    EXPECT_EQ(tree_.Shown().back(), u"D");
    std::swap(a_->GetChildren()[0], a_->GetChildren()[2]);
    a_->Sort(&tree_, /*recursive=*/true);
    EXPECT_EQ(tree_.At(1)->GetID(), u"a1");
    EXPECT_EQ(a_->IndexOf(tree_.At(2)), 1);
}

TEST_F(Tree, AnEditEndsWithTheTextThatWasTyped)
{
    struct Case {
        const char* name;
        String typed;
        String heard; // Empty: nothing.
        int limit;
        bool committed;
    };
    const Case kCases[] = {
        {"ACommit",           u"new",          u"a1 > new", 0, true },
        {"EscapeIsNone",      u"new",          u"",         0, false},
        {"UnchangedIsEscape", u"a1",           u"",         0, true },
        {"EmptiedIsAChange",  u"",             u"a1 > ",    0, true },
        {"CutToTheLimit",     u"abcdef",       u"a1 > abc", 3, true },
        {"NeverHalfAPair",    u"ab\U0001F3B5", u"a1 > ab",  3, true },
        {"NorAfterTheEditor", u"ab\xD83C",     u"a1 > ab",  9, true },
    };
    for (const Case& row : kCases) {
        SCOPED_TRACE(row.name);
        tree_.log.clear();
        tree_.SetEditLimitText(row.limit);
        ASSERT_EQ(tree_.Edit(1, u"text", 1), 1);
        EXPECT_EQ(tree_.GetEditedRow(), tree_.GetRowAt(1));
        tree_.OnEditFinished(row.typed, row.committed);
        EXPECT_EQ(tree_.GetEditedRow(), nullptr);
        EXPECT_EQ(tree_.log, row.heard.empty() ? Ids{} : Ids{row.heard});
    }
    EXPECT_EQ(tree_.Edit(1, u"length", 1), 0);
    EXPECT_EQ(tree_.Edit(-1, u"text", 1), 0);
    // The row goes while it is being edited.
    ASSERT_EQ(tree_.Edit(1, u"text", 1), 1);
    tree_.RemoveTreeItem(tree_.At(1));
    tree_.OnEditFinished(u"late", /*committed=*/true);
}

TEST_F(Tree, ADropIsUnderWayWhileItsRowIsTold)
{
    TestRow* row = tree_.At(1);
    String text;
    EXPECT_EQ(tree_.OnDragStart(text), 0); // Nothing is allowed yet.
    EXPECT_FALSE(tree_.OnDragOver(row));
    tree_.SetCanDrag(1);
    tree_.SetCanDrop(1);
    EXPECT_EQ(tree_.OnDragStart(text), 1);
    EXPECT_TRUE(tree_.OnDragOver(row));
    EXPECT_TRUE(tree_.IsDragInProgress());
    tree_.OnDragLeave();
    EXPECT_FALSE(tree_.IsDragInProgress());
    std::size_t files = 0;
    tree_.onEvent = [&](TestRow& /*row*/, int /*event*/) {
        files = tree_.IsDragInProgress() ? tree_.GetDroppedFiles().size() : 0;
    };
    tree_.OnFilesDropped(row, CStringArray{u"/m/a.mp3", u"/m/b.mp3"});
    EXPECT_EQ(files, 2U);
    EXPECT_TRUE(tree_.GetDroppedFiles().empty());
    EXPECT_FALSE(tree_.IsDragInProgress());
}

TEST_F(Tree, AnEventMayDestroyItsRowOrTheWholeTree)
{
    tree_.onEvent = [this](TestRow& row, int /*event*/) { tree_.RemoveTreeItem(&row); };
    tree_.SetCurrentRow(tree_.GetRowAt(1));
    tree_.OnKey(ListKey::Delete);
    EXPECT_EQ(tree_.Shown()[1], u"a2");
    tree_.SetCanDrop(1);
    EXPECT_FALSE(tree_.OnDragOver(tree_.At(1)));

    auto* tree = new TestTree;
    tree->AddGroup(u"G", {u"g"});
    tree->onEvent = [tree](TestRow& /*row*/, int /*event*/) { tree->Release(); };
    tree->OnFilesDropped(tree->At(1), CStringArray{u"/a.mp3"});
}

// Swallows a click that would extend the selection from a track to a group.
class RuledTree : public TestTree {
public:
    void OnLButtonDown(unsigned flags, Point point) override
    {
        const auto* hit = static_cast<TestRow*>(HitTest(point));
        const auto* anchor = static_cast<const TestRow*>(GetAnchorRow());
        if (GetCurKeyState() == 2 && hit != nullptr && anchor != nullptr &&
            hit->IsGroup() != anchor->IsGroup())
            return;
        CSkinTree::OnLButtonDown(flags, point);
    }
};

TEST(TreePress, TheTreeMayKeepAClickFromTheSelection)
{
    RuledTree tree;
    TestRow* group = tree.AddGroup(u"G", {u"a", u"b"});
    CSkinListItem* first = group->GetChild(0);
    EXPECT_TRUE(tree.OnPress(first, {1, 1}, /*shift=*/false));
    EXPECT_EQ(tree.GetAnchorRow(), first);
    EXPECT_FALSE(tree.OnPress(group, {1, 1}, /*shift=*/true));
    EXPECT_TRUE(tree.OnPress(group->GetChild(1), {1, 1}, /*shift=*/true));
    EXPECT_EQ(tree.GetAnchorRow(), first); // Shift keeps the start of the extension.
    EXPECT_EQ(tree.HitTest({5, 45}), group->GetChild(1));
    EXPECT_EQ(tree.HitTest({5, 65}), nullptr);
}

TEST_F(Tree, TheMenuIsChosenByWhatIsUnderTheHand)
{
    struct Case {
        const char* name;
        int row; // -1: the empty area.
        int selected;
        int id;
        Ids ran;
    };
    const Case kCases[] = {
        {"OneRow",      1,  1, 1, {u"a1 command 1"}},
        {"SeveralRows", 1,  2, 2, {u"a1 command 2"}},
        {"BlankArea",   -1, 0, 3, {}               },
    };
    for (const Case& row : kCases) {
        SCOPED_TRACE(row.name);
        tree_.ClearAllSelected();
        tree_.log.clear();
        for (int place = 1; place <= row.selected; ++place)
            tree_.At(place)->SetSelected(1);
        int asked = 0;
        GetNullPeerFactory().QueueMenu([&asked](IMenu& menu) {
            asked = menu.GetEntries().front()->GetID();
            return menu.GetEntries().front().get();
        });
        tree_.OnContextMenu(tree_.GetRowAt(row.row), -1, -1);
        EXPECT_EQ(asked, row.id);
        EXPECT_EQ(tree_.log, row.ran);
    }
}

} // namespace
} // namespace kivo::ui
