#include "host/sign/SignNetwork.h"

#include "platform/base/Modules.h"

#include <utility>

namespace kivo::host {

SignNetwork::SignNetwork(const String& localName, Maker maker)
    : local_(localName)
    , maker_(std::move(maker))
{
}

ISignNetwork& SignNetwork::Current()
{
    return online_ ? *online_ : local_;
}

void SignNetwork::GoOnline()
{
    online_ = maker_(local_.GetOwnId());
    if (!online_)
        return;
    local_.SetListener(nullptr);
    online_->SetPublishing(publishes_, withAddress_);
    online_->SetListener(listener_);
    if (const std::optional<LocalSignNetwork::Sign>& sign = local_.GetSign())
        online_->SetSign(sign->kind, sign->title, sign->record);
}

void SignNetwork::SetListener(ISignNetworkListener* listener)
{
    listener_ = listener;
    Current().SetListener(listener);
}

void SignNetwork::SignIn(const SignAccount& account)
{
    if (!online_)
        GoOnline();
    if (online_)
        online_->SignIn(account);
    else if (listener_ != nullptr)
        listener_->OnState(
            {SignConnection::Unavailable, 0, String(), std::string(), local_.GetOwnId()});
}

void SignNetwork::SignOut()
{
    if (online_)
        online_->SignOut();
    else
        local_.SetListener(listener_); // Tells that all is local again.
}

void SignNetwork::GivePassword(const std::string& password, bool keep)
{
    Current().GivePassword(password, keep);
}

void SignNetwork::TryNow()
{
    Current().TryNow();
}

void SignNetwork::SetPublishing(bool publish, bool withAddress)
{
    publishes_ = publish;
    withAddress_ = withAddress;
    Current().SetPublishing(publish, withAddress);
}

void SignNetwork::SetSign(const String& kind, const String& title, const Property& sign)
{
    Current().SetSign(kind, title, sign);
}

void SignNetwork::RemoveSign()
{
    Current().RemoveSign();
}

void SignNetwork::AddContact(const String& id)
{
    Current().AddContact(id);
}

void SignNetwork::AnswerContact(const String& id, bool yes)
{
    Current().AnswerContact(id, yes);
}

void SignNetwork::RemoveContact(const String& id)
{
    Current().RemoveContact(id);
}

void SignNetwork::RenameContact(const String& id, const String& name)
{
    Current().RenameContact(id, name);
}

void SignNetwork::TrustCertificate(const std::string& fingerprint)
{
    Current().TrustCertificate(fingerprint);
}

String SignNetwork::GetOwnId() const
{
    return online_ ? online_->GetOwnId() : local_.GetOwnId();
}

std::unique_ptr<ISignNetwork> LoadXmppSignNetwork(const String& localName)
{
    void* const make = FindInModule(u"libkivo_signs.so", "MakeXmppSignNetwork");
    if (make == nullptr)
        return nullptr;
    return std::unique_ptr<ISignNetwork>(
        reinterpret_cast<MakeXmppSignNetworkFunction>(make)(localName));
}

} // namespace kivo::host
