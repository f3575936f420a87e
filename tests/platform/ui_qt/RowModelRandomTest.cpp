#include "platform/ui/qt/RowView.h"
#include "platform/ui/qt/WidgetPeer.h"
#include "tests/platform/ui_qt/Desk.h"

#include <gtest/gtest.h>
#include <QAbstractItemModelTester>

#include <algorithm>
#include <random>

namespace kivo::ui::qt {
namespace {

// Random histories of brackets; after each the view must show what the rows say, and Qt's own
// tester must have found nothing wrong on the way.
class History {
public:
    explicit History(unsigned seed)
        : random_(seed)
        , tester_(&GetView().GetModel(), QAbstractItemModelTester::FailureReportingMode::Fatal)
    {
    }

    void Run(int brackets)
    {
        for (int bracket = 0; bracket < brackets; ++bracket) {
            GetTree().BeginUpdate();
            for (int step = Below(12); step >= 0; --step)
                Step();
            GetTree().EndUpdate(1);
            if (Below(4) == 0)
                Settle();
            Compare();
        }
    }

private:
    int Below(int end) { return std::uniform_int_distribution<int>(0, end - 1)(random_); }
    TestTree& GetTree() { return page_.GetTree(); }
    RowView& GetView() { return *static_cast<RowView*>(WidgetOf(&GetTree())); }
    CSkinTreeItem* AnyGroup()
    {
        CSkinTreeItem* root = GetTree().GetRoot();
        return root->GetChildCount() == 0 ? nullptr : root->GetChild(Below(root->GetChildCount()));
    }
    CSkinTreeItem* AnyTrack()
    {
        CSkinTreeItem* group = AnyGroup();
        return group == nullptr || group->GetChildCount() == 0
                   ? nullptr
                   : group->GetChild(Below(group->GetChildCount()));
    }

    void Step()
    {
        CSkinTreeItem* group = AnyGroup();
        switch (group == nullptr ? 0 : Below(10)) {
        case 0: GetTree().AddGroup(u"g" + common::ToText(++name_), {}, /*expanded=*/false); break;
        case 1:
        case 2:
            for (int count = Below(40); count >= 0; --count)
                GetTree().AddRow(*group, u"t" + common::ToText(++name_));
            break;
        case 3: GetTree().RemoveTreeItem(AnyTrack()); break;
        case 4:
            if (Below(4) == 0)
                GetTree().RemoveTreeItem(group);
            break;
        case 5: RemoveSome(*group); break;
        case 6:
            std::shuffle(group->GetChildren().begin(), group->GetChildren().end(), random_);
            group->ChildrenChanged();
            break;
        case 7: group->Expand(&GetTree(), 0, !group->IsExpanded()); break;
        case 8:
            if (CSkinTreeItem* track = AnyTrack();
                track != nullptr && track->GetParentItem()->IsExpanded())
                track->SetSelected(Below(2));
            break;
        default: {
            CPtrArray& groups = GetTree().GetRoot()->GetChildren();
            std::rotate(groups.begin(),
                        groups.begin() + Below(static_cast<int>(groups.size())),
                        groups.end());
            GetTree().GetRoot()->ChildrenChanged();
            break;
        }
        }
    }

    // Every other row, so that there are more separate changes than are carried one by one.
    void RemoveSome(CSkinTreeItem& group)
    {
        std::vector<CSkinTreeItem*> rows;
        for (int place = Below(2); place < group.GetChildCount(); place += 2)
            rows.push_back(group.GetChild(place));
        GetTree().RemoveTreeItems(rows);
    }

    void Compare()
    {
        std::vector<String> expected;
        std::vector<const CSkinListItem*> selected;
        for (int place = 0; place < GetTree().GetRowCount(); ++place) {
            CSkinListItem* row = GetTree().GetRowAt(place);
            expected.push_back(row->GetID());
            if (row->IsSelected())
                selected.push_back(row);
        }
        EXPECT_EQ(ShownIn(GetTree()), expected);
        EXPECT_EQ(static_cast<int>(selected.size()), GetTree().GetSelectedCount());
        std::vector<const CSkinListItem*> inView;
        for (const QModelIndex& index : GetView().selectionModel()->selectedRows())
            inView.push_back(GetView().GetModel().RowOf(index));
        std::sort(selected.begin(), selected.end());
        std::sort(inView.begin(), inView.end());
        EXPECT_EQ(inView, selected);
    }

    Desk desk_;
    DeskPage page_;
    std::mt19937 random_;
    QAbstractItemModelTester tester_;
    int name_ = 0;
};

class RowModelRandom : public testing::TestWithParam<unsigned> {};

TEST_P(RowModelRandom, FollowsTheRowsThroughEveryHistory)
{
    History history(GetParam());
    history.Run(60);
}

INSTANTIATE_TEST_SUITE_P(Seeds, RowModelRandom, testing::Range(1U, 26U));

} // namespace
} // namespace kivo::ui::qt
