#include "host/HostForm.h"

#include "shell/contracts/common/Text.h"
#include "shell/contracts/ui/SkinButton.h"
#include "shell/contracts/ui/SWColorEdit.h"

#include <algorithm>
#include <utility>

namespace kivo::host {

namespace {

constexpr unsigned kEditStyle =
    ui::wndstyle::kChild | ui::wndstyle::kVisible | ui::wndstyle::kTabStop;

ui::CSkinButton* FindBox(const ui::CSkinObject& form, const char16_t* id)
{
    return dynamic_cast<ui::CSkinButton*>(form.FindControlRecusive(id));
}

} // namespace

HostForm::HostForm(const char16_t* id, String title)
    : title_(std::move(title))
{
    SetObjectID(id);
    SetSkinName(u"form");
    ListenEvent(ui::kControlEvent, ui::EventDelegate(this, &HostForm::OnControl));
}

bool HostForm::Ask(CWnd* parent)
{
    if (Create(ui::wndstyle::kPopup, GetObjectID(), title_, Rect{}, parent, /*id=*/0) == 0)
        return false;
    return DoWndModal() == 1;
}

int HostForm::OnBuildControlAfter()
{
    CSkinObject* const ok = FindControlRecusive(u"BtnOK");
    if (ok == nullptr)
        return 0;
    SetDefaultOKButton(ok);
    Fill();
    return 1;
}

void HostForm::OnControl(CSkinObject* sender, void* /*data*/)
{
    const String& id = sender->GetObjectID();
    if (id == u"BtnOK") {
        if (Accept())
            DoCancelWndModal(1);
    } else if (id == u"BtnCancel") {
        DoCancelWndModal(0);
    } else if (sender->GetSkinName() == u"check") {
        auto& box = static_cast<ui::CSkinButton&>(*sender);
        box.SetChecked(box.IsChecked() ? 0 : 1);
        OnButton(*sender);
    } else {
        OnButton(*sender);
    }
}

ui::CSWColorEdit* HostForm::MakeEdit(const char16_t* id, const String& text, int longest)
{
    auto* const edit = dynamic_cast<ui::CSWColorEdit*>(FindControlRecusive(id));
    if (edit == nullptr)
        return nullptr;
    edit->Create(kEditStyle, Rect{}, this, /*id=*/0);
    edit->SetLimitText(longest);
    edit->SetText(text);
    return edit;
}

String HostForm::GetField(const char16_t* id) const
{
    const CSkinObject* const field = FindControlRecusive(id);
    return field != nullptr ? common::Trim(field->GetText()) : String();
}

void HostForm::SetControlText(const char16_t* id, const String& text) const
{
    if (CSkinObject* const control = FindControlRecusive(id))
        control->SetText(text);
}

void HostForm::ShowControl(const char16_t* id, bool isShown) const
{
    if (CSkinObject* const control = FindControlRecusive(id))
        control->SetVisible(isShown ? 1 : 0);
}

void HostForm::SetTick(const char16_t* id, bool isTicked) const
{
    if (ui::CSkinButton* const box = FindBox(*this, id))
        box->SetChecked(isTicked ? 1 : 0);
}

bool HostForm::IsTicked(const char16_t* id) const
{
    const ui::CSkinButton* const box = FindBox(*this, id);
    return box != nullptr && box->IsChecked();
}

void HostForm::ShowError(const char16_t* id, const String& text)
{
    SetControlText(id, text);
    ShowControl(id, !text.empty());
    GrowToContent();
}

void HostForm::GrowToContent()
{
    RePositionSubControls(); // What has just come in sight learns its width, and so its height.
    const Rect bounds = GetBoundsRect();
    const int height = std::max(ui::HeightOf(bounds), GetWantedSize().height);
    SetBounds(bounds.left, bounds.top, ui::WidthOf(bounds), height);
    RePositionSubControls();
}

} // namespace kivo::host
