#include "host/AccountForm.h"

#include "host/Account.h"
#include "host/sign/SignText.h"
#include "host/Texts.h"
#include "shell/contracts/common/Text.h"
#include "shell/contracts/ui/SWColorEdit.h"

#include <algorithm>
#include <utility>

namespace kivo::host {

namespace {

constexpr int kLongestPort = 5;
constexpr int kLargestPort = 65535;

bool IsPort(const String& text)
{
    const auto isDigit = [](char16_t unit) { return unit >= u'0' && unit <= u'9'; };
    return std::all_of(text.begin(), text.end(), isDigit) &&
           common::CString2Int(text) <= kLargestPort && common::CString2Int(text) > 0;
}

} // namespace

AccountForm::AccountForm(Choice preset, bool hasKept)
    : HostForm(u"KivoAccountForm", host::GetText(u"STRID_KIVO_SIGNIN"))
    , choice_(std::move(preset))
    , hasKept_(hasKept)
{
}

void AccountForm::Fill()
{
    const SignAccount& account = choice_.account;
    ui::CSWColorEdit* const address = MakeEdit(u"AddressInput", account.address, kLongestAddress);
    ui::CSWColorEdit* const password = MakeEdit(u"PasswordInput", String(), kLongestPassword);
    MakeEdit(u"ServerInput", account.server, kLongestAddress);
    MakeEdit(
        u"PortInput", account.port > 0 ? common::ToText(account.port) : String(), kLongestPort);
    SetTick(u"KeepBox", choice_.keepsPassword);
    SetTick(u"PublishBox", choice_.publishes);
    SetTick(u"TitleOnlyBox", choice_.isTitleOnly);
    if (CSkinObject* const box = FindControlRecusive(u"TitleOnlyBox"))
        box->SetEnabled(choice_.publishes ? 1 : 0);
    if (hasKept_)
        SetControlText(u"PasswordLabel", host::GetText(u"STRID_KIVO_PASSWORD_KEPT"));
    for (const char16_t* const error : {u"AddressError", u"PasswordError", u"ServerError"})
        ShowControl(error, /*isShown=*/false);
    const bool showsMore = !account.server.empty() || account.port > 0;
    ShowControl(u"MorePanel", showsMore);
    ShowControl(u"MoreBtn", !showsMore);
    FocusObject(account.address.empty() ? address : password);
}

void AccountForm::OnButton(CSkinObject& button)
{
    const String& id = button.GetObjectID();
    if (id == u"MoreBtn")
        ShowMore();
    if (id == u"PublishBox") {
        if (CSkinObject* const box = FindControlRecusive(u"TitleOnlyBox"))
            box->SetEnabled(IsTicked(u"PublishBox") ? 1 : 0);
    }
}

void AccountForm::ShowMore()
{
    ShowControl(u"MorePanel", /*isShown=*/true);
    ShowControl(u"MoreBtn", /*isShown=*/false);
    GrowToContent();
    FocusObject(FindControlRecusive(u"ServerInput"));
}

bool AccountForm::CheckAddress(const String& address)
{
    const bool isRight = !address.empty();
    ShowError(u"AddressError", isRight ? String() : host::GetText(u"STRID_KIVO_ADDRESS_WRONG"));
    if (!isRight)
        FocusObject(FindControlRecusive(u"AddressInput"));
    return isRight;
}

bool AccountForm::CheckPassword(const String& address, const String& password)
{
    // Only that account's own may be in the keyring.
    const bool isRight = !password.empty() || (hasKept_ && address == choice_.account.address);
    ShowError(u"PasswordError", isRight ? String() : host::GetText(u"STRID_KIVO_PASSWORD_MISSING"));
    if (!isRight)
        FocusObject(FindControlRecusive(u"PasswordInput"));
    return isRight;
}

bool AccountForm::CheckServer(const String& server, const String& port)
{
    String wrong;
    const char16_t* field = u"ServerInput";
    if (!server.empty() && !IsServerName(server)) {
        wrong = host::GetText(u"STRID_KIVO_SERVER_WRONG");
    } else if (!port.empty() && !IsPort(port)) {
        wrong = host::GetText(u"STRID_KIVO_PORT_WRONG");
        field = u"PortInput";
    }
    ShowError(u"ServerError", wrong);
    if (!wrong.empty())
        FocusObject(FindControlRecusive(field));
    return wrong.empty();
}

bool AccountForm::Accept()
{
    const String address = NormalizeSignId(GetField(u"AddressInput"));
    const String server = GetField(u"ServerInput");
    const String port = GetField(u"PortInput");
    const CSkinObject* const password = FindControlRecusive(u"PasswordInput");
    const String secret = password != nullptr ? password->GetText() : String(); // Blanks count.
    if (!CheckAddress(address) || !CheckPassword(address, secret) || !CheckServer(server, port))
        return false;
    // A trusted certificate is that of one server.
    SignAccount& account = choice_.account;
    const int number = port.empty() ? 0 : common::CString2Int(port);
    if (GetServerOf(account.address) != GetServerOf(address) || account.server != server ||
        account.port != number)
        account.fingerprint.clear();
    account.address = address;
    account.server = server;
    account.port = number;
    choice_.password = common::CString_to_utf8(secret);
    choice_.keepsPassword = IsTicked(u"KeepBox");
    choice_.publishes = IsTicked(u"PublishBox");
    choice_.isTitleOnly = IsTicked(u"TitleOnlyBox");
    return true;
}

} // namespace kivo::host
