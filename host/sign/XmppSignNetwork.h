#pragma once

#include "host/sign/ISecretStore.h"
#include "host/sign/ISignNetwork.h"
#include "host/sign/SignAddress.h"
#include "host/sign/SignPatience.h"

#include <memory>
#include <string>

namespace kivo::host {

// Carries signs over XMPP, as User Tune. All work is done by a thread of its own; here stands what
// it has told, and the way to it. While nobody is signed in the sign shows on the own line alone;
// no thread runs before the first SignIn. What it hears reaches the listener through the process's
// queue of posts. The destructor takes the user's sign away and signs out; it waits for that at
// most three seconds, and for a few milliseconds as a rule.
class XmppSignNetwork final : public ISignNetwork {
public:
    XmppSignNetwork(const String& localName,
                    std::unique_ptr<ISecretStore> store,
                    SignAddressRule rule,
                    const SignPatience& patience = {});
    XmppSignNetwork(const XmppSignNetwork&) = delete;
    XmppSignNetwork& operator=(const XmppSignNetwork&) = delete;
    ~XmppSignNetwork() override;

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
    struct Impl;
    std::unique_ptr<Impl> impl_;
};

} // namespace kivo::host
