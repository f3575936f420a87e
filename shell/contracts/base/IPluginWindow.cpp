#include "shell/contracts/base/IPluginWindow.h"

#include "shell/contracts/ui/SkinForm.h"
#include "shell/contracts/ui/SkinWndManager.h"

namespace kivo {

IPluginWindow::IPluginWindow(CWnd* parent, IPluginWindowLayout* layout)
    : parent_(parent)
    , layout_(layout)
{
}

IPluginWindow::~IPluginWindow() = default;

void IPluginWindow::InterruptChildModalFormByForce()
{
    const ui::CSkinForm* const mainForm = ui::CSkinWndManager::GetInstance()->GetMainForm();
    if (parent_ == nullptr || !parent_->IsWindow() || !IsVisible() || mainForm == nullptr)
        return;
    ui::CSkinForm* const modal = mainForm->GetModalChildForm();
    if (modal != nullptr && modal->IsWindow())
        modal->InterruptByForce();
}

void IPluginWindow::SetLayout(IPluginWindowLayout* layout)
{
    layout_ = layout;
}

} // namespace kivo
