#include "shell/contracts/ui/SkinList.h"

#include "platform/ui/Peers.h"
#include "shell/contracts/ui/SkinTreeItem.h"

#include <algorithm>
#include <utility>

namespace kivo::ui {

namespace {

constexpr std::size_t kMaxNamedRows = 32;

bool IsHighSurrogate(char16_t unit)
{
    return unit >= 0xD800 && unit <= 0xDBFF;
}

} // namespace

CSkinList::CSkinList() = default;

CSkinList::~CSkinList()
{
    if (IListPeer* peer = GetListPeer())
        peer->OnRootGone();
    SetDying();
    DestroyPeer();
    for (CSkinListItem* row : std::exchange(items_, {}))
        row->Release();
}

int CSkinList::Create(CWnd* parent)
{
    return CSkinWnd::Create(wndstyle::kChild | wndstyle::kVisible | wndstyle::kTabStop,
                            u"List",
                            String(),
                            Rect{},
                            parent,
                            /*id=*/0);
}

std::unique_ptr<IPeer> CSkinList::MakePeer()
{
    return GetPeerFactory().MakeList(*this);
}

IListPeer* CSkinList::GetListPeer() const
{
    return static_cast<IListPeer*>(GetPeer());
}

// Brackets and changes.

void CSkinList::BeginUpdate()
{
    ++brackets_;
}

void CSkinList::EndUpdate(int /*refresh*/)
{
    if (brackets_ > 0 && --brackets_ == 0)
        Sync();
}

void CSkinList::Sync()
{
    if (brackets_ > 0 || dying_ || changes_.IsEmpty())
        return;
    OnSync();
    const RowChanges changes = std::exchange(changes_, {});
    if (IListPeer* peer = GetListPeer())
        peer->Sync(changes);
}

void CSkinList::OnSync() {}

void CSkinList::OnSelectedSome(bool /*some*/) {}

void CSkinList::ItemsChanged()
{
    changes_.items = true;
    Sync();
}

void CSkinList::OnRowChanged(CSkinListItem* row)
{
    std::vector<CSkinListItem*>& rows = changes_.rows;
    if (changes_.manyRows || (!rows.empty() && rows.back() == row))
        return;
    rows.push_back(row);
    if (rows.size() > kMaxNamedRows) {
        rows.clear();
        changes_.manyRows = true;
    }
    Sync();
}

void CSkinList::OnRowSelected(CSkinListItem* row)
{
    selectedCount_ += row->IsSelected() ? 1 : -1;
    if (selectedCount_ == (row->IsSelected() ? 1 : 0))
        OnSelectedSome(row->IsSelected());
    if (reporting_)
        return;
    changes_.selection = true;
    Sync();
}

void CSkinList::OnRowGone(CSkinListItem* row)
{
    if (dying_)
        return;
    if (row->IsSelected() && --selectedCount_ == 0)
        OnSelectedSome(/*some=*/false);
    for (CSkinListItem** held : {&anchorRow_, &currentRow_, &editedRow_, &pressedRow_, &menuRow_})
        if (*held == row)
            *held = nullptr;
    std::erase(changes_.rows, row);
    if (IListPeer* peer = GetListPeer())
        peer->OnRowGone(row, GetParentOf(row));
}

CSkinTreeItem* CSkinList::GetParentOf(const CSkinListItem* /*row*/) const
{
    return nullptr;
}

// Rows of a plain list.

void CSkinList::InsertListItem(CSkinListItem* row, int position)
{
    if (row == nullptr)
        return;
    const auto count = static_cast<int>(items_.size());
    const int place = position < 0 || position > count ? count : position;
    items_.insert(items_.begin() + place, row);
    ItemsChanged();
}

void CSkinList::RemoveItem(int position)
{
    if (position < 0 || position >= static_cast<int>(items_.size()))
        return;
    items_.erase(items_.begin() + position);
    ItemsChanged();
}

int CSkinList::GetRowCount() const
{
    return static_cast<int>(items_.size());
}

CSkinListItem* CSkinList::GetRowAt(int position) const
{
    return position >= 0 && position < static_cast<int>(items_.size())
               ? items_[static_cast<std::size_t>(position)]
               : nullptr;
}

int CSkinList::LocateRow(const CSkinListItem* row) const
{
    const auto found = std::find(items_.begin(), items_.end(), row);
    return found != items_.end() ? static_cast<int>(found - items_.begin()) : -1;
}

void CSkinList::GetAllSubControls(CPtrArray& rows) const
{
    rows.assign(items_.begin(), items_.end());
}

bool CSkinList::VisitRows(const RowVisitor& visit) const
{
    return std::all_of(items_.begin(), items_.end(), visit);
}

// Selection.

std::vector<CSkinListItem*> CSkinList::GetAllSelectedItem() const
{
    std::vector<CSkinListItem*> selected;
    const auto count = static_cast<std::size_t>(selectedCount_);
    if (count == 0)
        return selected;
    selected.reserve(count);
    VisitRows([&selected, count](CSkinListItem* row) {
        if (row->IsSelected())
            selected.push_back(row);
        return selected.size() < count;
    });
    return selected;
}

void CSkinList::SetSingleSelection(int on)
{
    singleSelection_ = on != 0;
    Tell(Change::Rows);
}

void CSkinList::ClearAllSelected()
{
    BeginUpdate();
    for (CSkinListItem* row : GetAllSelectedItem())
        row->SetSelected(0);
    EndUpdate(1);
}

void CSkinList::SelectAll()
{
    if (singleSelection_)
        return;
    BeginUpdate();
    VisitRows([this](CSkinListItem* row) {
        row->SetSelected(IsSelectedWithAll(row) ? 1 : 0);
        return true;
    });
    EndUpdate(1);
}

bool CSkinList::IsSelectedWithAll(const CSkinListItem* /*row*/) const
{
    return true;
}

bool CSkinList::IsSelectedCannotMultiSelItem() const
{
    bool found = false;
    if (selectedCount_ == 0)
        return found;
    VisitRows([&found](CSkinListItem* row) {
        found = row->IsSelected() && !row->IsMultiSelectable();
        return !found;
    });
    return found;
}

void CSkinList::SetCurrentRow(CSkinListItem* row)
{
    if (currentRow_ == row)
        return;
    currentRow_ = row;
    changes_.current = true;
    Sync();
}

void CSkinList::OnSelectionReported(CSkinListItem* row, bool selected)
{
    reporting_ = true;
    row->SetSelected(selected ? 1 : 0);
    reporting_ = false;
}

void CSkinList::OnCurrentReported(CSkinListItem* row)
{
    currentRow_ = row;
}

// Editing.

int CSkinList::Edit(int position, const String& cellId, int /*select*/)
{
    CSkinListItem* row = GetRowAt(position);
    IListPeer* peer = GetListPeer();
    if (row == nullptr || peer == nullptr || !row->HasViewCell(cellId))
        return 0;
    EndEdit();
    if (GetRowAt(position) != row)
        return 0; // The end of the other edit moved or removed it.
    editedRow_ = row;
    editedText_ = row->GetViewText(cellId);
    if (peer->OpenEditor(row, cellId))
        return 1;
    editedRow_ = nullptr;
    return 0;
}

void CSkinList::EndEdit()
{
    IListPeer* peer = GetListPeer();
    if (editedRow_ != nullptr && peer != nullptr)
        peer->CloseEditor(/*commit=*/true);
}

void CSkinList::OnEditFinished(const String& text, bool committed)
{
    CSkinListItem* row = std::exchange(editedRow_, nullptr);
    const String before = std::exchange(editedText_, String());
    String after = text;
    if (editLimit_ > 0 && after.size() > static_cast<std::size_t>(editLimit_))
        after.resize(static_cast<std::size_t>(editLimit_));
    if (!after.empty() && IsHighSurrogate(after.back()))
        after.pop_back();
    if (row != nullptr && committed && after != before)
        row->OnEditEnd(before, after);
}

void CSkinList::Envisible(CSkinListItem* row)
{
    IListPeer* peer = GetListPeer();
    if (row != nullptr && peer != nullptr)
        peer->ScrollTo(row);
}

void CSkinList::SetUniformRows(int on)
{
    uniformRows_ = on != 0;
    Tell(Change::Rows);
}

void CSkinList::SetTooltipMaxWidth(int width)
{
    tooltipMaxWidth_ = width;
    Tell(Change::Rows);
}

} // namespace kivo::ui
