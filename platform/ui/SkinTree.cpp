#include "shell/contracts/ui/SkinTree.h"

#include "platform/ui/Peers.h"

#include <algorithm>
#include <utility>

namespace kivo::ui {

namespace {

CSkinTreeItem* RowOf(void* pointer)
{
    return static_cast<CSkinTreeItem*>(pointer);
}

void Forget(std::vector<CSkinTreeItem*>& rows, const CSkinTreeItem* row)
{
    std::erase(rows, row);
}

} // namespace

CSkinTree::CSkinTree() = default;

CSkinTree::~CSkinTree()
{
    if (IListPeer* peer = GetListPeer())
        peer->OnRootGone();
    SetDying();
    if (root_ != nullptr)
        std::exchange(root_, nullptr)->Release();
}

std::unique_ptr<IPeer> CSkinTree::MakePeer()
{
    return GetPeerFactory().MakeTree(*this);
}

void CSkinTree::AppendTree(CSkinTreeItem* root, bool /*show*/)
{
    if (root == root_)
        return;
    if (root_ != nullptr) {
        if (IListPeer* peer = GetListPeer())
            peer->OnRootGone();
        std::exchange(root_, nullptr)->Release();
    }
    root_ = root;
    if (root != nullptr)
        OnChildrenTouched(root);
}

void CSkinTree::RemoveTreeItem(CSkinTreeItem* row)
{
    RemoveTreeItems({row});
}

void CSkinTree::RemoveTreeItems(const std::vector<CSkinTreeItem*>& rows)
{
    BeginUpdate();
    std::vector<CSkinTreeItem*> going;
    for (CSkinTreeItem* row : rows)
        if (row != nullptr && row->parentItem_ != nullptr && !std::exchange(row->marked_, true))
            going.push_back(row);
    // A row below another that goes is freed with that one.
    const auto below = std::stable_partition(
        going.begin(), going.end(), [](CSkinTreeItem* row) { return !IsBelowMarked(row); });
    std::for_each(below, going.end(), [](CSkinTreeItem* row) { row->marked_ = false; });
    going.erase(below, going.end());

    if (going.size() == 1) {
        going.front()->parentItem_->TakeOut(going.front());
    } else {
        std::vector<CSkinTreeItem*> parents;
        for (const CSkinTreeItem* row : going)
            if (parents.empty() || parents.back() != row->parentItem_)
                parents.push_back(row->parentItem_);
        std::sort(parents.begin(), parents.end());
        parents.erase(std::unique(parents.begin(), parents.end()), parents.end());
        for (CSkinTreeItem* parent : parents)
            parent->TakeOutMarked();
    }
    for (CSkinTreeItem* row : going)
        row->Release();
    EndUpdate(1);
}

bool CSkinTree::IsBelowMarked(const CSkinTreeItem* row)
{
    for (const CSkinTreeItem* above = row->parentItem_; above != nullptr;
         above = above->parentItem_)
        if (above->marked_)
            return true;
    return false;
}

void CSkinTree::InsertListItem(CSkinListItem* row, int /*position*/)
{
    auto* item = static_cast<CSkinTreeItem*>(row);
    if (item != nullptr && item->parentItem_ != nullptr)
        OnChildrenTouched(item->parentItem_);
}

void CSkinTree::RemoveItem(int position)
{
    if (auto* row = static_cast<CSkinTreeItem*>(GetRowAt(position)))
        OnChildrenTouched(row->parentItem_);
}

int CSkinTree::CountShown(const CSkinTreeItem* row) const
{
    if (row == nullptr || (row != root_ && !row->expanded_))
        return 0;
    int count = row->GetChildCount();
    if (row->HasChildGroups())
        for (void* child : row->GetChildren())
            count += CountShown(RowOf(child));
    return count;
}

int CSkinTree::GetRowCount() const
{
    return CountShown(root_);
}

CSkinListItem* CSkinTree::GetRowAt(int position) const
{
    if (position < 0 || root_ == nullptr)
        return nullptr;
    const CSkinTreeItem* parent = root_;
    int rest = position;
    while (parent != nullptr) {
        if (!parent->HasChildGroups())
            return parent == root_ || parent->expanded_ ? parent->GetChild(rest) : nullptr;
        const CSkinTreeItem* inside = nullptr;
        for (void* pointer : parent->GetChildren()) {
            CSkinTreeItem* child = RowOf(pointer);
            if (rest == 0)
                return child;
            --rest;
            const int below = CountShown(child);
            if (rest < below) {
                inside = child;
                break;
            }
            rest -= below;
        }
        parent = inside;
    }
    return nullptr;
}

int CSkinTree::FirstPlaceBelow(const CSkinTreeItem* row) const
{
    if (row == root_)
        return 0;
    if (row == nullptr || !row->expanded_ || row->parentItem_ == nullptr)
        return -1;
    if (row == lastParent_)
        return lastFirst_;
    const CSkinTreeItem* parent = row->parentItem_;
    const int first = FirstPlaceBelow(parent);
    if (first < 0)
        return -1;
    int place = first;
    for (void* sibling : parent->GetChildren()) {
        if (sibling == row) {
            lastParent_ = row;
            lastFirst_ = place + 1;
            return lastFirst_;
        }
        place += 1 + CountShown(RowOf(sibling));
    }
    return -1;
}

int CSkinTree::LocateRow(const CSkinListItem* row) const
{
    const auto* item = static_cast<const CSkinTreeItem*>(row);
    if (item == nullptr || item == root_ || item->parentItem_ == nullptr)
        return -1;
    const CSkinTreeItem* parent = item->parentItem_;
    const int first = FirstPlaceBelow(parent);
    if (first < 0)
        return -1;
    if (!parent->HasChildGroups()) {
        const int index = parent->IndexOf(item);
        return index < 0 ? -1 : first + index;
    }
    int place = first;
    for (void* sibling : parent->GetChildren()) {
        if (sibling == item)
            return place;
        place += 1 + CountShown(RowOf(sibling));
    }
    return -1;
}

void CSkinTree::GetAllSubControls(CPtrArray& rows) const
{
    rows.clear();
    if (root_ == nullptr)
        return;
    rows.reserve(static_cast<std::size_t>(GetRowCount()) + 1);
    rows.push_back(root_);
    AppendShown(root_, rows);
}

void CSkinTree::AppendShown(const CSkinTreeItem* row, CPtrArray& rows) const
{
    if (!row->HasChildGroups()) {
        rows.insert(rows.end(), row->GetChildren().begin(), row->GetChildren().end());
        return;
    }
    for (void* child : row->GetChildren()) {
        rows.push_back(child);
        if (RowOf(child)->expanded_)
            AppendShown(RowOf(child), rows);
    }
}

void CSkinTree::Envisible(CSkinListItem* row)
{
    auto* item = static_cast<CSkinTreeItem*>(row);
    if (item == nullptr || item == root_)
        return;
    BeginUpdate();
    for (CSkinTreeItem* above = item->parentItem_; above != nullptr && above != root_;
         above = above->parentItem_)
        above->Expand(this, LocateRow(above), /*expanded=*/true);
    EndUpdate(1);
    CSkinList::Envisible(row);
}

bool CSkinTree::VisitBelow(const CSkinTreeItem* row, const RowVisitor& visit) const
{
    for (void* pointer : row->GetChildren()) {
        CSkinTreeItem* child = RowOf(pointer);
        if (!visit(child) || !VisitBelow(child, visit))
            return false;
    }
    return true;
}

bool CSkinTree::VisitRows(const RowVisitor& visit) const
{
    return root_ == nullptr || VisitBelow(root_, visit);
}

bool CSkinTree::IsSelectedWithAll(const CSkinListItem* row) const
{
    const auto* item = static_cast<const CSkinTreeItem*>(row);
    const auto* current = static_cast<const CSkinTreeItem*>(GetCurrentRow());
    return FirstPlaceBelow(item->parentItem_) >= 0 &&
           (current == nullptr || current->IsGroup() == item->IsGroup());
}

CSkinTreeItem* CSkinTree::GetParentOf(const CSkinListItem* row) const
{
    return static_cast<const CSkinTreeItem*>(row)->parentItem_;
}

void CSkinTree::OnRowGone(CSkinListItem* row)
{
    if (IsDying())
        return;
    const auto* item = static_cast<const CSkinTreeItem*>(row);
    // The view has to hear of a parent whose child array is emptied later; not yet, since the array
    // may hold freed rows until then.
    if (CSkinTreeItem* parent = item->parentItem_; parent != nullptr && !parent->touched_) {
        parent->touched_ = true;
        changes_.touchedParents.push_back(parent);
    }
    if (item->children_ || item->touched_ || item->folding_) {
        Forget(changes_.touchedParents, item);
        Forget(changes_.folded, item);
        lastParent_ = nullptr;
    }
    CSkinList::OnRowGone(row);
}

void CSkinTree::OnSync()
{
    for (CSkinTreeItem* parent : changes_.touchedParents)
        parent->touched_ = false;
    for (CSkinTreeItem* row : changes_.folded)
        row->folding_ = false;
}

void CSkinTree::OnChildrenTouched(CSkinTreeItem* parent)
{
    lastParent_ = nullptr;
    if (!parent->touched_) {
        parent->touched_ = true;
        changes_.touchedParents.push_back(parent);
    }
    Sync();
}

void CSkinTree::OnFolding(CSkinTreeItem* row)
{
    if (GetSelectedCount() > 0)
        static_cast<void>(VisitBelow(row, [](CSkinListItem* below) {
            below->SetSelected(0);
            return true;
        }));
    const auto* current = static_cast<const CSkinTreeItem*>(GetCurrentRow());
    for (; current != nullptr; current = current->parentItem_)
        if (current->parentItem_ == row)
            SetCurrentRow(row);
}

void CSkinTree::OnExpanded(CSkinTreeItem* row)
{
    lastParent_ = nullptr;
    if (!std::exchange(row->folding_, true))
        changes_.folded.push_back(row);
    Sync();
}

void CSkinTree::OnFoldReported(CSkinTreeItem* row, bool expanded)
{
    row->Expand(this, LocateRow(row), expanded);
}

} // namespace kivo::ui
