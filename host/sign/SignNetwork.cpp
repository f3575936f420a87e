#include "host/sign/SignNetwork.h"

#include "platform/base/Modules.h"

#include <utility>

namespace kivo::host {

SignNetwork::SignNetwork(const String& localName, Maker maker)
    : localName_(localName)
    , maker_(std::move(maker))
{
}

void SignNetwork::GoOnline()
{
    online_ = maker_ ? maker_(localName_) : nullptr;
    if (!online_)
        return;
    online_->SetPublishing(publishes_, withAddress_);
    online_->SetListener(listener_);
    if (const std::optional<LocalSign> sign = std::exchange(sign_, std::nullopt))
        online_->SetSign(sign->kind, sign->title, sign->record);
}

void SignNetwork::TellState(SignConnection connection) const
{
    if (listener_ != nullptr)
        listener_->OnState({connection, 0, String(), {}, localName_});
}

void SignNetwork::SetListener(ISignNetworkListener* listener)
{
    listener_ = listener;
    if (online_) {
        online_->SetListener(listener);
        return;
    }
    TellState(SignConnection::LocalOnly);
    if (listener_ != nullptr && sign_)
        listener_->OnSign(localName_, sign_->kind, sign_->title, sign_->record);
}

void SignNetwork::SignIn(const SignAccount& account)
{
    if (!online_)
        GoOnline();
    if (online_)
        online_->SignIn(account);
    else
        TellState(SignConnection::Unavailable);
}

void SignNetwork::SignOut()
{
    if (online_)
        online_->SignOut();
    else
        TellState(SignConnection::LocalOnly);
}

void SignNetwork::SetPublishing(bool publish, bool withAddress)
{
    publishes_ = publish;
    withAddress_ = withAddress;
    if (online_)
        online_->SetPublishing(publish, withAddress);
}

void SignNetwork::SetSign(const String& kind, const String& title, const Property& sign)
{
    if (online_) {
        online_->SetSign(kind, title, sign);
        return;
    }
    sign_ = LocalSign{kind, title, sign};
    if (listener_ != nullptr)
        listener_->OnSign(localName_, kind, title, sign);
}

void SignNetwork::RemoveSign()
{
    if (online_)
        online_->RemoveSign();
    else if (std::exchange(sign_, std::nullopt) && listener_ != nullptr)
        listener_->OnSignGone(localName_);
}

void SignNetwork::GivePassword(const std::string& password, bool keep)
{
    if (online_)
        online_->GivePassword(password, keep);
}

void SignNetwork::TryNow()
{
    if (online_)
        online_->TryNow();
}

void SignNetwork::AddContact(const String& id)
{
    if (online_)
        online_->AddContact(id);
}

void SignNetwork::AnswerContact(const String& id, bool yes)
{
    if (online_)
        online_->AnswerContact(id, yes);
}

void SignNetwork::RemoveContact(const String& id)
{
    if (online_)
        online_->RemoveContact(id);
}

void SignNetwork::RenameContact(const String& id, const String& name)
{
    if (online_)
        online_->RenameContact(id, name);
}

void SignNetwork::TrustCertificate(const std::string& fingerprint)
{
    if (online_)
        online_->TrustCertificate(fingerprint);
}

String SignNetwork::GetOwnId() const
{
    return online_ ? online_->GetOwnId() : localName_;
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
