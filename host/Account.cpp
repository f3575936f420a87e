#include "host/Account.h"

#include "host/HostSettings.h"
#include "shell/contracts/common/Text.h"

#include <algorithm>
#include <cstddef>

namespace kivo::host {

namespace {

constexpr char kOn[] = "account.on";
constexpr char kAddress[] = "account.address";
constexpr char kServer[] = "account.server";
constexpr char kPort[] = "account.port";
constexpr char kPin[] = "account.pin";
constexpr char kPublish[] = "account.publish";
constexpr char kTitleOnly[] = "account.title_only";

constexpr std::size_t kLongestPart = 1023; // Units; the network's own limit, in bytes.
constexpr StringView kNotInNames = u"\"&'/:<>@";

bool IsPlain(char16_t unit)
{
    return unit > u' ' && unit != 0x7F && unit != 0xA0;
}

bool IsPart(StringView part)
{
    return !part.empty() && part.size() <= kLongestPart &&
           std::all_of(part.begin(), part.end(), IsPlain);
}

} // namespace

Account::Account(HostSettings& settings)
    : settings_(settings)
{
}

bool Account::IsOn() const
{
    return settings_.GetNumber(kOn, 0) != 0 && !settings_.Get(kAddress, {}).empty();
}

void Account::SetOn(bool on)
{
    settings_.SetNumber(kOn, on ? 1 : 0);
}

SignAccount Account::Get() const
{
    SignAccount account;
    account.address = common::utf8_to_CString(settings_.Get(kAddress, {}));
    account.server = common::utf8_to_CString(settings_.Get(kServer, {}));
    account.port = std::clamp(settings_.GetNumber(kPort, 0), 0, 65535);
    account.fingerprint = settings_.Get(kPin, {});
    return account;
}

void Account::Set(const SignAccount& account)
{
    settings_.Set(kAddress, common::CString_to_utf8(account.address));
    settings_.Set(kServer, common::CString_to_utf8(account.server));
    settings_.SetNumber(kPort, account.port);
    SetFingerprint(account.fingerprint);
}

void Account::SetFingerprint(const std::string& fingerprint)
{
    settings_.Set(kPin, fingerprint);
}

bool Account::IsPublishing() const
{
    return settings_.GetNumber(kPublish, 0) != 0;
}

void Account::SetPublishing(bool publish)
{
    settings_.SetNumber(kPublish, publish ? 1 : 0);
}

bool Account::IsTitleOnly() const
{
    return settings_.GetNumber(kTitleOnly, 0) != 0;
}

void Account::SetTitleOnly(bool titleOnly)
{
    settings_.SetNumber(kTitleOnly, titleOnly ? 1 : 0);
}

bool IsServerName(StringView text)
{
    // Colons are those of a number; a port has its own field.
    const bool isNumber = text.starts_with(u'[') && text.ends_with(u']');
    const StringView excluded = isNumber ? u"\"&'/<>@" : kNotInNames;
    return IsPart(text) && text.find_first_of(excluded) == StringView::npos;
}

String GetServerOf(StringView id)
{
    return String(id.substr(id.find(u'@') + 1)); // Of "no such place" this makes 0.
}

String GetNameOf(StringView id)
{
    return String(id.substr(0, id.find(u'@')));
}

} // namespace kivo::host
