#pragma once

#include <QItemSelectionModel>

namespace kivo::ui {
class CSkinList;
}

namespace kivo::ui::qt {

class RowModel;

// The view's selection of rows. A range that the user draws never mixes groups and tracks: of a
// mixed one the kind of the anchor row stays. Thread: user interface.
class RowSelection final : public QItemSelectionModel {
    Q_OBJECT

public:
    RowSelection(RowModel& model, CSkinList& list);

    void Detach() { list_ = nullptr; }
    // Makes the view's selection that of the rows. Reports nothing by itself: see the peer's guard.
    void TakeFromRows();

    using QItemSelectionModel::select;
    void select(const QItemSelection& selection, SelectionFlags command) override;

private:
    void Collect(const QModelIndex& parent, QItemSelection& selection) const;
    [[nodiscard]] bool IsOfAnchorsKind(const QItemSelectionRange& range) const;

    RowModel& model_;
    CSkinList* list_;
    bool taking_ = false;
};

} // namespace kivo::ui::qt
