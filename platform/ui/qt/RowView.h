#pragma once

#include "platform/ui/qt/MenuPlace.h"
#include "platform/ui/qt/RowModel.h"
#include "platform/ui/qt/RowSelection.h"
#include "shell/contracts/base/String.h"

#include <QElapsedTimer>
#include <QPersistentModelIndex>
#include <QPointer>
#include <QTreeView>

#include <functional>

namespace kivo::ui::qt {

class RowEditor;

// Rows on the screen. It reports the user's input to the plain list and paints what the rows say.
// Thread: user interface.
class RowView final : public QTreeView, public IMenuPlace {
    Q_OBJECT

public:
    // `tree` is the list itself if it is a tree, else null.
    RowView(CSkinList& list, CSkinTree* tree, QWidget* parent);

    void Detach();
    [[nodiscard]] CSkinList* GetList() const { return list_; }
    [[nodiscard]] RowModel& GetModel() { return *model_; }
    [[nodiscard]] RowSelection& GetSelection() { return *selection_; }
    void ApplyRules(); // Of selection, row heights, drag and drop.
    void ApplySkin();

    // Between the two what the view reports is an echo and goes nowhere. They nest.
    void BeginEcho() { ++echo_; }
    void EndEcho() { --echo_; }
    [[nodiscard]] bool IsEcho() const { return echo_ > 0; }

    // Keeps the rows that the user sees where they are through the changes until the next layout.
    void KeepTop();

    bool OpenEditor(const QModelIndex& index, const String& cellId);
    void CloseEditor(bool commit); // Nothing if none is open.
    void NoteCommit() { committed_ = true; }
    [[nodiscard]] const String& GetEditedCell() const { return editedCell_; }

    // The row's whole width in the viewport.
    [[nodiscard]] QRect GetRowRect(const QModelIndex& index) const;
    [[nodiscard]] QPoint GetMenuPlace() const override;

    [[nodiscard]] QSize sizeHint() const override; // One row.
    void doItemsLayout() override;
    void reset() override;
    void keyboardSearch(const QString& search) override;

protected:
    void drawRow(QPainter* painter,
                 const QStyleOptionViewItem& option,
                 const QModelIndex& index) const override;
    void
    drawBranches(QPainter* painter, const QRect& rect, const QModelIndex& index) const override;
    void paintEvent(QPaintEvent* event) override;
    bool viewportEvent(QEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void closeEditor(QWidget* editor, QAbstractItemDelegate::EndEditHint hint) override;
    void selectionChanged(const QItemSelection& selected,
                          const QItemSelection& deselected) override;
    void rowsAboutToBeRemoved(const QModelIndex& parent, int start, int end) override;
    void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;

    // In RowDrag.cpp.
    void startDrag(Qt::DropActions actions) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragMoveEvent(QDragMoveEvent* event) override;
    void dragLeaveEvent(QDragLeaveEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    [[nodiscard]] QModelIndex RowAt(const QPoint& point) const; // Over the whole width.
    [[nodiscard]] bool IsOnFold(const QModelIndex& index, const QPoint& point) const;
    [[nodiscard]] bool IsOnButton(const QModelIndex& index, const QPoint& point) const;
    void PressButton(const QModelIndex& index);
    void ReportFold(const QModelIndex& index, bool expanded);
    void ReportSelection(const QItemSelection& selection, bool selected);
    void SetHovered(const QModelIndex& index, bool isOnButton);
    void ShowRowTooltip(const QPoint& point, const QPoint& screenPoint);
    bool TakesKey(QKeyEvent& event);
    void ShowDropAt(const QModelIndex& index, bool show, bool own);
    void EndDrop();
    void RefuseDrag(bool refused);
    void DrawDropMark(QPainter& painter) const;

    CSkinList* list_;
    CSkinTree* tree_;
    RowModel* model_;
    RowSelection* selection_;
    QPersistentModelIndex hovered_;
    QPersistentModelIndex pressedButton_; // Whose button the left mouse button holds down.
    QPersistentModelIndex top_; // The row at the top before the changes, and where it stood.
    QPersistentModelIndex dropRow_;
    QPointer<RowEditor> editor_;
    QPersistentModelIndex edited_;
    QElapsedTimer sinceSearch_;
    String editedCell_;
    int topOffset_ = 0;
    int echo_ = 0;
    bool buttonHovered_ = false; // In the row under the pointer.
    bool topKept_ = false;
    bool committed_ = false;
    bool dropShown_ = false;
    bool dropOwn_ = false;
    bool dragRefused_ = false; // The mouse has moved from a row that can't be dragged.
};

} // namespace kivo::ui::qt
