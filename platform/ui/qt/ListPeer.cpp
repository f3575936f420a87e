#include "platform/ui/qt/ListPeer.h"

#include "platform/ui/qt/RowView.h"
#include "platform/ui/qt/WidgetPeer.h"
#include "shell/contracts/ui/SkinTree.h"

#include <algorithm>

namespace kivo::ui::qt {

namespace {

int DepthOf(const CSkinTreeItem* row)
{
    int depth = 0;
    for (const CSkinTreeItem* above = row->GetParentItem(); above != nullptr;
         above = above->GetParentItem())
        ++depth;
    return depth;
}

class ListPeer final : public WindowPeer<IListPeer, CSkinList, RowView> {
public:
    ListPeer(CSkinList& list, RowView* view)
        : WindowPeer(list, view)
        , tree_(dynamic_cast<CSkinTree*>(&list))
    {
        RowChanges all;
        all.items = tree_ == nullptr;
        if (tree_ != nullptr && tree_->GetRoot() != nullptr)
            all.touchedParents.push_back(tree_->GetRoot());
        all.selection = true;
        all.current = true;
        Sync(all);
        Apply(Change::Visible);
    }

    // What a list holds beside its rows lies on them.
    [[nodiscard]] QWidget* GetHolder() const override
    {
        return widget_ == nullptr ? nullptr : widget_->viewport();
    }

    void Sync(const RowChanges& changes) override
    {
        if (widget_ == nullptr)
            return;
        widget_->BeginEcho();
        const bool replaced = SyncRows(changes);
        SyncFolds(changes);
        if (changes.manyRows)
            widget_->viewport()->update();
        else
            for (const CSkinListItem* row : changes.rows)
                widget_->GetModel().RowChanged(row);
        if (changes.selection || replaced)
            widget_->GetSelection().TakeFromRows();
        if (changes.current || replaced)
            TakeCurrent();
        widget_->EndEcho();
        ReportCurrent();
    }

    void OnRowGone(CSkinListItem* row, CSkinTreeItem* parent) override
    {
        if (widget_ != nullptr)
            widget_->GetModel().RowGone(row, parent);
    }

    void OnRootGone() override
    {
        if (widget_ == nullptr)
            return;
        widget_->BeginEcho();
        widget_->GetModel().RootGone();
        widget_->EndEcho();
    }

    bool OpenEditor(CSkinListItem* row, const String& cellId) override
    {
        if (widget_ == nullptr)
            return false;
        const QModelIndex index = widget_->GetModel().IndexOf(row);
        if (!index.isValid())
            return false;
        widget_->BeginEcho();
        widget_->setCurrentIndex(index);
        widget_->EndEcho();
        // The editor's row is the selected and the current one: what the echo held back.
        control_.ClearAllSelected();
        row->SetSelected(1);
        control_.SetCurrentRow(row);
        return widget_ != nullptr && widget_->OpenEditor(widget_->GetModel().IndexOf(row), cellId);
    }

    void CloseEditor(bool commit) override
    {
        if (widget_ != nullptr)
            widget_->CloseEditor(commit);
    }

    void ScrollTo(CSkinListItem* row) override
    {
        if (widget_ == nullptr)
            return;
        const QModelIndex index = widget_->GetModel().IndexOf(row);
        if (index.isValid())
            widget_->scrollTo(index, QAbstractItemView::EnsureVisible);
    }

    [[nodiscard]] CSkinListItem* HitTest(Point point) const override
    {
        if (widget_ == nullptr)
            return nullptr;
        return widget_->GetModel().RowOf(widget_->indexAt(ToQt(point)));
    }

protected:
    void ApplyOwn(Change change) override
    {
        switch (change) {
        case Change::Rows: widget_->ApplyRules(); break;
        case Change::Skin:
        case Change::Look:
        case Change::Font: widget_->ApplySkin(); break;
        case Change::Cursor: ApplyCursor(*widget_, control_.GetCursor()); break;
        default: widget_->viewport()->update(); break;
        }
    }

private:
    bool SyncRows(const RowChanges& changes)
    {
        if (changes.touchedParents.empty() && !changes.items)
            return false;
        widget_->KeepTop();
        bool replaced = changes.items && widget_->GetModel().Sync(nullptr);
        // From the root down: a group that is new brings its rows with it.
        std::vector<CSkinTreeItem*> parents = changes.touchedParents;
        std::stable_sort(
            parents.begin(), parents.end(), [](const CSkinTreeItem* a, const CSkinTreeItem* b) {
                return DepthOf(a) < DepthOf(b);
            });
        for (const CSkinTreeItem* parent : parents)
            replaced = widget_->GetModel().Sync(parent) || replaced;
        return replaced;
    }

    void SyncFolds(const RowChanges& changes)
    {
        std::vector<CSkinTreeItem*> groups = widget_->GetModel().TakeNewGroups();
        groups.insert(groups.end(), changes.folded.begin(), changes.folded.end());
        for (const CSkinTreeItem* group : groups) {
            const QModelIndex index = widget_->GetModel().IndexOf(group);
            if (index.isValid() && widget_->isExpanded(index) != group->IsExpanded())
                widget_->setExpanded(index, group->IsExpanded());
        }
    }

    void TakeCurrent()
    {
        const QModelIndex index = widget_->GetModel().IndexOf(control_.GetCurrentRow());
        if (index != widget_->currentIndex() &&
            (index.isValid() || control_.GetCurrentRow() == nullptr))
            widget_->GetSelection().setCurrentIndex(index, QItemSelectionModel::NoUpdate);
    }

    // Qt makes a neighbour current when the current row goes.
    void ReportCurrent()
    {
        CSkinListItem* current = widget_->GetModel().RowOf(widget_->currentIndex());
        if (current != nullptr && current != control_.GetCurrentRow())
            control_.OnCurrentReported(current);
    }

    CSkinTree* tree_;
};

} // namespace

std::unique_ptr<IListPeer> MakeListPeer(CSkinList& list)
{
    return std::make_unique<ListPeer>(
        list, new RowView(list, dynamic_cast<CSkinTree*>(&list), ParentWidgetOf(list)));
}

} // namespace kivo::ui::qt
