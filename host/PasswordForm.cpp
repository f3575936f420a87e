#include "host/PasswordForm.h"

#include "host/PlainLine.h"
#include "host/Texts.h"
#include "shell/contracts/common/Text.h"
#include "shell/contracts/ui/SWColorEdit.h"

namespace kivo::host {

PasswordForm::PasswordForm(const String& address)
    : HostForm(u"KivoPasswordForm", host::GetText(u"STRID_KIVO_SIGNIN"))
    , address_(address)
{
}

void PasswordForm::Fill()
{
    SetControlText(
        u"PasswordText",
        common::FormatText(host::GetText(u"STRID_KIVO_PASSWORD_FOR"), {ToPlainLine(address_, 80)}));
    ui::CSWColorEdit* const input = MakeEdit(u"PasswordInput", String(), kLongestPassword);
    ShowControl(u"PasswordError", /*isShown=*/false);
    SetTick(u"KeepBox", isToBeKept_);
    FocusObject(input);
}

bool PasswordForm::Accept()
{
    const CSkinObject* const input = FindControlRecusive(u"PasswordInput");
    password_ = input != nullptr ? common::CString_to_utf8(input->GetText()) : std::string();
    isToBeKept_ = IsTicked(u"KeepBox");
    ShowError(u"PasswordError",
              password_.empty() ? host::GetText(u"STRID_KIVO_PASSWORD_MISSING") : String());
    return !password_.empty();
}

} // namespace kivo::host
