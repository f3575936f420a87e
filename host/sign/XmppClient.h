#pragma once

#include "host/sign/ISecretStore.h"
#include "host/sign/ISignNetwork.h"
#include "host/sign/PublishPolicy.h"
#include "host/sign/ReconnectDelay.h"
#include "host/sign/SignAddress.h"
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

    static constexpr std::chrono::seconds kSilence{120}; // Then the server is asked for a word,
    static constexpr std::chrono::seconds kAnswer{30};   // and has so long to give one.
    static constexpr std::chrono::seconds kArrival{30};  // For the first answers of a server.
    static constexpr std::chrono::seconds kSteady{5};    // A stream that lasts so long was good.

    // All borrowed.
    XmppClient(ISignNetworkListener& listener,
               ISecretStore& store,
               SignAddressRule rule,
               SocketWatch& watch);
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
    enum class Request { Add, Accept, Decline, Remove };

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
    [[nodiscard]] bool IsOwn(const std::string& from) const;

    void Handle(Request request, const std::string& id);
    void SendPresence(const char* type, const std::string& to);
    [[nodiscard]] std::string MakeId();
    void Tell(SignState state);

    ISignNetworkListener& listener_;
    ISecretStore& store_;
    SignAddressRule rule_;
    SocketWatch& watch_;
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

    std::optional<Sign> sign_;
    bool publishes_ = false;
    bool withAddress_ = false;
    Tune sent_; // Published last.
    bool isAccessMended_ = false;

    std::set<std::string> asked_;  // Whom the user has let in or asked since the sign-in.
    std::set<std::string> asking_; // Who waits for the user's answer.
    std::vector<std::pair<Request, std::string>> requests_; // Until the stream is open.

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
