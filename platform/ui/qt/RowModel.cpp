#include "platform/ui/qt/RowModel.h"

#include "platform/ui/qt/QtText.h"
#include "shell/contracts/ui/SkinTree.h"

#include <algorithm>
#include <iterator>
#include <unordered_set>
#include <utility>

namespace kivo::ui::qt {

namespace {

constexpr std::size_t kMostRuns = 64; // More separate changes: the window is replaced as a whole.

CSkinTreeItem* GroupOf(CSkinListItem* row, const CSkinTree* tree)
{
    if (tree == nullptr || row == nullptr)
        return nullptr;
    auto* item = static_cast<CSkinTreeItem*>(row); // All rows of a tree are.
    return item->IsGroup() ? item : nullptr;
}

} // namespace

// The rows of one parent as Qt knows them.
struct RowModel::Node {
    CSkinTreeItem* item = nullptr; // Whose rows; null: the root's, or it is gone.
    Node* parent = nullptr;
    int position = 0; // Among the parent's rows.
    Rows rows;        // A null row is gone, and Qt doesn't know yet.
    // Beside `rows` once there is a group among them; empty slots for tracks.
    std::vector<std::unique_ptr<Node>> below;
    std::size_t goneHint = 0; // Where the last row went that went.

    void Renumber()
    {
        for (std::size_t index = 0; index < below.size(); ++index)
            if (below[index])
                below[index]->position = static_cast<int>(index);
    }
};

// The runs of rows that separate a snapshot from the live rows, between their common head and tail.
struct RowModel::Plan {
    struct Run {
        std::size_t first = 0;
        std::size_t count = 0;
    };
    std::size_t head = 0;
    Rows live;                 // Of the window.
    std::vector<Run> removals; // In the snapshot's window, ascending.
    std::vector<Run> inserts;  // In `live`, ascending.
    Rows survivors;            // As they are to stand.
    bool isReordered = false;
    std::size_t oldCount = 0;
};

namespace {

template <class Runs>
void AddToRuns(Runs& runs, std::size_t index)
{
    if (!runs.empty() && runs.back().first + runs.back().count == index)
        ++runs.back().count;
    else
        runs.push_back({index, 1});
}

} // namespace

RowModel::RowModel(CSkinList& list, CSkinTree* tree)
    : list_(&list)
    , tree_(tree)
    , root_(std::make_unique<Node>())
{
}

RowModel::~RowModel() = default;

void RowModel::Detach()
{
    RootGone();
    list_ = nullptr;
    tree_ = nullptr;
}

RowModel::Node* RowModel::NodeOf(const CSkinTreeItem* parent) const
{
    if (parent == nullptr)
        return tree_ == nullptr ? root_.get() : nullptr;
    if (tree_ != nullptr && parent == tree_->GetRoot())
        return root_.get();
    const auto found = nodes_.find(parent);
    return found == nodes_.end() ? nullptr : found->second;
}

RowModel::Node* RowModel::NodeAt(const QModelIndex& index) const
{
    if (!index.isValid())
        return root_.get();
    const auto* holder = static_cast<const Node*>(index.internalPointer());
    const auto place = static_cast<std::size_t>(index.row());
    return place < holder->below.size() ? holder->below[place].get() : nullptr;
}

QModelIndex RowModel::IndexOfNode(const Node& node) const
{
    return node.parent == nullptr ? QModelIndex() : createIndex(node.position, 0, node.parent);
}

RowModel::Rows RowModel::GetLiveRows(const CSkinTreeItem* parent) const
{
    Rows rows;
    if (parent == nullptr) {
        const int count = list_->GetRowCount();
        rows.reserve(static_cast<std::size_t>(count));
        for (int place = 0; place < count; ++place)
            rows.push_back(list_->GetRowAt(place));
        return rows;
    }
    rows.reserve(parent->GetChildren().size());
    for (void* child : parent->GetChildren())
        rows.push_back(static_cast<CSkinTreeItem*>(child));
    return rows;
}

CSkinListItem* RowModel::RowOf(const QModelIndex& index) const
{
    if (!index.isValid() || list_ == nullptr)
        return nullptr;
    const auto* holder = static_cast<const Node*>(index.internalPointer());
    const auto place = static_cast<std::size_t>(index.row());
    return place < holder->rows.size() ? holder->rows[place] : nullptr;
}

QModelIndex RowModel::IndexOf(const CSkinListItem* row) const
{
    if (row == nullptr || list_ == nullptr)
        return {};
    const CSkinTreeItem* parent = nullptr;
    int hint = -1;
    if (tree_ != nullptr) {
        const auto* item = static_cast<const CSkinTreeItem*>(row);
        parent = item->GetParentItem();
        if (parent == nullptr)
            return {};
        hint = parent->IndexOf(item);
    } else {
        hint = list_->LocateRow(row);
    }
    Node* node = NodeOf(parent);
    if (node == nullptr)
        return {};
    const auto place = static_cast<std::size_t>(hint);
    if (hint >= 0 && place < node->rows.size() && node->rows[place] == row)
        return createIndex(hint, 0, node);
    const auto found = std::find(node->rows.begin(), node->rows.end(), row);
    if (found == node->rows.end())
        return {};
    return createIndex(static_cast<int>(found - node->rows.begin()), 0, node);
}

bool RowModel::Sync(const CSkinTreeItem* parent)
{
    Node* node = list_ == nullptr ? nullptr : NodeOf(parent);
    if (node == nullptr)
        return false;
    Rows live = GetLiveRows(parent);
    const Rows& old = node->rows;
    Plan plan;
    const std::size_t shorter = std::min(old.size(), live.size());
    while (plan.head < shorter && old[plan.head] == live[plan.head])
        ++plan.head;
    std::size_t tail = 0;
    while (tail < shorter - plan.head && old[old.size() - 1 - tail] == live[live.size() - 1 - tail])
        ++tail;
    plan.oldCount = old.size() - plan.head - tail;
    plan.live.assign(live.begin() + static_cast<std::ptrdiff_t>(plan.head),
                     live.end() - static_cast<std::ptrdiff_t>(tail));
    if (plan.oldCount == 0 && plan.live.empty())
        return false;
    if (plan.oldCount == 0) {
        Insert(*node, plan.head, plan.live);
        return false;
    }
    if (plan.live.empty()) {
        Remove(*node, plan.head, plan.oldCount);
        return false;
    }
    const auto oldFirst = old.begin() + static_cast<std::ptrdiff_t>(plan.head);
    const auto oldLast = oldFirst + static_cast<std::ptrdiff_t>(plan.oldCount);
    const std::unordered_set<const CSkinListItem*> wanted(plan.live.begin(), plan.live.end());
    const std::unordered_set<const CSkinListItem*> known(oldFirst, oldLast);
    Rows kept;
    for (std::size_t index = 0; index < plan.oldCount; ++index) {
        CSkinListItem* row = old[plan.head + index];
        if (row != nullptr && wanted.contains(row))
            kept.push_back(row);
        else
            AddToRuns(plan.removals, index);
    }
    for (std::size_t index = 0; index < plan.live.size(); ++index) {
        if (known.contains(plan.live[index]))
            plan.survivors.push_back(plan.live[index]);
        else
            AddToRuns(plan.inserts, index);
    }
    plan.isReordered = kept != plan.survivors;
    if (plan.removals.size() + plan.inserts.size() > kMostRuns) {
        Remove(*node, plan.head, plan.oldCount);
        Insert(*node, plan.head, plan.live);
        return true;
    }
    Carry(*node, plan);
    return false;
}

void RowModel::Carry(Node& node, const Plan& plan)
{
    for (auto run = plan.removals.rbegin(); run != plan.removals.rend(); ++run)
        Remove(node, plan.head + run->first, run->count);
    if (plan.isReordered)
        Reorder(node, plan.head, plan.survivors);
    for (const Plan::Run& run : plan.inserts) {
        const auto first = plan.live.begin() + static_cast<std::ptrdiff_t>(run.first);
        Insert(node,
               plan.head + run.first,
               Rows(first, first + static_cast<std::ptrdiff_t>(run.count)));
    }
}

void RowModel::Insert(Node& node, std::size_t at, const Rows& rows)
{
    beginInsertRows(
        IndexOfNode(node), static_cast<int>(at), static_cast<int>(at + rows.size() - 1));
    const auto place = static_cast<std::ptrdiff_t>(at);
    node.rows.insert(node.rows.begin() + place, rows.begin(), rows.end());
    const bool hasGroups = std::any_of(rows.begin(), rows.end(), [this](CSkinListItem* row) {
        return GroupOf(row, tree_) != nullptr;
    });
    if (hasGroups || !node.below.empty()) {
        node.below.resize(node.rows.size() - rows.size());
        std::vector<std::unique_ptr<Node>> fresh(rows.size());
        node.below.insert(node.below.begin() + place,
                          std::make_move_iterator(fresh.begin()),
                          std::make_move_iterator(fresh.end()));
        for (std::size_t index = at; index < at + rows.size(); ++index)
            AddNode(node, index);
        node.Renumber();
    }
    endInsertRows();
}

// The snapshot of a group that has just come, with all below it.
void RowModel::AddNode(Node& parent, std::size_t place)
{
    CSkinTreeItem* group = GroupOf(parent.rows[place], tree_);
    if (group == nullptr)
        return;
    auto node = std::make_unique<Node>();
    node->item = group;
    node->parent = &parent;
    node->position = static_cast<int>(place);
    node->rows = GetLiveRows(group);
    nodes_[group] = node.get();
    newGroups_.push_back(group);
    Node& added = *node;
    parent.below[place] = std::move(node);
    const bool hasGroups =
        std::any_of(added.rows.begin(), added.rows.end(), [this](CSkinListItem* row) {
            return GroupOf(row, tree_) != nullptr;
        });
    if (!hasGroups)
        return;
    added.below.resize(added.rows.size());
    for (std::size_t index = 0; index < added.rows.size(); ++index)
        AddNode(added, index);
}

void RowModel::DropNode(const Node& node)
{
    for (const auto& below : node.below)
        if (below)
            DropNode(*below);
    if (node.item == nullptr)
        return;
    nodes_.erase(node.item);
    std::erase(newGroups_, node.item);
}

void RowModel::Remove(Node& node, std::size_t first, std::size_t count)
{
    beginRemoveRows(
        IndexOfNode(node), static_cast<int>(first), static_cast<int>(first + count - 1));
    const auto from = static_cast<std::ptrdiff_t>(first);
    const auto to = static_cast<std::ptrdiff_t>(first + count);
    node.rows.erase(node.rows.begin() + from, node.rows.begin() + to);
    // Qt may ask for what is going until the end of the removal.
    std::vector<std::unique_ptr<Node>> going;
    if (!node.below.empty()) {
        going.assign(std::make_move_iterator(node.below.begin() + from),
                     std::make_move_iterator(node.below.begin() + to));
        node.below.erase(node.below.begin() + from, node.below.begin() + to);
        node.Renumber();
    }
    for (const auto& below : going)
        if (below)
            DropNode(*below);
    node.goneHint = std::min(node.goneHint, first);
    endRemoveRows();
}

void RowModel::Reorder(Node& node, std::size_t first, const Rows& order)
{
    const QList<QPersistentModelIndex> parents = {IndexOfNode(node)};
    emit layoutAboutToBeChanged(parents, VerticalSortHint);
    std::unordered_map<const CSkinListItem*, std::size_t> places;
    for (std::size_t index = 0; index < order.size(); ++index)
        places[order[index]] = first + index;
    QModelIndexList from;
    QModelIndexList to;
    for (const QModelIndex& index : persistentIndexList()) {
        if (index.internalPointer() != &node)
            continue;
        const auto found = places.find(RowOf(index));
        if (found == places.end())
            continue;
        from.append(index);
        to.append(createIndex(static_cast<int>(found->second), index.column(), &node));
    }
    if (!node.below.empty()) {
        std::vector<std::unique_ptr<Node>> below(order.size());
        for (std::size_t index = 0; index < order.size(); ++index)
            below[places[node.rows[first + index]] - first] = std::move(node.below[first + index]);
        std::move(
            below.begin(), below.end(), node.below.begin() + static_cast<std::ptrdiff_t>(first));
    }
    std::copy(order.begin(), order.end(), node.rows.begin() + static_cast<std::ptrdiff_t>(first));
    node.Renumber();
    changePersistentIndexList(from, to);
    emit layoutChanged(parents, VerticalSortHint);
}

std::vector<CSkinTreeItem*> RowModel::TakeNewGroups()
{
    return std::exchange(newGroups_, {});
}

void RowModel::RowGone(const CSkinListItem* row, const CSkinTreeItem* parent)
{
    Node* node = NodeOf(parent);
    if (node == nullptr || node->rows.empty())
        return;
    // Rows mostly go in order: from where the last one went, in both directions.
    const std::size_t count = node->rows.size();
    const std::size_t start = std::min(node->goneHint, count - 1);
    std::size_t found = count;
    for (std::size_t away = 0; away < count && found == count; ++away) {
        if (start + away < count && node->rows[start + away] == row)
            found = start + away;
        else if (away <= start && node->rows[start - away] == row)
            found = start - away;
    }
    if (found == count)
        return;
    node->rows[found] = nullptr;
    node->goneHint = found;
    if (found < node->below.size() && node->below[found]) {
        DropNode(*node->below[found]);
        node->below[found]->item = nullptr;
    }
}

void RowModel::RootGone()
{
    beginResetModel();
    root_ = std::make_unique<Node>();
    nodes_.clear();
    newGroups_.clear();
    endResetModel();
}

void RowModel::RowChanged(const CSkinListItem* row)
{
    const QModelIndex index = IndexOf(row);
    if (index.isValid())
        emit dataChanged(index, index);
}

QModelIndex RowModel::index(int row, int column, const QModelIndex& parent) const
{
    Node* node = NodeAt(parent);
    const bool exists = node != nullptr && row >= 0 && column == 0 &&
                        static_cast<std::size_t>(row) < node->rows.size();
    return exists ? createIndex(row, column, node) : QModelIndex();
}

QModelIndex RowModel::parent(const QModelIndex& child) const
{
    if (!child.isValid())
        return {};
    return IndexOfNode(*static_cast<const Node*>(child.internalPointer()));
}

int RowModel::rowCount(const QModelIndex& parent) const
{
    const Node* node = NodeAt(parent);
    return node == nullptr ? 0 : static_cast<int>(node->rows.size());
}

int RowModel::columnCount(const QModelIndex& /*parent*/) const
{
    return 1;
}

// A group folds even when it is empty, so that it keeps its state.
bool RowModel::hasChildren(const QModelIndex& parent) const
{
    return parent.isValid() ? NodeAt(parent) != nullptr : !root_->rows.empty();
}

QVariant RowModel::data(const QModelIndex& index, int role) const
{
    if (role != Qt::DisplayRole && role != Qt::AccessibleTextRole)
        return {};
    CSkinListItem* row = RowOf(index);
    if (row == nullptr)
        return {};
    return ToScreen(role == Qt::DisplayRole ? row->GetViewText(u"text") : row->GetSpokenText());
}

QVariant RowModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    const bool named = section == 0 && orientation == Qt::Horizontal && list_ != nullptr &&
                       (role == Qt::DisplayRole || role == Qt::AccessibleTextRole);
    return named ? QVariant(ToScreen(list_->GetAccessibleName())) : QVariant();
}

Qt::ItemFlags RowModel::flags(const QModelIndex& index) const
{
    CSkinListItem* row = RowOf(index);
    if (row == nullptr)
        return Qt::NoItemFlags;
    Qt::ItemFlags flags = Qt::ItemIsDragEnabled | Qt::ItemIsDropEnabled;
    const bool isSelectable = row->CanBeSelected() != 0;
    flags.setFlag(Qt::ItemIsEnabled, tree_ != nullptr || isSelectable);
    flags.setFlag(Qt::ItemIsSelectable, isSelectable);
    flags.setFlag(Qt::ItemIsEditable, row->CanBeEdited() != 0);
    flags.setFlag(Qt::ItemNeverHasChildren, NodeAt(index) == nullptr);
    return flags;
}

Qt::DropActions RowModel::supportedDropActions() const
{
    return Qt::CopyAction | Qt::MoveAction;
}

QStringList RowModel::mimeTypes() const
{
    return {QStringLiteral("text/uri-list"), QStringLiteral("text/plain")};
}

} // namespace kivo::ui::qt
