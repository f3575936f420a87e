#pragma once

#include <QAbstractItemModel>

#include <memory>
#include <unordered_map>
#include <vector>

namespace kivo::ui {
class CSkinList;
class CSkinListItem;
class CSkinTree;
class CSkinTreeItem;
} // namespace kivo::ui

namespace kivo::ui::qt {

// The rows of a list or tree for Qt's views. It keeps, for each parent, a snapshot of the rows that
// Qt has been told of; the plain arrays change freely and are compared with it at Sync. An index
// points to the snapshot of its parent, never to a row: a row may be freed while Qt still holds its
// index, and then only leaves an empty slot. Thread: user interface.
class RowModel final : public QAbstractItemModel {
    Q_OBJECT

public:
    // `tree` is the list itself if it is a tree, else null. Both are borrowed.
    RowModel(CSkinList& list, CSkinTree* tree);
    ~RowModel() override;

    void Detach(); // The list is going: from here on there are no rows.

    [[nodiscard]] CSkinListItem* RowOf(const QModelIndex& index) const; // Null: gone or none.
    [[nodiscard]] QModelIndex IndexOf(const CSkinListItem* row) const;  // Invalid: not known here.

    // Brings the snapshot of one parent in step; null: the rows of a plain list. True: the changes
    // were so many that a window of rows was replaced, so that selection, current row and folds
    // inside it have to be set again.
    bool Sync(const CSkinTreeItem* parent);

    // Groups that have come since the last call; their folds aren't set yet.
    [[nodiscard]] std::vector<CSkinTreeItem*> TakeNewGroups();

    void RowGone(const CSkinListItem* row, const CSkinTreeItem* parent);
    void RootGone(); // All rows go.
    void RowChanged(const CSkinListItem* row);

    [[nodiscard]] QModelIndex index(int row, int column, const QModelIndex& parent) const override;
    [[nodiscard]] QModelIndex parent(const QModelIndex& child) const override;
    [[nodiscard]] int rowCount(const QModelIndex& parent) const override;
    [[nodiscard]] int columnCount(const QModelIndex& parent) const override;
    [[nodiscard]] bool hasChildren(const QModelIndex& parent) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QVariant
    headerData(int section, Qt::Orientation orientation, int role) const override;
    [[nodiscard]] Qt::ItemFlags flags(const QModelIndex& index) const override;
    [[nodiscard]] Qt::DropActions supportedDropActions() const override;
    [[nodiscard]] QStringList mimeTypes() const override;

private:
    struct Node;
    struct Plan;
    using Rows = std::vector<CSkinListItem*>;

    [[nodiscard]] Node* NodeAt(const QModelIndex& index) const; // Of a group's own rows.
    [[nodiscard]] Node* NodeOf(const CSkinTreeItem* parent) const;
    [[nodiscard]] QModelIndex IndexOfNode(const Node& node) const;
    [[nodiscard]] Rows GetLiveRows(const CSkinTreeItem* parent) const;
    void Insert(Node& node, std::size_t at, const Rows& rows);
    void Remove(Node& node, std::size_t first, std::size_t count);
    void Reorder(Node& node, std::size_t first, const Rows& order);
    void Carry(Node& node, const Plan& plan);
    void AddNode(Node& parent, std::size_t place);
    void DropNode(const Node& node);

    CSkinList* list_;
    CSkinTree* tree_;
    std::unique_ptr<Node> root_;
    std::unordered_map<const CSkinTreeItem*, Node*> nodes_;
    std::vector<CSkinTreeItem*> newGroups_;
};

} // namespace kivo::ui::qt
