#pragma once

#include "host/sign/ISignNetwork.h"
#include "host/sign/LocalSignNetwork.h"

#include <functional>
#include <memory>

namespace kivo::host {

// The program's network of signs: local until the first sign-in, which loads the one with contacts.
// So a start without an account pays nothing for it. Where it can't be loaded the state is
// Unavailable, and each sign-in tries again.
class SignNetwork final : public ISignNetwork {
public:
    // The network with contacts, under the local name. Null: it can't be had.
    using Maker = std::function<std::unique_ptr<ISignNetwork>(const String& localName)>;

    SignNetwork(const String& localName, Maker maker);

    void SetListener(ISignNetworkListener* listener) override;
    void SignIn(const SignAccount& account) override;
    void SignOut() override;
    void GivePassword(const std::string& password, bool keep) override;
    void TryNow() override;
    void SetPublishing(bool publish, bool withAddress) override;
    void SetSign(const String& kind, const String& title, const Property& sign) override;
    void RemoveSign() override;
    void AddContact(const String& id) override;
    void AnswerContact(const String& id, bool yes) override;
    void RemoveContact(const String& id) override;
    void RenameContact(const String& id, const String& name) override;
    void TrustCertificate(const std::string& fingerprint) override;
    [[nodiscard]] String GetOwnId() const override;

private:
    [[nodiscard]] ISignNetwork& Current();
    void GoOnline(); // Hands everything over, if the other network can be had.

    LocalSignNetwork local_;
    Maker maker_;
    std::unique_ptr<ISignNetwork> online_; // Null: not needed yet.
    ISignNetworkListener* listener_ = nullptr;
    bool publishes_ = false;
    bool withAddress_ = false;
};

// The maker of the module libkivo_signs.so: over XMPP, with passwords from the desktop's keyring.
[[nodiscard]] std::unique_ptr<ISignNetwork> LoadXmppSignNetwork(const String& localName);

// What the module exports as "MakeXmppSignNetwork". The caller owns the result.
using MakeXmppSignNetworkFunction = ISignNetwork* (*)(const String& localName);

} // namespace kivo::host
