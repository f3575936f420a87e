#pragma once

#include <QLineEdit>
#include <QStyledItemDelegate>

namespace kivo::ui::qt {

class RowView;

// The field in the place of a row's text, which doesn't move by a pixel. Thread: user interface.
class RowEditor final : public QLineEdit {
    Q_OBJECT

public:
    static constexpr int kTextStart = 8; // From the field's edge.

    explicit RowEditor(QWidget* parent);

protected:
    void paintEvent(QPaintEvent* event) override;
};

// Gives Qt's view the height of rows and their editor; rows are painted by the view.
class RowDelegate final : public QStyledItemDelegate {
    Q_OBJECT

public:
    explicit RowDelegate(RowView& view);

    [[nodiscard]] QSize sizeHint(const QStyleOptionViewItem& option,
                                 const QModelIndex& index) const override;
    QWidget* createEditor(QWidget* parent,
                          const QStyleOptionViewItem& option,
                          const QModelIndex& index) const override;
    void setEditorData(QWidget* editor, const QModelIndex& index) const override;
    void setModelData(QWidget* editor,
                      QAbstractItemModel* model,
                      const QModelIndex& index) const override;
    void updateEditorGeometry(QWidget* editor,
                              const QStyleOptionViewItem& option,
                              const QModelIndex& index) const override;

private:
    RowView& view_;
};

} // namespace kivo::ui::qt
