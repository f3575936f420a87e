#include "tree/ToolPanel.h"

#include "medialib/AddFolderThread.h"
#include "mediares/GroupIds.h"
#include "player/PlayMode.h"
#include "shell/base/Settings.h"
#include "shell/contracts/base/Beyond.h"
#include "shell/contracts/common/Text.h"
#include "shell/contracts/ui/SkinForm.h"
#include "shell/contracts/ui/SkinManager.h"
#include "tree/ITrackPickers.h"
#include "tree/MediaTree.h"
#include "tree/MediaTreePanel.h"
#include "tree/TreeMenus.h"

namespace kivo::tunehive {

CToolPanel::CToolPanel(ITrackPickers* pickers)
    : pickers_(pickers)
{
    SetObjectID(u"ToolPanel");
    ListenEvent(ui::kControlEvent, ui::EventDelegate(this, &CToolPanel::OnButton));
}

void CToolPanel::Build(CWnd* parent)
{
    parent_ = parent;
    const String key =
        common::FormatText(u"%s %s TuneHiveWindow %s", {u"KIVO", u"Plugins", GetObjectID()});
    if (const TiXmlNode* node = ui::CSkinManager::GetInstance()->GetBuildNode(key))
        BuildFromXML(node);
}

int CToolPanel::OnBuildControlAfter()
{
    struct Button {
        const char16_t* id;
        ui::CSkinObject* CToolPanel::*field;
    };
    static constexpr Button kButtons[] = {
        {u"AddBtn",  &CToolPanel::addButton_     },
        {u"DelBtn",  &CToolPanel::deleteButton_  },
        {u"ModeBtn", &CToolPanel::modeButton_    },
        {u"SetBtn",  &CToolPanel::settingsButton_},
    };
    for (const auto& [id, field] : kButtons) {
        this->*field = FindControlRecusive(id);
        if (this->*field == nullptr)
            return 0;
    }
    settingsButton_->SetVisible(0);
    return 1;
}

void CToolPanel::SetTreePanel(const CMediaTreePanel* panel)
{
    treePanel_ = panel;
    CMediaTree* tree = GetTree();
    if (tree == nullptr || !IsBeyond())
        return;
    tree->SetSelectionWatch({this, &CToolPanel::OnSelectedSome}, Watch());
    OnSelectedSome(tree->GetSelectedCount() > 0);
}

// Without a selection the button would do nothing: it says so.
void CToolPanel::OnSelectedSome(bool some)
{
    if (deleteButton_ != nullptr)
        deleteButton_->SetEnabled(some ? 1 : 0);
}

CMediaTree* CToolPanel::GetTree() const
{
    return treePanel_ != nullptr ? treePanel_->GetTree() : nullptr;
}

ui::MenuDelegate CToolPanel::GetMenuDelegate()
{
    return ui::MenuDelegate(this, &CToolPanel::DoMenuCommand);
}

void CToolPanel::Popup(ui::IMenu* menu)
{
    ui::IMenu::PopupMenu(GetOwnerForm(), menu, -1, -1, 0, String());
}

void CToolPanel::OnButton(ui::CSkinObject* sender, void* /*data*/)
{
    if (sender == nullptr)
        return;
    if (sender == addButton_)
        ShowAddMenu();
    else if (sender == modeButton_)
        Popup(MakeModeMenu(GetMenuDelegate()));
    else if (sender == deleteButton_)
        ShowDeleteMenu();
}

void CToolPanel::ShowAddMenu()
{
    Popup(MakeAddMenu(GetMenuDelegate()));
}

void CToolPanel::ShowDeleteMenu()
{
    const CMediaTree* tree = GetTree();
    if (tree == nullptr)
        return;
    const auto selected = tree->GetAllSelectedItem();
    if (selected.empty())
        return;
    const auto* row = static_cast<const ui::CSkinTreeItem*>(selected[0]);
    const bool isOneGroup = selected.size() == 1 && row->IsGroup();
    const bool isFixed = isOneGroup && IsFixedGroupID(row->GetID());
    Popup(MakeDeleteMenu(GetMenuDelegate(), isOneGroup ? 1 : 0, isFixed ? 0 : 1));
}

void CToolPanel::DoMenuCommand(ui::IMenu* entry)
{
    const int command = entry->GetID();
    for (const PlayModeEntry& offered : kPlayModes) {
        if (offered.command == command) {
            SetPlayMode(static_cast<int>(offered.mode));
            return;
        }
    }
    CMediaTree* tree = GetTree();
    if (tree == nullptr)
        return;
    switch (command) {
    case kCommandAddFiles: AddFilesByDialog(); break;
    case kCommandAddFolder: AddFolderByDialog(); break;
    case kCommandAddURL: AddURLByDialog(); break;
    case kCommandAddGroup: tree->NewGroup(); break;
    case kCommandDeleteTracks: tree->DeleteSelectedTracks(); break;
    case kCommandDeleteDuplicates: tree->RemoveSelectedDuplicates(); break;
    case kCommandDeleteGroups: tree->DeleteSelectedCategory(); break;
    default: break;
    }
}

void CToolPanel::AddFilesByDialog()
{
    const LifeWatch life = Watch(); // The page may close below a dialog.
    String group;
    CStringArray paths;
    if (pickers_ == nullptr || pickers_->ShowAddFileForm(parent_, group) == 0 ||
        pickers_->PickMediaFiles(parent_, paths) == 0 || !life.IsAlive()) {
        return;
    }
    GetTree()->AddPaths(group, paths);
}

void CToolPanel::AddFolderByDialog()
{
    const LifeWatch life = Watch();
    String group;
    String folder;
    if (pickers_ == nullptr || pickers_->ShowAddFileForm(parent_, group) == 0 ||
        pickers_->PickFolder(parent_, folder) == 0 || !life.IsAlive()) {
        return;
    }
    const CMediaTree* tree = GetTree();
    if (tree != nullptr && tree->IsWindow())
        CAddFolderThread::Start(tree->GetHandle(), group, folder);
}

void CToolPanel::AddURLByDialog()
{
    const LifeWatch life = Watch();
    String group;
    String url;
    String name;
    if (pickers_ == nullptr || pickers_->ShowAddURLForm(parent_, group, url, name) == 0 ||
        !life.IsAlive()) {
        return;
    }
    String sid;
    GetTree()->AddTrack(group, url, name, /*allowDuplicate=*/1, sid);
}

} // namespace kivo::tunehive
