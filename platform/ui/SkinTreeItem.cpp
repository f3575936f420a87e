#include "shell/contracts/ui/SkinTreeItem.h"

#include "shell/contracts/ui/SkinTree.h"

#include <algorithm>
#include <cstdlib>

namespace kivo::ui {

struct CSkinTreeItem::Children {
    CPtrArray rows;
    int groups = 0;           // How many of them may have rows of their own that show.
    std::ptrdiff_t drift = 0; // By how much the hints were off at the last look.
};

namespace {

constexpr std::ptrdiff_t kSearchAround = 64;
constexpr int kIndentOfLevel = 18;

CSkinTreeItem* RowOf(void* pointer)
{
    return static_cast<CSkinTreeItem*>(pointer);
}

// The row's place within a few steps of a guess; -1: not there. Compares pointers only.
std::ptrdiff_t FindAround(const CPtrArray& rows, const void* row, std::ptrdiff_t guess)
{
    const auto size = static_cast<std::ptrdiff_t>(rows.size());
    if (guess >= 0 && guess < size && rows[static_cast<std::size_t>(guess)] == row)
        return guess;
    const std::ptrdiff_t first = std::clamp<std::ptrdiff_t>(guess - kSearchAround, 0, size);
    const std::ptrdiff_t last = std::clamp<std::ptrdiff_t>(guess + kSearchAround + 1, 0, size);
    const auto found = std::find(rows.begin() + first, rows.begin() + last, row);
    return found != rows.begin() + last ? found - rows.begin() : -1;
}

} // namespace

CSkinTreeItem::CSkinTreeItem(CSkinTree* tree, const String& id)
    : CSkinListItem(tree, id)
{
}

CSkinTreeItem::~CSkinTreeItem()
{
    if (children_)
        for (void* child : children_->rows)
            RowOf(child)->Release();
    SayGone();
}

CSkinTree* CSkinTreeItem::GetTree() const
{
    return static_cast<CSkinTree*>(GetList());
}

CSkinTreeItem::Children& CSkinTreeItem::MakeChildren()
{
    if (!children_)
        children_ = std::make_unique<Children>();
    return *children_;
}

CPtrArray& CSkinTreeItem::GetChildren()
{
    return MakeChildren().rows;
}

const CPtrArray& CSkinTreeItem::GetChildren() const
{
    static const CPtrArray none;
    return children_ ? children_->rows : none;
}

int CSkinTreeItem::GetChildCount() const
{
    return children_ ? static_cast<int>(children_->rows.size()) : 0;
}

bool CSkinTreeItem::HasChildGroups() const
{
    return children_ && children_->groups > 0;
}

CSkinTreeItem* CSkinTreeItem::GetChild(int index) const
{
    return index >= 0 && index < GetChildCount()
               ? RowOf(children_->rows[static_cast<std::size_t>(index)])
               : nullptr;
}

int CSkinTreeItem::IndexOf(const CSkinTreeItem* child) const
{
    if (child == nullptr || child->parentItem_ != this || !children_)
        return -1;
    const CPtrArray& rows = children_->rows;
    const std::ptrdiff_t hint = child->hint_;
    for (const std::ptrdiff_t guess : {hint + children_->drift, hint}) {
        const std::ptrdiff_t index = FindAround(rows, child, guess);
        if (index < 0)
            continue;
        children_->drift = index - hint;
        return static_cast<int>(index);
    }
    const auto found = std::find(rows.begin(), rows.end(), child);
    if (found == rows.end())
        return -1;
    children_->drift = found - rows.begin() - hint;
    // Inside a bracket a neighbour may be freed already, so its hint can't be written.
    if (!GetTree()->IsUpdating())
        Renumber();
    return static_cast<int>(found - rows.begin());
}

void CSkinTreeItem::Renumber() const
{
    std::int32_t index = 0;
    for (void* child : children_->rows)
        RowOf(child)->hint_ = index++;
    children_->drift = 0;
}

void CSkinTreeItem::AddTreeNode(CSkinTreeItem* child)
{
    if (child == nullptr || child == this || child->parentItem_ == this)
        return;
    if (child->parentItem_ != nullptr)
        child->parentItem_->TakeOut(child);
    Children& children = MakeChildren();
    children.rows.push_back(child);
    children.groups += child->isGroup_ ? 1 : 0;
    child->parentItem_ = this;
    child->hint_ = static_cast<std::int32_t>(static_cast<std::ptrdiff_t>(children.rows.size()) - 1 -
                                             children.drift);
    GetTree()->OnChildrenTouched(this);
}

void CSkinTreeItem::TakeOut(CSkinTreeItem* child)
{
    const int index = IndexOf(child);
    if (index < 0)
        return;
    children_->rows.erase(children_->rows.begin() + index);
    children_->groups -= child->isGroup_ ? 1 : 0;
    GetTree()->OnChildrenTouched(this);
}

// No neighbour outside the marked ones is touched, but each child is looked at for its mark.
void CSkinTreeItem::TakeOutMarked()
{
    if (!children_)
        return;
    std::erase_if(children_->rows, [this](void* pointer) {
        const CSkinTreeItem* child = RowOf(pointer);
        children_->groups -= child->marked_ && child->isGroup_ ? 1 : 0;
        return child->marked_;
    });
    GetTree()->OnChildrenTouched(this);
}

void CSkinTreeItem::ChildrenChanged()
{
    GetTree()->OnChildrenTouched(this);
}

void CSkinTreeItem::SetGroup(bool isGroup)
{
    if (isGroup_ == isGroup)
        return;
    isGroup_ = isGroup;
    if (parentItem_ != nullptr)
        parentItem_->MakeChildren().groups += isGroup ? 1 : -1;
}

void CSkinTreeItem::Expand(CSkinTree* tree, int row, bool expanded)
{
    if (expanded_ == expanded)
        return;
    expanded_ = expanded;
    GetTree()->BeginUpdate();
    if (!expanded)
        GetTree()->OnFolding(this);
    OnExpandChanged(tree, row, expanded);
    GetTree()->OnExpanded(this);
    GetTree()->EndUpdate(1);
}

void CSkinTreeItem::Sort(CSkinTree* tree, bool recursive)
{
    Sort2(tree);
    if (recursive)
        SortChildren();
}

void CSkinTreeItem::Sort2(CSkinTree* /*tree*/)
{
    if (parentItem_ == nullptr)
        return;
    CPtrArray& rows = parentItem_->GetChildren();
    const int index = parentItem_->IndexOf(this);
    if (index < 0)
        return;
    rows.erase(rows.begin() + index);
    const auto place = std::find_if(rows.begin(), rows.end(), [this](void* other) {
        return CompareFunc(this, RowOf(other)) < 0;
    });
    rows.insert(place, this);
    GetTree()->OnChildrenTouched(parentItem_);
}

void CSkinTreeItem::SortChildren()
{
    if (!children_)
        return;
    CPtrArray& rows = children_->rows;
    std::stable_sort(rows.begin(), rows.end(), [this](void* a, void* b) {
        return CompareFunc(RowOf(a), RowOf(b)) < 0;
    });
    for (void* child : rows)
        RowOf(child)->SortChildren();
    GetTree()->OnChildrenTouched(this);
}

int CSkinTreeItem::GetIndent() const
{
    int level = -1; // The root's.
    for (const CSkinTreeItem* above = parentItem_; above != nullptr; above = above->parentItem_)
        ++level;
    return std::max(0, level) * kIndentOfLevel;
}

int CSkinTreeItem::OnListEvent(CSkinList* list, int context, int event, const String& text)
{
    if (event != static_cast<int>(RowEvent::DoubleClick))
        return CSkinListItem::OnListEvent(list, context, event, text);
    if (isGroup_)
        Expand(GetTree(), GetTree()->LocateRow(this), !expanded_);
    return 0;
}

int CSkinTreeItem::CompareFunc(CSkinTreeItem* /*a*/, CSkinTreeItem* /*b*/)
{
    return 0;
}

} // namespace kivo::ui
