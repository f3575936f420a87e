#include "player/VolForm.h"

#include "player/IPage.h"
#include "player/OutputVolume.h"
#include "shell/contracts/ui/SkinSlider.h"

namespace kivo::tunehive {

namespace {

constexpr unsigned kFormStyle = 0x80CF0000U;

} // namespace

CVolForm::CVolForm(IPage* page)
    : page_(page)
{
    SetObjectID(u"VolForm");
    ListenEvent(ui::kControlEvent, ui::EventDelegate(this, &CVolForm::OnSlider));
}

int CVolForm::Create(CWnd* parent)
{
    SetExStyle(ui::wndstyle::kExToolWindow);
    if (CSkinWnd::Create(kFormStyle, String(), u"KivoMediaVolumeCtrl", Rect(), parent, 0) == 0)
        return 0;
    parent_ = parent;
    SetFormRgn();
    return 1;
}

int CVolForm::OnBuildControlAfter()
{
    slider_ = dynamic_cast<ui::CSkinSlider*>(FindControlRecusive(u"VolSlider"));
    if (slider_ == nullptr)
        return 0;
    slider_->Create(this);
    slider_->SetRange(0, 100);
    slider_->SetPosition(0);
    return 1;
}

int CVolForm::OnQueryCloseForm()
{
    if (page_ != nullptr)
        page_->ForgetVolForm();
    Release();
    return 0;
}

LPARAM CVolForm::WindowProc(unsigned message, WPARAM wParam, LPARAM lParam)
{
    if (message == ui::wndmessage::kClose) {
        ShowWindow(0); // Only hidden: the button opens it again.
        return 0;
    }
    const LPARAM result = CSkinForm::WindowProc(message, wParam, lParam);
    if (message != ui::wndmessage::kActivate)
        return result;
    if (page_ != nullptr)
        page_->OnVolFormShown(wParam != 0);
    const int volume = GetOutputVolume();
    if (wParam == 0)
        ShowWindow(0);
    else if (slider_ != nullptr && volume >= 0)
        slider_->SetPosition(volume);
    return result;
}

void CVolForm::OnSlider(ui::CSkinObject* sender, void* /*data*/)
{
    if (slider_ != nullptr && sender == slider_)
        SetOutputVolume(slider_->GetPosition());
}

} // namespace kivo::tunehive
