#include "host/Services.h"

#include "host/Account.h"
#include "host/HostSettings.h"
#include "host/IMessages.h"
#include "host/sign/ISignNetwork.h"
#include "shell/contracts/base/IPlugin.h"
#include "shell/contracts/base/IPluginWindowLayout.h"
#include "shell/contracts/common/Language.h"
#include "shell/contracts/common/Text.h"

#include <limits>
#include <string>

namespace kivo::host {

namespace {

constexpr int kYesNoStyle = 2;

MessageKind GetKind(int code)
{
    switch (code) {
    case 42: return MessageKind::Question;
    case 43: return MessageKind::Error;
    default: return MessageKind::Notice;
    }
}

std::string GetSettingKey()
{
    return common::CString_to_utf8(kSignSetting);
}

} // namespace

Services::Services(const Parts& parts, const String& directory)
    : parts_(parts)
    , directory_(directory)
{
    wasShown_ = Services::IsMediaStateShown();
    TellNetwork();
    SetHostServices(this);
}

Services::~Services()
{
    SetHostServices(nullptr);
}

void Services::ShowMediaState(bool show)
{
    if (parts_.account.IsOn())
        parts_.account.SetPublishing(show);
    else
        parts_.settings.SetNumber(GetSettingKey(), show ? 1 : 0);
    OnAccountChanged();
}

void Services::OnAccountChanged()
{
    const bool isShown = IsMediaStateShown();
    const bool isAnother = isShown != wasShown_;
    wasShown_ = isShown;
    if (!isShown && isAnother) {
        signingPlugin_ = nullptr;
        parts_.signs.RemoveSign();
    }
    TellNetwork();
    parts_.settings.Save(); // What the user doesn't want told must outlive a crash.
    if (isAnother)
        watches_.Notify(kSignSetting);
}

// Nothing leaves but what the user has allowed for this account.
void Services::TellNetwork() const
{
    const Account& account = parts_.account;
    parts_.signs.SetPublishing(account.IsOn() && account.IsPublishing(), !account.IsTitleOnly());
}

bool Services::RegisterPluginWindow(IPluginWindow* window)
{
    parts_.pages.AddPluginPage(window);
    return true;
}

void Services::UnregisterPluginWindow(IPluginWindow* window)
{
    parts_.pages.RemovePluginPage(window);
}

void Services::SetStateSign(IPlugin* plugin,
                            const String& kind,
                            const String& title,
                            const Property& sign)
{
    // A sign that says nothing isn't shown.
    if (!IsMediaStateShown() || (title.empty() && sign.GetText(0).empty()))
        return;
    signingPlugin_ = plugin;
    ownSign_ = sign;
    parts_.signs.SetSign(kind, title, sign);
}

void Services::RemoveStateSign(IPlugin* plugin)
{
    if (signingPlugin_ != plugin)
        return;
    signingPlugin_ = nullptr;
    parts_.signs.RemoveSign();
}

void Services::ActivateOwnSign()
{
    if (signingPlugin_ != nullptr)
        signingPlugin_->OnSignatureFun(GetMyUid(), ownSign_);
}

bool Services::IsMediaStateShown() const
{
    if (parts_.account.IsOn())
        return parts_.account.IsPublishing();
    return parts_.settings.GetNumber(GetSettingKey(), 1) != 0;
}

String Services::GetMyUid() const
{
    return parts_.signs.GetOwnId();
}

String Services::GetMyDir() const
{
    return directory_;
}

void Services::Watch(void* watcher, const SettingDelegate& delegate, const String& key)
{
    watches_.Add(watcher, delegate, key);
}

void Services::Revoke(void* watcher)
{
    watches_.Remove(watcher);
}

String Services::GetText(const String& id) const
{
    return common::CMutiLanSupport::GetInstance()->GetStringViaID(id);
}

bool Services::ShowMessage(int code, const String& title, const String& message, int style)
{
    const MessageKind kind = style == kYesNoStyle ? MessageKind::Question : GetKind(code);
    return parts_.messages.Show(kind, title, message);
}

void Services::CountUse(int tag)
{
    const std::string key = "use." + std::to_string(tag);
    const int count = parts_.settings.GetNumber(key, 0);
    if (count < std::numeric_limits<int>::max())
        parts_.settings.SetNumber(key, count + 1);
}

} // namespace kivo::host
