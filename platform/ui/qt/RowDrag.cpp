#include "platform/ui/qt/QtText.h"
#include "platform/ui/qt/RowView.h"
#include "platform/ui/qt/Shapes.h"
#include "platform/ui/qt/SkinLook.h"
#include "platform/ui/qt/UriList.h"
#include "shell/contracts/ui/SkinTree.h"

#include <QDrag>
#include <QDragEnterEvent>
#include <QMimeData>
#include <QPainter>

#include <string_view>
#include <utility>

// Drag and drop of rows and files.
namespace kivo::ui::qt {

namespace {

constexpr qsizetype kLongestText = 4 * 1024 * 1024; // Units of a drag text that we read.
constexpr int kMarkWidth = 2;
constexpr int kDotRadius = 3;
constexpr int kTextStart = 32; // Where all texts of the rows stand.

const QString kUriList = QStringLiteral("text/uri-list");

bool IsWelcome(const QMimeData& data)
{
    return data.hasFormat(kUriList) || data.hasText();
}

// What the hand carries: how many rows.
QPixmap MakeDragPicture(int count, qreal ratio)
{
    const QString text = QString::number(count);
    const QFont font = GetScaledFont(1.0, 600);
    const QFontMetrics metrics(font);
    const QSize size(metrics.horizontalAdvance(text) + 20, metrics.height() + 8);
    QPixmap picture(size * ratio);
    picture.setDevicePixelRatio(ratio);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    FillRounded(painter, QRectF(QPointF(), size), radius::kButton, GetToken(u"honey"));
    painter.setFont(font);
    painter.setPen(GetToken(u"onhoney"));
    painter.drawText(QRect(QPoint(), size), Qt::AlignCenter, text);
    return picture;
}

} // namespace

void RowView::startDrag(Qt::DropActions /*actions*/)
{
    String text;
    if (list_ == nullptr)
        return;
    if (list_->OnDragStart(text) == 0) {
        RefuseDrag(/*refused=*/true);
        return;
    }
    auto* carried = new QMimeData;
    carried->setText(ToQt(text));
    auto* drag = new QDrag(this);
    drag->setMimeData(carried);
    drag->setPixmap(MakeDragPicture(list_->GetSelectedCount(), devicePixelRatioF()));
    const QPointer<RowView> alive = this;
    drag->exec(Qt::CopyAction | Qt::MoveAction, Qt::MoveAction);
    if (alive == nullptr)
        return;
    EndDrop();
    if (list_ != nullptr)
        list_->OnDragEnd();
}

// Until the button is let go the selection stays as it is: Qt would sweep it along with the mouse.
void RowView::RefuseDrag(bool refused)
{
    if (std::exchange(dragRefused_, refused) == refused)
        return;
    if (refused)
        viewport()->setCursor(Qt::ForbiddenCursor);
    else
        viewport()->unsetCursor();
}

void RowView::dragEnterEvent(QDragEnterEvent* event)
{
    if (list_ != nullptr && IsWelcome(*event->mimeData()))
        event->acceptProposedAction();
    else
        event->ignore();
    setState(DraggingState);
}

void RowView::dragMoveEvent(QDragMoveEvent* event)
{
    QTreeView::dragMoveEvent(event); // Scrolls at the edges.
    event->ignore();
    if (list_ == nullptr || !IsWelcome(*event->mimeData()))
        return;
    const QPersistentModelIndex index = RowAt(event->position().toPoint());
    const QPointer<RowView> alive = this;
    const bool welcome = list_->OnDragOver(model_->RowOf(index));
    if (alive == nullptr || list_ == nullptr)
        return;
    ShowDropAt(index, welcome, event->source() == this);
    if (!welcome)
        return;
    event->setDropAction(event->source() == this ? Qt::MoveAction : Qt::CopyAction);
    event->accept();
}

void RowView::dragLeaveEvent(QDragLeaveEvent* event)
{
    QTreeView::dragLeaveEvent(event);
    EndDrop();
    if (list_ != nullptr)
        list_->OnDragLeave();
}

void RowView::dropEvent(QDropEvent* event)
{
    EndDrop();
    if (list_ == nullptr || !IsWelcome(*event->mimeData())) {
        event->ignore();
        return;
    }
    CSkinListItem* row = model_->RowOf(RowAt(event->position().toPoint()));
    const QMimeData& dropped = *event->mimeData();
    event->setDropAction(event->source() == this ? Qt::MoveAction : Qt::CopyAction);
    event->accept();
    // The last call of each road: what the drop does may end the list.
    if (dropped.hasFormat(kUriList)) {
        const QByteArray bytes = dropped.data(kUriList);
        const std::string_view raw(bytes.constData(), static_cast<std::size_t>(bytes.size()));
        list_->OnFilesDropped(row, ReadUriList(raw));
        return;
    }
    list_->OnTextDropped(row, FromQt(dropped.text().left(kLongestText)));
}

void RowView::ShowDropAt(const QModelIndex& index, bool show, bool own)
{
    if (dropShown_ == show && dropRow_ == index && dropOwn_ == own)
        return;
    dropShown_ = show;
    dropRow_ = index;
    dropOwn_ = own;
    viewport()->update();
}

void RowView::EndDrop()
{
    stopAutoScroll();
    setState(NoState);
    ShowDropAt(QModelIndex(), /*show=*/false, /*own=*/false);
}

// Own rows: a line with a dot above the row that they go before. Files: the group that they enter,
// or the whole free area.
void RowView::DrawDropMark(QPainter& painter) const
{
    const QColor mark = GetToken(u"mark");
    if (!dropRow_.isValid()) {
        DrawFrame(painter, viewport()->rect(), 0.0, mark, kMarkWidth);
        return;
    }
    if (!dropOwn_) {
        const QModelIndex group = model_->hasChildren(dropRow_) || tree_ == nullptr
                                      ? QModelIndex(dropRow_)
                                      : dropRow_.parent();
        QRect place = GetRowRect(group);
        if (!viewport()->rect().intersects(place))
            place = GetRowRect(dropRow_);
        DrawFrame(painter, place, 0.0, mark, kMarkWidth);
        return;
    }
    const QRect place = GetRowRect(dropRow_);
    const int y = std::max(place.top(), 1);
    const bool mirrored = isRightToLeft();
    const int start = mirrored ? viewport()->width() - kTextStart : kTextStart;
    const int end = mirrored ? 12 : viewport()->width() - 12;
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(mark, kMarkWidth, Qt::SolidLine, Qt::RoundCap));
    painter.drawLine(QPointF(start, y), QPointF(end, y));
    painter.setPen(Qt::NoPen);
    painter.setBrush(mark);
    painter.drawEllipse(QPointF(start, y), kDotRadius, kDotRadius);
}

} // namespace kivo::ui::qt
