// What the user sees of a CMediaTreeCategory, and what the row does when it is acted on.

#include "mediares/GroupIds.h"
#include "mediares/IMediaResGroup.h"
#include "mediares/IMediaResManager.h"
#include "shell/contracts/common/AppPath.h"
#include "shell/contracts/framework/Paths.h"
#include "shell/contracts/ui/SkinManager.h"
#include "tree/MediaTree.h"
#include "tree/MediaTreeCategory.h"
#include "tree/TreeMenus.h"

namespace kivo::tunehive {

namespace {

constexpr ui::COLORREF kNameColour = 0x573F34; // A key of the skin, 0x00BBGGRR.

} // namespace

void CMediaTreeCategory::GetPicture(bool expanded, String& path, ui::PictureRect& source) const
{
    source = ui::PictureRect();
    if (GetID() == kPlayingGroup) {
        const StringView file = expanded ? u"listening_unfold.png" : u"listening_fold.png";
        path = ComposePath(u"%splugin\\tunehive\\skin\\%s", {common::GetAppPath(), file});
        return;
    }
    path = ui::CSkinManager::GetInstance()->TranslatePath(u"public\\group_fold.png", 0);
    source = expanded ? ui::PictureRect{16, 0, 16, 16} : ui::PictureRect{0, 0, 16, 16};
}

void CMediaTreeCategory::BuildRow()
{
    Clear();
    String path;
    ui::PictureRect source;
    GetPicture(/*expanded=*/false, path, source);
    AddPhoto(0, u"icon", u"Icon", path, String(), source, 0);
    IMediaResGroup* group = GetGroup();
    const String name = group != nullptr ? group->GetName() : String();
    AddLabel(1, u"text", u"Text", name, name, ui::GetDefaultLOGFONT(), kNameColour, kNameColour, 0);
}

void CMediaTreeCategory::OnExpandChanged(ui::CSkinTree* /*tree*/, int /*row*/, bool expanded)
{
    String path;
    ui::PictureRect source;
    GetPicture(expanded, path, source);
    ModifyPhoto(u"icon", u"Icon", path, String(), source);
}

int CMediaTreeCategory::CompareFunc(ui::CSkinTreeItem* a, ui::CSkinTreeItem* b)
{
    IMediaResManager* manager = FindMediaResManager();
    return manager != nullptr ? manager->CompareGroups(a->GetID(), b->GetID()) : 0;
}

bool CMediaTreeCategory::OnEditEnd(const String& /*oldText*/, const String& newText)
{
    IMediaResGroup* group = GetGroup();
    if (group != nullptr && !newText.empty() && newText != group->GetName())
        GetMediaTree().RenameCategory(String(GetID()), newText);
    return true;
}

int CMediaTreeCategory::OnListEvent(ui::CSkinList* list, int context, int event, const String& text)
{
    CMediaTree& tree = GetMediaTree();
    const String id = GetID(); // A copy: the row may go.
    switch (static_cast<ui::RowEvent>(event)) {
    case ui::RowEvent::DoubleClick: tree.PlayGroup(id); return 1; // The row doesn't fold.
    case ui::RowEvent::Delete:
        if (tree.GetSelectedCount() == 1)
            tree.DeleteCategory(id);
        return 1;
    case ui::RowEvent::FilesDropped: tree.TakeDroppedFiles(id); return 1;
    case ui::RowEvent::DragOver:
        if (tree.RefusesDrag(*this, id, /*isGroupRow=*/true))
            return 1;
        break;
    default: break;
    }
    return CSkinTreeItem::OnListEvent(list, context, event, text);
}

ui::IMenu* CMediaTreeCategory::GetRowMenu(const ui::MenuDelegate& delegate)
{
    return MakeGroupMenu(delegate, GetID());
}

void CMediaTreeCategory::OnRenameKey()
{
    if (IsUserGroupID(GetID()))
        GetMediaTree().BeginRenameCategory(GetID());
}

void CMediaTreeCategory::OnRowCommand(ui::IMenu* entry)
{
    CMediaTree& tree = GetMediaTree();
    const String id = GetID();
    switch (entry->GetID()) {
    case kCommandPlay:
    case kCommandPause: tree.PlayGroup(id); break;
    case kCommandSaveGroup: tree.SaveAsGroup(id); break;
    case kCommandClearGroup: tree.ClearCategory(id); break;
    case kCommandDeleteGroup: tree.DeleteCategory(id); break;
    case kCommandRenameGroup: tree.BeginRenameCategory(id); break;
    default: break;
    }
}

} // namespace kivo::tunehive
