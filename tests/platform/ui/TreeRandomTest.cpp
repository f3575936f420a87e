#include "platform/ui/NullPeers.h"
#include "tests/platform/ui/Rows.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <random>
#include <set>

// Random histories of a tree against a model that knows only lists of ids, and a view that hears of
// them by Sync alone and must end up with the same rows.
namespace kivo::ui {
namespace {

// A view as a window system's would be: per parent the rows that it heard of last.
class MirrorPeer final : public IListPeer {
public:
    explicit MirrorPeer(CSkinTree& tree)
        : tree_(tree)
    {
    }

    void Apply(Change /*change*/) override {}
    [[nodiscard]] Size GetPreferredSize() const override { return {}; }
    void SetFocus() override {}
    [[nodiscard]] bool HasFocus() const override { return false; }
    [[nodiscard]] Point MapToScreen(Point point) const override { return point; }
    [[nodiscard]] Rect GetWindowRect() const override { return {}; }
    void Center(CWnd* /*parent*/) override {}
    bool TrackMouseLeave() override { return false; }
    bool OpenEditor(CSkinListItem* /*row*/, const String& /*cellId*/) override { return true; }
    void CloseEditor(bool /*commit*/) override {}
    void ScrollTo(CSkinListItem* /*row*/) override {}
    [[nodiscard]] CSkinListItem* HitTest(Point /*point*/) const override { return nullptr; }

    void Sync(const RowChanges& changes) override
    {
        EXPECT_FALSE(changes.IsEmpty());
        EXPECT_FALSE(tree_.IsUpdating());
        EXPECT_LE(changes.rows.size(), 32U);
        const std::set<CSkinTreeItem*> touched(changes.touchedParents.begin(),
                                               changes.touchedParents.end());
        EXPECT_EQ(touched.size(), changes.touchedParents.size());
        for (CSkinTreeItem* parent : touched)
            told_[parent] = parent->GetChildren();
        for (CSkinTreeItem* row : changes.folded)
            expanded_[row] = row->IsExpanded();
        for (CSkinListItem* row : changes.rows)
            EXPECT_FALSE(row->GetID().empty()); // Alive.
    }
    void OnRowGone(CSkinListItem* row, CSkinTreeItem* parent) override
    {
        EXPECT_NE(parent, nullptr);
        told_.erase(static_cast<CSkinTreeItem*>(row));
        expanded_.erase(static_cast<CSkinTreeItem*>(row));
    }
    void OnRootGone() override { told_.clear(); }

    [[nodiscard]] std::vector<String> Shown()
    {
        std::vector<String> ids;
        for (void* group : told_[tree_.GetRoot()]) {
            auto* row = static_cast<CSkinTreeItem*>(group);
            ids.push_back(row->GetID());
            if (!expanded_[row])
                continue;
            for (void* child : told_[row])
                ids.push_back(static_cast<CSkinTreeItem*>(child)->GetID());
        }
        return ids;
    }

private:
    CSkinTree& tree_;
    std::map<CSkinTreeItem*, CPtrArray> told_;
    std::map<CSkinTreeItem*, bool> expanded_;
};

class MirrorFactory : public NullPeerFactory {
public:
    std::unique_ptr<IListPeer> MakeTree(CSkinTree& tree) override
    {
        auto made = std::make_unique<MirrorPeer>(tree);
        peer = made.get();
        return made;
    }
    MirrorPeer* peer = nullptr;
};

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
        SetPeerFactory(&factory_);
        tree_ = std::make_unique<TestTree>();
        for (int group = 0; group < 3; ++group)
            AddGroup();
    }
    ~History() { SetPeerFactory(nullptr); }

    void Run()
    {
        for (int batch = 0; batch < 40; ++batch) {
            const bool bracket = Pick(4) != 0;
            const int nested = Pick(2);
            if (bracket)
                for (int depth = 0; depth <= nested; ++depth)
                    tree_->BeginUpdate();
            const int steps = Pick(12) + 1;
            for (int step = 0; step < steps; ++step)
                Step();
            if (bracket)
                for (int depth = 0; depth <= nested; ++depth)
                    tree_->EndUpdate(1);
            Check();
            if (testing::Test::HasFailure())
                return;
        }
    }

private:
    int Pick(int count) { return static_cast<int>(random_() % static_cast<unsigned>(count)); }
    TestRow& Group(std::size_t index)
    {
        return static_cast<TestRow&>(*tree_->GetRoot()->GetChild(static_cast<int>(index)));
    }

