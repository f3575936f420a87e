#include "tree/MediaTreePanel.h"

#include "shell/contracts/common/Language.h"
#include "shell/contracts/common/Text.h"
#include "shell/contracts/ui/SkinManager.h"
#include "tree/EmptyPage.h"
#include "tree/MediaTree.h"

namespace kivo::tunehive {

CMediaTreePanel::CMediaTreePanel(ITrackPickers* pickers)
    : pickers_(pickers)
{
    SetObjectID(u"PlayListPanel");
}

void CMediaTreePanel::Build(CWnd* parent)
{
    parent_ = parent;
    const String key =
        common::FormatText(u"%s %s TuneHiveWindow %s", {u"KIVO", u"Plugins", GetObjectID()});
    if (const TiXmlNode* node = ui::CSkinManager::GetInstance()->GetBuildNode(key))
        BuildFromXML(node);
}

int CMediaTreePanel::OnBuildControlAfter()
{
    tree_ = new CMediaTree(pickers_);
    tree_->SetObjectID(u"PlayList");
    tree_->SetSkinName(u"tunehive");
    tree_->SetAccessibleName(
        common::CMutiLanSupport::GetInstance()->GetStringViaID(u"STRID_TUNEHIVE_NAME_TREE"));
    RegisterControl(tree_);
    tree_->SetAnchorStyle(ui::anchor::kFill);
    tree_->Create(parent_);
    tree_->LoadTree();
    tree_->SetCanDrop(1);
    tree_->SetCanDrag(1);
    auto* empty = new CEmptyPage(*tree_);
    tree_->RegisterControl(empty);
    empty->SetAnchorStyle(ui::anchor::kFill);
    empty->Build();
    tree_->SetEmptyPage(empty);
    return 1;
}

} // namespace kivo::tunehive
