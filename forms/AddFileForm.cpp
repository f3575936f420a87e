#include "forms/AddFileForm.h"

#include "mediares/GroupIds.h"
#include "mediares/IMediaResGroup.h"
#include "mediares/IMediaResManager.h"
#include "shell/contracts/common/Language.h"
#include "shell/contracts/ui/SkinCombox.h"

namespace kivo::tunehive {

namespace {

constexpr int kFormIcon = 7003;
constexpr unsigned kComboStyle = 4;

} // namespace

CAddFileForm::CAddFileForm()
{
    SetObjectID(u"AddFileForm");
}

int CAddFileForm::Create(CWnd* parent)
{
    const String title =
        common::CMutiLanSupport::GetInstance()->GetStringViaID(u"STRID_TUNEHIVE_ADDFILEFORM_TITLE");
    if (CSkinWnd::Create(ui::wndstyle::kPopup, u"KivoMediaAddFileForm", title, Rect(), parent, 0) ==
        0) {
        return 0;
    }
    SetIcon(kFormIcon, 1);
    SetIcon(kFormIcon, 0);
    ListenEvent(ui::kControlEvent, ui::EventDelegate(this, &CAddFileForm::OnControlEvent));
    return 1;
}

int CAddFileForm::OnBuildControlAfter()
{
    combo_ = dynamic_cast<ui::CSkinCombox*>(FindControlRecusive(u"SelCombox"));
    if (combo_ == nullptr)
        return 0;
    combo_->Create(kComboStyle, {0, 0, 10, 100}, this);
    combo_->SetFont(ui::GetDefaultLOGFONT());
    if (IMediaResManager* manager = FindMediaResManager()) {
        std::vector<String> ids;
        manager->GetSortedGroupIDs(ids);
        for (const String& id : ids) {
            IMediaResGroup* group = id != kHotGroup ? manager->GetGroup(id) : nullptr;
            if (group == nullptr)
                continue;
            combo_->AddString(group->GetName());
            ids_.push_back(group->GetID());
        }
    }
    combo_->SetCurSel(0);
    okButton_ = FindControlRecusive(u"BtnOK");
    cancelButton_ = FindControlRecusive(u"BtnCancel");
    if (okButton_ == nullptr || cancelButton_ == nullptr)
        return 0;
    SetDefaultOKButton(okButton_);
    return 1;
}

void CAddFileForm::OnControlEvent(ui::CSkinObject* sender, void* /*data*/)
{
    if (sender == nullptr)
        return;
    if (sender == okButton_) {
        const int row = combo_->GetCurSel();
        if (row >= 0 && row < static_cast<int>(ids_.size()))
            group_ = ids_[static_cast<std::size_t>(row)];
        DoCancelWndModal(1);
    } else if (sender == cancelButton_) {
        DoCancelWndModal(0);
    }
}

} // namespace kivo::tunehive