    void AddGroup()
    {
        const String id = u"G" + String(1, static_cast<char16_t>(u'0' + next_++ % 60));
        tree_->AddGroup(id, {}, /*expanded=*/false);
        model_.push_back({id, false, {}});
    }

    void Step()
    {
        if (model_.empty() || (model_.size() < 8 && Pick(20) == 0)) {
            AddGroup();
            return;
        }
        const auto index = static_cast<std::size_t>(Pick(static_cast<int>(model_.size())));
        switch (Pick(9)) {
        case 0:
        case 1: AddRows(index, Pick(90)); break;
        case 2: RemoveRows(index); break;
        case 3: Clear(index); break;
        case 4: Move(index); break;
        case 5: Fold(index); break;
        case 6: Select(index); break;
        case 7: RemoveMany(index); break;
        default: RemoveGroup(index); break;
        }
    }

    void AddRows(std::size_t index, int count)
    {
        for (int row = 0; row < count; ++row) {
            const String id = u"r" + String(1, static_cast<char16_t>(0x4E00 + next_++ % 20000));
            tree_->AddRow(Group(index), id);
            model_[index].rows.push_back(id);
        }
    }

    void RemoveAt(std::size_t index, int row)
    {
        TestRow& group = Group(index);
        CSkinTreeItem* going = group.GetChild(row);
        EXPECT_EQ(group.IndexOf(going), row);
        selected_.erase(going->GetID());
        tree_->RemoveTreeItem(going);
        model_[index].rows.erase(model_[index].rows.begin() + row);
    }

    void RemoveRows(std::size_t index)
    {
        for (int count = Pick(70); count > 0 && !model_[index].rows.empty(); --count)
            RemoveAt(index, Pick(static_cast<int>(model_[index].rows.size())));
    }

    void RemoveMany(std::size_t index)
    {
        std::vector<CSkinTreeItem*> going;
        std::vector<String> left;
        for (int row = 0; row < Group(index).GetChildCount(); ++row) {
            CSkinTreeItem* item = Group(index).GetChild(row);
            if (Pick(3) != 0) {
                left.push_back(item->GetID());
                continue;
            }
            selected_.erase(item->GetID());
            going.push_back(item);
        }
        std::shuffle(going.begin(), going.end(), random_);
        tree_->RemoveTreeItems(going);
        model_[index].rows = left;
    }

    void Clear(std::size_t index)
    {
        if (Pick(4) != 0)
            return;
        TestRow& group = Group(index);
        const int first = tree_->LocateRow(&group) + 1;
        tree_->BeginUpdate();
        int row = 0;
        for (void* pointer : group.GetChildren()) {
            auto* going = static_cast<TestRow*>(pointer);
            EXPECT_EQ(tree_->LocateRow(going), group.IsExpanded() ? first + row++ : -1);
            selected_.erase(going->GetID());
            tree_->RemoveItem(tree_->LocateRow(going));
            going->Release();
        }
        group.GetChildren().clear(); // The tree knows by the rows' ends.
        tree_->EndUpdate(1);
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
        Group(index).Expand(tree_.get(), tree_->LocateRow(&Group(index)), group.expanded);
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
        tree_->RemoveTreeItem(&Group(index));
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
        EXPECT_TRUE(tree_->Shown() == shown);
        EXPECT_TRUE(factory_.peer->Shown() == shown);
        EXPECT_TRUE(tree_->Selected() == selected);
        EXPECT_EQ(tree_->GetSelectedCount(), static_cast<int>(selected.size()));
        EXPECT_EQ(tree_->GetRowCount(), static_cast<int>(shown.size()));
        for (int probe = 0; probe < 10 && !shown.empty(); ++probe) {
            const int place = Pick(static_cast<int>(shown.size()));
            const CSkinListItem* row = tree_->GetRowAt(place);
            ASSERT_NE(row, nullptr);
            EXPECT_TRUE(row->GetID() == shown[static_cast<std::size_t>(place)]);
            EXPECT_EQ(tree_->LocateRow(row), place);
        }
    }

    std::mt19937 random_;
    MirrorFactory factory_;
    std::unique_ptr<TestTree> tree_;
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
