#include "platform/ui/qt/RowSelection.h"

#include "platform/ui/qt/RowModel.h"
#include "shell/contracts/ui/SkinList.h"

#include <algorithm>

namespace kivo::ui::qt {

RowSelection::RowSelection(RowModel& model, CSkinList& list)
    : QItemSelectionModel(&model)
    , model_(model)
    , list_(&list)
{
}

void RowSelection::TakeFromRows()
{
    QItemSelection selection;
    if (list_ != nullptr && list_->GetSelectedCount() > 0)
        Collect(QModelIndex(), selection);
    taking_ = true;
    if (selection.isEmpty())
        clearSelection();
    else
        select(selection, ClearAndSelect);
    taking_ = false;
}

void RowSelection::Collect(const QModelIndex& parent, QItemSelection& selection) const
{
    const int count = model_.rowCount(parent);
    int first = -1;
    for (int place = 0; place <= count; ++place) {
        const QModelIndex index = place < count ? model_.index(place, 0, parent) : QModelIndex();
        const CSkinListItem* row = model_.RowOf(index);
        const bool selected = row != nullptr && row->IsSelected();
        if (selected && first < 0)
            first = place;
        if (!selected && first >= 0) {
            selection.append(QItemSelectionRange(model_.index(first, 0, parent),
                                                 model_.index(place - 1, 0, parent)));
            first = -1;
        }
        if (index.isValid() && model_.hasChildren(index))
            Collect(index, selection);
    }
}

bool RowSelection::IsOfAnchorsKind(const QItemSelectionRange& range) const
{
    QModelIndex anchor = list_ == nullptr ? QModelIndex() : model_.IndexOf(list_->GetAnchorRow());
    if (!anchor.isValid())
        anchor = currentIndex();
    if (!anchor.isValid())
        return true;
    // Rows of one range have one parent, so they are of one kind.
    return model_.hasChildren(range.topLeft()) == model_.hasChildren(anchor);
}

void RowSelection::select(const QItemSelection& selection, SelectionFlags command)
{
    const bool adds = command.testFlag(Select) || command.testFlag(Toggle);
    const bool isMixed =
        !taking_ && adds && selection.size() > 1 &&
        std::any_of(selection.begin(), selection.end(), [&](const QItemSelectionRange& range) {
            return model_.hasChildren(range.topLeft()) !=
                   model_.hasChildren(selection.front().topLeft());
        });
    if (!isMixed) {
        QItemSelectionModel::select(selection, command);
        return;
    }
    QItemSelection kept;
    for (const QItemSelectionRange& range : selection)
        if (IsOfAnchorsKind(range))
            kept.append(range);
    QItemSelectionModel::select(kept, command);
}

} // namespace kivo::ui::qt
