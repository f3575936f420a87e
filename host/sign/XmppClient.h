#pragma once

#include "host/sign/ISecretStore.h"
#include "host/sign/ISignNetwork.h"
#include "host/sign/PublishPolicy.h"
#include "host/sign/ReconnectDelay.h"
#include "host/sign/SignAddress.h"
#include "host/sign/SignPatience.h"
#include "host/sign/TuneMapping.h"
#include "host/sign/XmppRoster.h"
#include "host/sign/XmppStream.h"

#include <chrono>
#include <optional>
#include <random>
#include <set>
#include <string>
#include <vector>

namespace kivo::host {

// One person on the network: signs in and stays so, keeps the contact list, publishes the sign,
// takes those of others. Thread: the network's; the listener is called on it.
class XmppClient final : private IXmppStreamListener {
public:
    using Time = std::chrono::steady_clock::time_point;

    static constexpr std::chrono::seconds kSteady{5}; // A stream that lasts so long was good.

    struct Parts {
        ISignNetworkListener& listener; // The references are borrowed.
        ISecretStore& store;
        SocketWatch& watch;
        SignAddressRule rule = SignAddressRule::NotThisMachine;
        SignPatience patience;
    };

    explicit XmppClient(const Parts& parts);
    XmppClient(const XmppClient&) = delete;
    XmppClient& operator=(const XmppClient&) = delete;
    ~XmppClient() = default;

    // As in ISignNetwork. Addresses in UTF-8.
    void SignIn(const SignAccount& account);
    void SignOut();
    void GivePassword(const std::string& password, bool keep);
    void TryNow();
    void SetPublishing(bool publish, bool withAddress);
    void SetSign(const Sign& sign);
    void RemoveSign();
    void AddContact(const std::string& id);
    void AnswerContact(const std::string& id, bool yes);
    void RemoveContact(const std::string& id);
    void RenameContact(const std::string& id, const std::string& name);
    void TrustCertificate(const std::string& fingerprint);

    void Work();                                      // Does what is due.
    [[nodiscard]] std::optional<Time> GetDue() const; // When Work has something next.

    [[nodiscard]] bool IsAtRest() const; // Signed out, and nothing under way.
    [[nodiscard]] XmppStream& GetStream() { return stream_; }

private:
    enum class Phase {
        Idle,
        Due, // An attempt is to begin.
        PasswordNeeded,
        Connecting,
        Arriving, // The stream is open; the first answers are awaited.
        Online,
        Waiting,
        Stopped, // Refused or untrusted, until the user acts.
        Leaving,
    };
    enum class Wish { Add, Accept, Decline, Remove, Rename };
    struct Request {
        Wish wish;
        std::string id;
        std::string name; // Of a Rename.
    };

    void OnStreamOpen(const std::string& boundAddress) override;
    void OnStanza(XmppElement stanza) override;
    void OnStreamEnd(const StreamResult& result) override;

    void Begin();
    void BeginSoon();
    void Leave();
    void Wait();
    void CheckArrival();
    void StartPublishing();
    void CheckServer();
    void KeepPassword();
    void PublishDue();
    void Publish();
    void ReconsiderSign();

    void OnIq(XmppElement iq);
    void OnAnswer(XmppElement iq);
    void OnPublishAnswer(XmppElement iq);
    void OnPresence(XmppElement presence);
    void OnAsk(const std::string& id);
    void DropAsking(const std::string& id);
    void DropAllAsking();
    [[nodiscard]] bool IsOwn(const std::string& from) const;

    void Handle(Request request);
    void Fulfil(const Request& request);
    void SendPresence(const char* type, const std::string& to);
    [[nodiscard]] std::string MakeId();
    void Tell(SignState state);
    void TellOnline();

    ISignNetworkListener& listener_;
    ISecretStore& store_;
    SocketWatch& watch_;
    SignAddressRule rule_;
    SignPatience patience_;
    XmppStream stream_;
    XmppRoster roster_;
    PublishPolicy policy_;
    ReconnectDelay delay_;
    std::minstd_rand chance_{std::random_device{}()};

    Phase phase_ = Phase::Idle;
    std::optional<SignAccount> account_;
    std::string address_; // Of the account.
    std::string own_;     // As the server bound it; before, as the account has it.
    std::string password_;
    bool isPasswordGiven_ = false; // By the user, and not yet taken by the server.
    bool keepsPassword_ = false;
    bool losesPassword_ = false; // The store didn't take it.

    std::optional<Sign> sign_;
    bool publishes_ = false;
    bool withAddress_ = false;
    Tune sent_; // Published last.
    bool isAccessMended_ = false;

    std::set<std::string> asked_;   // Whom the user has let in or asked since the sign-in.
    std::set<std::string> asking_;  // Who waits for the user's answer.
    std::vector<Request> requests_; // Until the contact list is there.

    std::optional<bool> hasEventing_; // Nothing: the server hasn't said yet.
    bool hasRoster_ = false;
    unsigned lastId_ = 0;
    std::string rosterId_;
    std::string infoId_;
    std::string ownTuneId_;
    std::string publishId_;
    std::string accessId_;
    Time openedAt_{};
    Time heardAt_{};
    std::optional<Time> askedAt_; // For a word.
    Time retryAt_{};
};

} // namespace kivo::host
