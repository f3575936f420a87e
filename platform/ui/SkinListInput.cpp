// What a user does with a list: mouse, keys, menus, drag and drop.

#include "platform/ui/Peers.h"
#include "shell/contracts/ui/SkinList.h"

namespace kivo::ui {

namespace {

constexpr int kShiftHeld = 2;

} // namespace

CSkinListItem* CSkinList::HitTest(Point point) const
{
    if (pressing_)
        return pressedRow_;
    const IListPeer* peer = GetListPeer();
    return peer != nullptr ? peer->HitTest(point) : nullptr;
}

void CSkinList::OnLButtonDown(unsigned /*flags*/, Point /*point*/)
{
    pressTaken_ = true;
}

bool CSkinList::OnPress(CSkinListItem* hit, Point point, bool shift)
{
    const LifeWatch life = Watch();
    keyState_ = shift ? kShiftHeld : 0;
    pressedRow_ = hit;
    pressing_ = true;
    pressTaken_ = false;
    OnLButtonDown(/*flags=*/0, point);
    if (!life.IsAlive())
        return false;
    pressing_ = false;
    if (pressTaken_ && !shift)
        anchorRow_ = pressedRow_;
    pressedRow_ = nullptr;
    return pressTaken_;
}

void CSkinList::SendRowEvent(CSkinListItem* row, RowEvent event, const String& text)
{
    if (row != nullptr)
        row->OnListEvent(this, /*context=*/0, static_cast<int>(event), text);
}

void CSkinList::OnDoubleClick(CSkinListItem* row)
{
    SendRowEvent(row, RowEvent::DoubleClick, String());
}

void CSkinList::OnButtonCell(CSkinListItem* row)
{
    if (row != nullptr)
        row->OnButtonCell();
}

void CSkinList::OnKey(ListKey key)
{
    if (currentRow_ == nullptr)
        return;
    switch (key) {
    case ListKey::Activate: SendRowEvent(currentRow_, RowEvent::Activate, String()); break;
    case ListKey::Delete: SendRowEvent(currentRow_, RowEvent::Delete, String()); break;
    case ListKey::Rename: currentRow_->OnRenameKey(); break;
    }
}

// Menus.

IMenu* CSkinList::GetPopupMenu(CSkinListItem* row)
{
    if (row == nullptr)
        return GetBlankAreaMenu();
    if (selectedCount_ > 1)
        return GetMultiSelectMenu();
    return row->GetRowMenu(GetMenuDelegate());
}

IMenu* CSkinList::GetMultiSelectMenu()
{
    return nullptr;
}

IMenu* CSkinList::GetBlankAreaMenu()
{
    return nullptr;
}

MenuDelegate CSkinList::GetMenuDelegate()
{
    return {this, &CSkinList::RunMenuCommand};
}

void CSkinList::RunMenuCommand(IMenu* entry)
{
    DoMenuCommand(entry);
}

void CSkinList::DoMenuCommand(IMenu* entry)
{
    CSkinListItem* row = menuRow_;
    if (selectedCount_ > 0)
        row = GetAllSelectedItem().front();
    if (row != nullptr && entry != nullptr)
        row->OnRowCommand(entry);
}

void CSkinList::OnContextMenu(CSkinListItem* row, int x, int y)
{
    const LifeWatch life = Watch();
    menuRow_ = row;
    IMenu::PopupMenu(GetOwnerForm(), GetPopupMenu(row), x, y, /*reserved=*/0, String());
    if (life.IsAlive())
        menuRow_ = nullptr;
}

// Drag and drop.

void CSkinList::SetCanDrag(int on)
{
    canDrag_ = on != 0;
    Tell(Change::Rows);
}

void CSkinList::SetCanDrop(int on)
{
    canDrop_ = on != 0;
    Tell(Change::Rows);
}

int CSkinList::GetDragText(String& /*text*/)
{
    return 0;
}

int CSkinList::OnBlankDragOver()
{
    return 0;
}

void CSkinList::OnBlankDrop(const String& /*text*/) {}

void CSkinList::OnDragFinished() {}

int CSkinList::OnDragStart(String& text)
{
    return canDrag_ ? GetDragText(text) : 0;
}

bool CSkinList::OnDragOver(CSkinListItem* row)
{
    if (!canDrop_)
        return false;
    dragInProgress_ = true;
    if (row == nullptr)
        return OnBlankDragOver() != 0;
    const LifeWatch rowLife = row->Watch();
    row->SetAcceptsDrop(0);
    SendRowEvent(row, RowEvent::DragOver, String());
    return rowLife.IsAlive() && row->GetAcceptsDrop() != 0;
}

void CSkinList::OnDragLeave()
{
    dragInProgress_ = false;
}

void CSkinList::OnFilesDropped(CSkinListItem* row, const CStringArray& paths)
{
    droppedFiles_ = paths;
    Drop(row, RowEvent::FilesDropped, String());
}

void CSkinList::OnTextDropped(CSkinListItem* row, const String& text)
{
    Drop(row, RowEvent::DataDropped, text);
}

void CSkinList::Drop(CSkinListItem* row, RowEvent event, const String& text)
{
    const LifeWatch life = Watch();
    dragInProgress_ = true;
    if (row != nullptr)
        SendRowEvent(row, event, text);
    else
        OnBlankDrop(text);
    if (!life.IsAlive())
        return;
    dragInProgress_ = false;
    droppedFiles_.clear();
}

void CSkinList::OnDragEnd()
{
    dragInProgress_ = false;
    OnDragFinished();
}

} // namespace kivo::ui
