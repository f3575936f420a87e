#include "tests/platform/ui/Rows.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <set>

// Random histories of a tree against a model that knows only lists of ids. That a view follows is
// the random test of its peer.
namespace kivo::ui {
namespace {

struct ModelGroup {
    String id;
    bool expanded = false;
    std::vector<String> rows;
};

class History {
public:
    explicit History(unsigned seed)
        : random_(seed)
    {
        for (int group = 0; group < 3; ++group)
            AddGroup();
    }

    void Run()
    {
        for (int batch = 0; batch < 40; ++batch) {
            const int brackets = Pick(3); // None at all, one, one in the other.
            for (int depth = 0; depth < brackets; ++depth)
                tree_.BeginUpdate();
            for (int step = Pick(12); step >= 0; --step)
                Step();
            for (int depth = 0; depth < brackets; ++depth)
                tree_.EndUpdate(1);
            Check();
            if (testing::Test::HasFailure())
                return;
        }
    }

private:
    int Pick(int count) { return static_cast<int>(random_() % static_cast<unsigned>(count)); }
    TestRow& Group(std::size_t index)
    {
        return static_cast<TestRow&>(*tree_.GetRoot()->GetChild(static_cast<int>(index)));
    }

    void AddGroup()
    {
        const String id = u"G" + String(1, static_cast<char16_t>(u'0' + next_++ % 60));
        tree_.AddGroup(id, {}, /*expanded=*/false);
        model_.push_back({id, false, {}});
    }

    void Step()
    {
        if (model_.empty() || (model_.size() < 8 && Pick(20) == 0)) {
            AddGroup();
            return;
        }
        const auto index = static_cast<std::size_t>(Pick(static_cast<int>(model_.size())));
        switch (Pick(8)) {
        case 0:
        case 1: AddRows(index, Pick(90)); break;
        case 2: RemoveSome(index); break;
        case 3: Clear(index); break;
        case 4: Move(index); break;
        case 5: Fold(index); break;
        case 6: Select(index); break;
        default: RemoveGroup(index); break;
        }
    }

    void AddRows(std::size_t index, int count)
    {
        for (int row = 0; row < count; ++row) {
            const String id = u"r" + String(1, static_cast<char16_t>(0x4E00 + next_++ % 20000));
            tree_.AddRow(Group(index), id);
            model_[index].rows.push_back(id);
        }
    }

    // At once or one by one.
    void RemoveSome(std::size_t index)
    {
        std::vector<CSkinTreeItem*> going;
        std::vector<String> left;
        TestRow& group = Group(index);
        for (int row = 0; row < group.GetChildCount(); ++row) {
            CSkinTreeItem* item = group.GetChild(row);
            EXPECT_EQ(group.IndexOf(item), row);
            if (Pick(3) != 0) {
                left.push_back(item->GetID());
                continue;
            }
            selected_.erase(item->GetID());
            going.push_back(item);
        }
        std::shuffle(going.begin(), going.end(), random_);
        if (Pick(2) == 0)
            tree_.RemoveTreeItems(going);
        else
            for (CSkinTreeItem* row : going)
                tree_.RemoveTreeItem(row);
        model_[index].rows = left;
    }

    void Clear(std::size_t index)
    {
        if (Pick(4) != 0)
            return;
        TestRow& group = Group(index);
        const int first = tree_.LocateRow(&group) + 1;
        tree_.BeginUpdate();
        int row = 0;
        for (void* pointer : group.GetChildren()) {
            auto* going = static_cast<TestRow*>(pointer);
            EXPECT_EQ(tree_.LocateRow(going), group.IsExpanded() ? first + row++ : -1);
            selected_.erase(going->GetID());
            tree_.RemoveItem(tree_.LocateRow(going));
            going->Release();
        }
        group.GetChildren().clear(); // The tree knows by the rows' ends.
        tree_.EndUpdate(1);
        model_[index].rows.clear();
    }

    void Move(std::size_t index)
    {
        CPtrArray& rows = Group(index).GetChildren();
        if (rows.size() < 2)
            return;
        const auto middle = static_cast<std::ptrdiff_t>(Pick(static_cast<int>(rows.size())));
        std::rotate(rows.begin(), rows.begin() + middle, rows.end());
        Group(index).ChildrenChanged();
        auto& model = model_[index].rows;
        std::rotate(model.begin(), model.begin() + middle, model.end());
    }

    void Fold(std::size_t index)
    {
        ModelGroup& group = model_[index];
        group.expanded = !group.expanded;
        Group(index).Expand(&tree_, tree_.LocateRow(&Group(index)), group.expanded);
        if (!group.expanded)
            for (const String& row : group.rows)
                selected_.erase(row);
    }

    void Select(std::size_t index)
    {
        for (int row = 0; row < Group(index).GetChildCount(); row += 1 + Pick(20)) {
            const bool on = Pick(2) != 0;
            CSkinTreeItem* item = Group(index).GetChild(row);
            item->SetSelected(on ? 1 : 0);
            if (on)
                selected_.insert(item->GetID());
            else
                selected_.erase(item->GetID());
        }
    }

    void RemoveGroup(std::size_t index)
    {
        if (Pick(5) != 0)
            return;
        for (const String& row : model_[index].rows)
            selected_.erase(row);
        tree_.RemoveTreeItem(&Group(index));
        model_.erase(model_.begin() + static_cast<std::ptrdiff_t>(index));
    }

    void Check()
    {
        std::vector<String> shown;
        std::vector<String> selected;
        for (const ModelGroup& group : model_) {
            shown.push_back(group.id);
            if (group.expanded)
                shown.insert(shown.end(), group.rows.begin(), group.rows.end());
            for (const String& row : group.rows)
                if (selected_.contains(row))
                    selected.push_back(row);
        }
        EXPECT_TRUE(tree_.Shown() == shown);
        EXPECT_TRUE(tree_.Selected() == selected);
        EXPECT_EQ(tree_.GetSelectedCount(), static_cast<int>(selected.size()));
        EXPECT_EQ(tree_.GetRowCount(), static_cast<int>(shown.size()));
        for (int probe = 0; probe < 10 && !shown.empty(); ++probe) {
            const int place = Pick(static_cast<int>(shown.size()));
            const CSkinListItem* row = tree_.GetRowAt(place);
            ASSERT_NE(row, nullptr);
            EXPECT_TRUE(row->GetID() == shown[static_cast<std::size_t>(place)]);
            EXPECT_EQ(tree_.LocateRow(row), place);
        }
    }

    std::mt19937 random_;
    TestTree tree_;
    std::vector<ModelGroup> model_;
    std::set<String> selected_;
    int next_ = 0;
};

TEST(TreeRandom, RowsModelAndViewAgreeThroughAnyHistory)
{
    for (unsigned seed = 1; seed <= 120; ++seed) {
        SCOPED_TRACE(seed);
        History history(seed);
        history.Run();
        if (testing::Test::HasFailure())
            return;
    }
}

} // namespace
} // namespace kivo::ui
