#include "host/AddContactForm.h"

#include "host/sign/SignText.h"
#include "host/Texts.h"
#include "shell/contracts/ui/SWColorEdit.h"

#include <utility>

namespace kivo::host {

AddContactForm::AddContactForm(String ownId)
    : HostForm(u"KivoAddContactForm", host::GetText(u"STRID_KIVO_ADDFRIEND"))
    , ownId_(std::move(ownId))
{
}

void AddContactForm::Fill()
{
    ui::CSWColorEdit* const input = MakeEdit(u"AddressInput", String(), kLongestAddress);
    ShowControl(u"AddressError", /*isShown=*/false);
    FocusObject(input);
}

bool AddContactForm::Accept()
{
    id_ = NormalizeSignId(GetField(u"AddressInput"));
    String wrong;
    if (id_.empty())
        wrong = host::GetText(u"STRID_KIVO_ADDRESS_WRONG");
    else if (id_ == ownId_)
        wrong = host::GetText(u"STRID_KIVO_ADDRESS_OWN");
    ShowError(u"AddressError", wrong);
    return wrong.empty();
}

} // namespace kivo::host
