#include "platform/ui/qt/RowView.h"

#include "platform/ui/qt/InputWatch.h"
#include "platform/ui/qt/KivoStyle.h"
#include "platform/ui/qt/QtText.h"
#include "platform/ui/qt/RowEditor.h"
#include "platform/ui/qt/RowPainter.h"
#include "platform/ui/qt/SkinLook.h"
#include "platform/ui/qt/Tooltip.h"
#include "shell/contracts/ui/SkinTree.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QHeaderView>
#include <QHelpEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>
#include <QSignalBlocker>

#include <utility>

namespace kivo::ui::qt {

namespace {

constexpr int kFoldWidth = 32; // The leading part of a group that folds it: up to its text.

} // namespace

RowView::RowView(CSkinList& list, CSkinTree* tree, QWidget* parent)
    : QTreeView(parent)
    , list_(&list)
    , tree_(tree)
    , model_(new RowModel(list, tree))
    , selection_(new RowSelection(*model_, list))
{
    model_->setParent(this);
    selection_->setParent(this);
    setModel(model_);
    QItemSelectionModel* unused = selectionModel();
    setSelectionModel(selection_);
    delete unused;
    setItemDelegate(new RowDelegate(*this));

    setHeaderHidden(true);
    header()->setSectionResizeMode(QHeaderView::Fixed);
    header()->setStretchLastSection(true);
    header()->setMinimumSectionSize(1);
    setIndentation(0);
    setRootIsDecorated(false);
    setAnimated(false);
    setExpandsOnDoubleClick(false);
    setFrameShape(QFrame::NoFrame);
    setSelectionBehavior(SelectRows);
    setVerticalScrollMode(ScrollPerPixel);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setEditTriggers(NoEditTriggers);
    setMouseTracking(true);
    setDropIndicatorShown(false);
    setProperty(kRowsProperty, true);
    connect(this, &QTreeView::expanded, this, [this](const QModelIndex& index) {
        ReportFold(index, /*expanded=*/true);
    });
    connect(this, &QTreeView::collapsed, this, [this](const QModelIndex& index) {
        ReportFold(index, /*expanded=*/false);
    });
    ApplyRules();
    ApplySkin();
}

void RowView::Detach()
{
    BeginEcho();
    list_ = nullptr;
    if (QWidget* editor = std::exchange(editor_, nullptr))
        QTreeView::closeEditor(editor, QAbstractItemDelegate::RevertModelCache);
    tree_ = nullptr;
    selection_->Detach();
    model_->Detach();
    EndEcho();
}

void RowView::ApplyRules()
{
    if (list_ != nullptr) {
        setSelectionMode(list_->IsSingleSelection() ? SingleSelection : ExtendedSelection);
        setUniformRowHeights(list_->HasUniformRows());
    }
    const bool drag = list_ != nullptr && list_->CanDrag();
    const bool drop = list_ != nullptr && list_->CanDrop();
    setDragEnabled(drag);
    setAcceptDrops(drop);
    setDragDropMode(drag && drop ? DragDrop : (drop ? DropOnly : (drag ? DragOnly : NoDragDrop)));
}

void RowView::ApplySkin()
{
    if (list_ == nullptr)
        return;
    QPalette colours = QApplication::palette();
    const QColor ground = GetGround(list_->GetSkinName());
    if (ground.isValid())
        colours.setColor(QPalette::Base, ground);
    setPalette(colours);
    verticalScrollBar()->setSingleStep(GetRowHeight());
    scheduleDelayedItemsLayout();
    viewport()->update();
}

void RowView::ReportFold(const QModelIndex& index, bool expanded)
{
    auto* row = static_cast<CSkinTreeItem*>(model_->RowOf(index));
    if (!IsEcho() && tree_ != nullptr && row != nullptr)
        tree_->OnFoldReported(row, expanded);
}

void RowView::ReportSelection(const QItemSelection& selection, bool selected)
{
    for (const QItemSelectionRange& range : selection) {
        for (int place = range.top(); place <= range.bottom(); ++place) {
            CSkinListItem* row = model_->RowOf(model_->index(place, 0, range.parent()));
            if (row != nullptr)
                list_->OnSelectionReported(row, selected);
        }
    }
}

void RowView::selectionChanged(const QItemSelection& selected, const QItemSelection& deselected)
{
    QTreeView::selectionChanged(selected, deselected);
    if (IsEcho() || list_ == nullptr)
        return;
    ReportSelection(deselected, /*selected=*/false);
    ReportSelection(selected, /*selected=*/true);
}

void RowView::currentChanged(const QModelIndex& current, const QModelIndex& previous)
{
    QTreeView::currentChanged(current, previous);
    if (!IsEcho() && list_ != nullptr)
        list_->OnCurrentReported(model_->RowOf(current));
}

QSize RowView::sizeHint() const
{
    return {100, GetRowHeight()};
}

// Scroll positions.

void RowView::KeepTop()
{
    if (topKept_)
        return;
    top_ = verticalScrollBar()->value() > 0 ? indexAt(QPoint(0, 0)) : QModelIndex();
    topOffset_ = top_.isValid() ? visualRect(top_).top() : 0;
    topKept_ = true;
}

void RowView::doItemsLayout()
{
    QTreeView::doItemsLayout();
    if (!topKept_)
        return;
    topKept_ = false;
    if (top_.isValid())
        verticalScrollBar()->setValue(verticalScrollBar()->value() + visualRect(top_).top() -
                                      topOffset_);
    top_ = QModelIndex();
}

// All rows have gone; Qt takes an editor along.
void RowView::reset()
{
    editor_ = nullptr;
    QTreeView::reset();
}

// Editing.

bool RowView::OpenEditor(const QModelIndex& index, const String& cellId)
{
    if (!index.isValid())
        return false;
    editedCell_ = cellId;
    committed_ = false;
    scrollTo(index);
    if (!edit(index, AllEditTriggers, nullptr))
        return false;
    editor_ = qobject_cast<RowEditor*>(indexWidget(index));
    if (editor_ == nullptr)
        editor_ = viewport()->findChild<RowEditor*>();
    edited_ = index;
    return editor_ != nullptr;
}

// The row under the editor goes: Qt takes the editor along, and nothing is reported.
void RowView::rowsAboutToBeRemoved(const QModelIndex& parent, int start, int end)
{
    for (QModelIndex index = edited_; editor_ != nullptr && index.isValid(); index = index.parent())
        if (index.parent() == parent && index.row() >= start && index.row() <= end)
            editor_ = nullptr;
    QTreeView::rowsAboutToBeRemoved(parent, start, end);
}

void RowView::CloseEditor(bool commit)
{
    if (editor_ == nullptr)
        return;
    if (commit)
        NoteCommit();
    closeEditor(editor_,
                commit ? QAbstractItemDelegate::NoHint : QAbstractItemDelegate::RevertModelCache);
}

void RowView::closeEditor(QWidget* editor, QAbstractItemDelegate::EndEditHint hint)
{
    if (editor_ == nullptr || editor != editor_)
        return; // Its end has been reported.
    const String text = FromQt(editor_->text());
    const bool committed = committed_ && hint != QAbstractItemDelegate::RevertModelCache;
    editor_ = nullptr;
    committed_ = false;
    QTreeView::closeEditor(editor, QAbstractItemDelegate::NoHint);
    if (list_ != nullptr)
        list_->OnEditFinished(text, committed);
}

// Painting.

QRect RowView::GetRowRect(const QModelIndex& index) const
{
    QRect place = visualRect(index);
    place.setLeft(0);
    place.setWidth(viewport()->width());
    return place;
}

void RowView::drawRow(QPainter* painter,
                      const QStyleOptionViewItem& option,
                      const QModelIndex& index) const
{
    CSkinListItem* row = model_->RowOf(index);
    if (row == nullptr || list_ == nullptr)
        return;
    RowState state;
    state.isHovered = hovered_.isValid() && hovered_ == index;
    state.isFocused = hasFocus() && InputWatch::IsAtKeys() && currentIndex() == index;
    state.isGroup = model_->hasChildren(index);
    state.isButtonHovered = state.isHovered && buttonHovered_;
    state.isButtonDown = state.isButtonHovered && pressedButton_ == index;
    const QRect place(0, option.rect.y(), viewport()->width(), option.rect.height());
    PaintRow(*painter, place, *list_, *row, state);
}

void RowView::drawBranches(QPainter* /*painter*/,
                           const QRect& /*rect*/,
                           const QModelIndex& /*index*/) const
{
}

void RowView::paintEvent(QPaintEvent* event)
{
    QTreeView::paintEvent(event);
    if (!dropShown_)
        return;
    QPainter painter(viewport());
    DrawDropMark(painter);
}

// Mouse.

QModelIndex RowView::RowAt(const QPoint& point) const
{
    return indexAt(QPoint(1, point.y()));
}

bool RowView::IsOnFold(const QModelIndex& index, const QPoint& point) const
{
    if (!index.isValid() || tree_ == nullptr || !model_->hasChildren(index))
        return false;
    const int x = isRightToLeft() ? viewport()->width() - point.x() : point.x();
    return x < kFoldWidth;
}

bool RowView::IsOnButton(const QModelIndex& index, const QPoint& point) const
{
    CSkinListItem* row = model_->RowOf(index);
    return row != nullptr && FindButton(GetRowRect(index), *list_, *row).contains(point);
}

void RowView::PressButton(const QModelIndex& index)
{
    pressedButton_ = index;
    buttonHovered_ = true;
    viewport()->update(GetRowRect(index));
}

void RowView::SetHovered(const QModelIndex& index, bool isOnButton)
{
    if (hovered_ == index && buttonHovered_ == isOnButton)
        return;
    const QModelIndex before = hovered_;
    hovered_ = index;
    buttonHovered_ = isOnButton;
    for (const QModelIndex& each : {before, index})
        if (each.isValid())
            viewport()->update(GetRowRect(each));
}

bool RowView::viewportEvent(QEvent* event)
{
    switch (event->type()) {
    case QEvent::ToolTip: {
        const auto* help = static_cast<QHelpEvent*>(event);
        ShowRowTooltip(help->pos(), help->globalPos());
        return true;
    }
    case QEvent::Leave: SetHovered(QModelIndex(), /*isOnButton=*/false); break;
    default: break;
    }
    return QTreeView::viewportEvent(event);
}

void RowView::ShowRowTooltip(const QPoint& point, const QPoint& screenPoint)
{
    const QModelIndex index = RowAt(point);
    CSkinListItem* row = model_->RowOf(index);
    if (row == nullptr || list_ == nullptr) {
        ShowTooltip(screenPoint, String(), 0, viewport());
        return;
    }
    const String cell = CellUnder(GetRowRect(index), *list_, *row, point);
    ShowTooltip(screenPoint, row->GetViewTooltip(cell), list_->GetTooltipMaxWidth(), viewport());
}

void RowView::mousePressEvent(QMouseEvent* event)
{
    if (list_ == nullptr)
        return;
    const QPoint point = event->position().toPoint();
    const QModelIndex index = RowAt(point);
    if (event->button() == Qt::LeftButton && IsOnButton(index, point)) {
        event->accept();
        PressButton(index);
        return;
    }
    if (event->button() == Qt::LeftButton) {
        const QPersistentModelIndex hit = index;
        const QPointer<RowView> alive = this;
        const bool shift = event->modifiers().testFlag(Qt::ShiftModifier);
        const bool taken = list_->OnPress(model_->RowOf(index), FromQt(point), shift);
        if (alive == nullptr || list_ == nullptr)
            return;
        event->accept();
        if (!taken)
            return;
        if (IsOnFold(hit, point)) {
            setExpanded(hit, !isExpanded(hit));
            return;
        }
    }
    QTreeView::mousePressEvent(event);
}

void RowView::mouseMoveEvent(QMouseEvent* event)
{
    const QPoint point = event->position().toPoint();
    const QModelIndex index = RowAt(point);
    SetHovered(index, IsOnButton(index, point));
    if (event->buttons() == Qt::NoButton)
        RefuseDrag(/*refused=*/false); // The release went elsewhere.
    if (!pressedButton_.isValid() && !dragRefused_)
        QTreeView::mouseMoveEvent(event);
}

void RowView::mouseReleaseEvent(QMouseEvent* event)
{
    RefuseDrag(/*refused=*/false);
    if (!pressedButton_.isValid() || event->button() != Qt::LeftButton) {
        QTreeView::mouseReleaseEvent(event);
        return;
    }
    event->accept();
    const QModelIndex pressed = std::exchange(pressedButton_, QPersistentModelIndex());
    viewport()->update(GetRowRect(pressed));
    if (list_ != nullptr && IsOnButton(pressed, event->position().toPoint()))
        list_->OnButtonCell(model_->RowOf(pressed));
}

// Qt's own would fold the row and select once more.
void RowView::mouseDoubleClickEvent(QMouseEvent* event)
{
    event->accept();
    if (list_ == nullptr || event->button() != Qt::LeftButton)
        return;
    const QPoint point = event->position().toPoint();
    const QModelIndex index = RowAt(point);
    if (IsOnFold(index, point)) {
        setExpanded(index, !isExpanded(index)); // Two quick presses fold and unfold.
        return;
    }
    if (IsOnButton(index, point)) {
        PressButton(index); // Two quick presses press it twice.
        return;
    }
    if (CSkinListItem* row = model_->RowOf(index))
        list_->OnDoubleClick(row);
}

void RowView::contextMenuEvent(QContextMenuEvent* event)
{
    event->accept();
    if (list_ == nullptr)
        return;
    if (event->reason() == QContextMenuEvent::Keyboard) {
        const QModelIndex current = currentIndex();
        if (current.isValid())
            scrollTo(current);
        list_->OnContextMenu(model_->RowOf(current), -1, -1);
        return;
    }
    const QModelIndex index = RowAt(viewport()->mapFromGlobal(event->globalPos()));
    list_->OnContextMenu(model_->RowOf(index), event->globalPos().x(), event->globalPos().y());
}

QPoint RowView::GetMenuPlace() const
{
    const QModelIndex current = currentIndex();
    const QRect place = current.isValid() ? GetRowRect(current) : QRect(0, 0, width(), 0);
    return viewport()->mapToGlobal(place.center());
}

// Keys.

bool RowView::TakesKey(QKeyEvent& event)
{
    const bool plain = (event.modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier;
    switch (event.key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (plain)
            list_->OnKey(ListKey::Activate);
        return plain;
    case Qt::Key_Delete:
        if (plain)
            list_->OnKey(ListKey::Delete);
        return plain;
    case Qt::Key_F2:
        if (plain)
            list_->OnKey(ListKey::Rename);
        return plain;
    case Qt::Key_A:
        if (event.modifiers() != Qt::ControlModifier)
            return false;
        list_->SelectAll();
        return true;
    default: return false;
    }
}

void RowView::keyPressEvent(QKeyEvent* event)
{
    if (list_ == nullptr || state() == EditingState) {
        QTreeView::keyPressEvent(event);
        return;
    }
    if (TakesKey(*event)) {
        event->accept();
        return;
    }
    // A blank belongs to a search under way; else it is the player's.
    const bool searching =
        sinceSearch_.isValid() && sinceSearch_.elapsed() < QApplication::keyboardInputInterval();
    if (event->key() == Qt::Key_Space && event->modifiers() == Qt::NoModifier && !searching) {
        event->ignore();
        return;
    }
    const QPointer<RowView> alive = this;
    const QModelIndex before = currentIndex();
    QTreeView::keyPressEvent(event);
    if (alive == nullptr || list_ == nullptr)
        return;
    if (currentIndex() != before && !event->modifiers().testFlag(Qt::ShiftModifier))
        list_->SetAnchorRow(model_->RowOf(currentIndex()));
}

void RowView::keyboardSearch(const QString& search)
{
    sinceSearch_.start();
    QTreeView::keyboardSearch(search);
}

void RowView::focusInEvent(QFocusEvent* event)
{
    QTreeView::focusInEvent(event);
    viewport()->update();
}

} // namespace kivo::ui::qt
