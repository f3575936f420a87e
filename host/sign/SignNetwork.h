#pragma once

#include "host/sign/ISignNetwork.h"
#include "shell/contracts/base/Property.h"

#include <functional>
#include <memory>
#include <optional>

namespace kivo::host {

// The program's network of signs. It is local until the first sign-in: the sign shows on the user's
// own line and goes nowhere else, there are no contacts, and requests about them do nothing. The
// sign-in loads the network with contacts, so a start without an account pays nothing for it. Where
// it can't be loaded the state is Unavailable, and each sign-in tries again.
class SignNetwork : public ISignNetwork {
public:
    // The network with contacts, under the local name. Null: it can't be had.
    using Maker = std::function<std::unique_ptr<ISignNetwork>(const String& localName)>;

    explicit SignNetwork(const String& localName, Maker maker = {}); // Empty: it is always local.

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
    struct LocalSign {
        String kind;
        String title;
        Property record;
    };

    void GoOnline(); // Hands everything over, if the other network can be had.
    void TellState(SignConnection connection) const;

    String localName_;
    Maker maker_;
    std::unique_ptr<ISignNetwork> online_; // Null: not needed yet.
    ISignNetworkListener* listener_ = nullptr;
    std::optional<LocalSign> sign_; // Until the other network has it.
    bool publishes_ = false;
    bool withAddress_ = false;
};

// The maker of the module libkivo_signs.so: over XMPP, with passwords from the desktop's keyring.
[[nodiscard]] std::unique_ptr<ISignNetwork> LoadXmppSignNetwork(const String& localName);

// What the module exports as "MakeXmppSignNetwork". The caller owns the result.
using MakeXmppSignNetworkFunction = ISignNetwork* (*)(const String& localName);

} // namespace kivo::host
