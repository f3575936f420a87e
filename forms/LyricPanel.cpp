#include "forms/LyricPanel.h"

#include "forms/LyricWnd.h"
#include "player/IPage.h"
#include "shell/contracts/common/AppPath.h"
#include "shell/contracts/common/Text.h"
#include "shell/contracts/framework/Paths.h"
#include "shell/contracts/ui/SkinManager.h"
#include "shell/contracts/ui/SkinPhoto.h"

namespace kivo::tunehive {

CLyricPanel::CLyricPanel(IPage* page)
    : page_(page)
{
    SetObjectID(u"LyricPanel");
    ListenEvent(ui::kControlEvent, ui::EventDelegate(this, &CLyricPanel::OnControlEvent));
}

void CLyricPanel::Build(CWnd* parent)
{
    parent_ = parent;
    const String key =
        common::FormatText(u"%s %s TuneHiveWindow %s", {u"KIVO", u"Plugins", GetObjectID()});
    if (const TiXmlNode* node = ui::CSkinManager::GetInstance()->GetBuildNode(key))
        BuildFromXML(node);
}

int CLyricPanel::OnBuildControlAfter()
{
    closeButton_ = FindControlRecusive(u"CloseBtn");
    if (closeButton_ == nullptr)
        return 0;
    caption_ = FindControlRecusive(u"LyricCaption");
    if (caption_ == nullptr)
        return 0;
    photo_ = dynamic_cast<ui::CSkinPhoto*>(FindControlRecusive(u"PhotoDefault"));
    if (photo_ == nullptr)
        return 0;
    photo_->SetPhotoFile(
        ComposePath(u"%splugin\\tunehive\\skin\\player.png", {common::GetAppPath()}),
        ui::PictureRect(),
        0);
    videoWindow_ = new CLyricWnd;
    photo_->RegisterControl(videoWindow_);
    videoWindow_->Create(parent_);
    videoWindow_->SetAnchorStyle(ui::anchor::kFill);
    videoWindow_->SetVisible(0);
    return 1;
}

void CLyricPanel::OnControlEvent(ui::CSkinObject* sender, void* /*data*/)
{
    if (closeButton_ != nullptr && sender == closeButton_ && page_ != nullptr)
        page_->SetPaneMode(0);
}

} // namespace kivo::tunehive
