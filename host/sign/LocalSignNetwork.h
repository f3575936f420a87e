#pragma once

#include "host/sign/ISignNetwork.h"
#include "shell/contracts/base/Property.h"

#include <optional>

namespace kivo::host {

// Nobody is signed in: the sign shows on the user's own line and goes nowhere else. There are no
// contacts, and requests about them do nothing.
class LocalSignNetwork : public ISignNetwork {
public:
    struct Sign {
        String kind;
        String title;
        Property record;
    };

    explicit LocalSignNetwork(const String& ownId); // The local name.

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

    [[nodiscard]] const std::optional<Sign>& GetSign() const { return sign_; } // Nothing: none.

private:
    String ownId_;
    ISignNetworkListener* listener_ = nullptr;
    std::optional<Sign> sign_;
};

} // namespace kivo::host
