#include "platform/ui/qt/RowEditor.h"

#include "platform/ui/qt/QtText.h"
#include "platform/ui/qt/RowPainter.h"
#include "platform/ui/qt/RowView.h"
#include "platform/ui/qt/Shapes.h"
#include "platform/ui/qt/SkinLook.h"
#include "shell/contracts/ui/SkinList.h"

#include <QPainter>

#include <algorithm>

namespace kivo::ui::qt {

namespace {

constexpr int kEditorHeight = 24;
constexpr int kInnerMargin = 2; // What Qt's field leaves beside its text on its own account.
constexpr int kNoLimit = 32767;

} // namespace

RowEditor::RowEditor(QWidget* parent)
    : QLineEdit(parent)
{
    setFrame(false);
    setTextMargins(kTextStart - kInnerMargin, 0, kTextStart - kInnerMargin, 0);
}

void RowEditor::paintEvent(QPaintEvent* event)
{
    QLineEdit::paintEvent(event);
    QPainter painter(this);
    DrawFrame(painter, rect(), radius::kField, GetToken(u"mark"), 2.0);
}

RowDelegate::RowDelegate(RowView& view)
    : QStyledItemDelegate(&view)
    , view_(view)
{
}

QSize RowDelegate::sizeHint(const QStyleOptionViewItem& /*option*/, const QModelIndex& index) const
{
    const CSkinListItem* row = view_.uniformRowHeights() ? nullptr : view_.GetModel().RowOf(index);
    const int wanted = row == nullptr ? 0 : row->GetWantedHeight(GetLineHeight());
    return {1, wanted > 0 ? wanted : GetRowHeight()};
}

QWidget* RowDelegate::createEditor(QWidget* parent,
                                   const QStyleOptionViewItem& /*option*/,
                                   const QModelIndex& index) const
{
    CSkinList* list = view_.GetList();
    CSkinListItem* row = view_.GetModel().RowOf(index);
    if (list == nullptr || row == nullptr)
        return nullptr;
    auto* editor = new RowEditor(parent);
    const int limit = list->GetEditLimitText();
    editor->setMaxLength(limit > 0 ? limit : kNoLimit);
    editor->setText(ToQt(list->GetEditedText()));
    editor->setAccessibleName(ToScreen(list->GetEditedText()));
    editor->selectAll();
    return editor;
}

// The text is set once, at the start: a change of the row under way leaves what the user typed.
void RowDelegate::setEditorData(QWidget* /*editor*/, const QModelIndex& /*index*/) const {}

void RowDelegate::setModelData(QWidget* /*editor*/,
                               QAbstractItemModel* /*model*/,
                               const QModelIndex& /*index*/) const
{
    view_.NoteCommit();
}

void RowDelegate::updateEditorGeometry(QWidget* editor,
                                       const QStyleOptionViewItem& /*option*/,
                                       const QModelIndex& index) const
{
    CSkinList* list = view_.GetList();
    CSkinListItem* row = view_.GetModel().RowOf(index);
    if (list == nullptr || row == nullptr)
        return;
    const QRect place = view_.GetRowRect(index);
    QRect cell;
    QFont font;
    if (!FindTextCell(place, *list, *row, view_.GetEditedCell().c_str(), cell, font))
        cell = place;
    editor->setFont(font);
    const int height = std::max(kEditorHeight, QFontMetrics(font).height() + 6);
    editor->setGeometry(cell.x() - RowEditor::kTextStart,
                        cell.y() + (cell.height() - height) / 2,
                        cell.width() + 2 * RowEditor::kTextStart,
                        height);
}

} // namespace kivo::ui::qt
