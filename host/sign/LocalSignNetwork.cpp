#include "host/sign/LocalSignNetwork.h"

namespace kivo::host {

LocalSignNetwork::LocalSignNetwork(const String& ownId)
    : ownId_(ownId)
{
}

void LocalSignNetwork::SetListener(ISignNetworkListener* listener)
{
    listener_ = listener;
    if (listener_ != nullptr)
        listener_->OnState({SignConnection::LocalOnly, 0, String(), {}, ownId_});
    if (listener_ != nullptr && sign_)
        listener_->OnSign(ownId_, sign_->kind, sign_->title, sign_->record);
}

void LocalSignNetwork::SetSign(const String& kind, const String& title, const Property& sign)
{
    sign_ = Sign{kind, title, sign};
    if (listener_ != nullptr)
        listener_->OnSign(ownId_, kind, title, sign);
}

void LocalSignNetwork::RemoveSign()
{
    if (!sign_)
        return;
    sign_.reset();
    if (listener_ != nullptr)
        listener_->OnSignGone(ownId_);
}

String LocalSignNetwork::GetOwnId() const
{
    return ownId_;
}

void LocalSignNetwork::SignIn(const SignAccount& /*account*/) {}
void LocalSignNetwork::SignOut() {}
void LocalSignNetwork::GivePassword(const std::string& /*password*/, bool /*keep*/) {}
void LocalSignNetwork::TryNow() {}
void LocalSignNetwork::SetPublishing(bool /*publish*/, bool /*withAddress*/) {}
void LocalSignNetwork::AddContact(const String& /*id*/) {}
void LocalSignNetwork::AnswerContact(const String& /*id*/, bool /*yes*/) {}
void LocalSignNetwork::RemoveContact(const String& /*id*/) {}
void LocalSignNetwork::RenameContact(const String& /*id*/, const String& /*name*/) {}
void LocalSignNetwork::TrustCertificate(const std::string& /*fingerprint*/) {}

} // namespace kivo::host
