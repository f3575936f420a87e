#pragma once

#include "shell/contracts/base/String.h"

#include <string>

namespace kivo {

class Property;

namespace host {

// Where and as whom to sign in. The password is asked for and kept elsewhere.
struct SignAccount {
    String address;          // "name@server".
    String server;           // A host that serves the address; empty: as the address says.
    int port = 0;            // 0: the network's own.
    std::string fingerprint; // SHA-256 of a certificate that the user trusts; empty: none.
};

enum class SignConnection {
    LocalOnly, // Nobody is signed in; the sign shows on the own line alone.
    Connecting,
    PasswordNeeded, // The keyring has none, or none could be asked; GivePassword.
    Online,
    Waiting,               // Tries again in `seconds`.
    Refused,               // The server doesn't take name or password. No further try by itself.
    UntrustedCertificate,  // `reason` and `fingerprint` tell which. No further try by itself.
    Unavailable,           // What signs in is not installed, or lacks a library.
    ServerWithoutEventing, // Online, but the server carries no signs.
};

struct SignState {
    SignConnection connection = SignConnection::LocalOnly;
    int seconds = 0;
    String reason;              // In plain words, for the user; data of a stranger.
    std::string fingerprint;    // SHA-256 in hexadecimal digits.
    String ownId;               // The own address as the server bound it.
    bool losesPassword = false; // Online: no keyring took it, so the next start asks for it.
};

enum class SignPresence { Offline, Online, Away, Busy };

struct SignContact {
    String id;   // "name@server", unique.
    String name; // What the user calls the contact; empty: nothing.
    SignPresence presence = SignPresence::Offline;
    bool isAsked = false; // The user has asked to see the contact, who hasn't answered yet.
};

// Hears the network. Every text is data of strangers, bounded and cleaned by the network.
// Thread: user interface; may come from inside a call of ISignNetwork.
class ISignNetworkListener {
public:
    virtual void OnState(const SignState& state) = 0;
    virtual void OnContact(const SignContact& contact) = 0; // A new one, or one that changed.
    virtual void OnContactGone(const String& id) = 0;
    // Somebody wants to see the user, perhaps a contact; AnswerContact.
    virtual void OnContactAsks(const String& id) = 0;
    virtual void OnRequestGone(const String& id) = 0; // Taken back, or answered elsewhere.
    virtual void OnSign(const String& id,
                        const String& kind,
                        const String& title,
                        const Property& sign) = 0; // The own id: what the user shows.
    virtual void OnSignGone(const String& id) = 0;

protected:
    ~ISignNetworkListener() = default;
};

// Carries signs between people. Thread: user interface; no call blocks.
class ISignNetwork {
public:
    virtual ~ISignNetwork() = default;

    // One listener, borrowed; null: none. It hears the state and all contacts again.
    virtual void SetListener(ISignNetworkListener* listener) = 0;

    // The password comes from the store that the network was made with. Whoever was signed in is
    // signed out first, and his contacts are gone for the listener.
    virtual void SignIn(const SignAccount& account) = 0;
    virtual void SignOut() = 0;

    // Answers PasswordNeeded, and Refused with another try. `keep` writes it to the store once the
    // server has taken it; else it is kept in memory until SignOut, and the store's is erased.
    virtual void GivePassword(const std::string& password, bool keep) = 0;

    // Waiting or refused, it tries again at once, with the password that it has.
    virtual void TryNow() = 0;

    // Whether the user's signs leave this machine at all, and whether with their addresses. Off at
    // first: nothing leaves.
    virtual void SetPublishing(bool publish, bool withAddress) = 0;

    // Never refuses: what can't be sent now goes out when it can. The last one wins.
    virtual void SetSign(const String& kind, const String& title, const Property& sign) = 0;
    virtual void RemoveSign() = 0;

    // What is asked while offline is sent once online, up to a hundred requests; another account
    // or SignOut drops them.
    virtual void AddContact(const String& id) = 0;
    virtual void AnswerContact(const String& id, bool yes) = 0;
    virtual void RemoveContact(const String& id) = 0;
    // What the user calls the contact from now on; empty: nothing. It comes back by OnContact.
    virtual void RenameContact(const String& id, const String& name) = 0;
    virtual void TrustCertificate(const std::string& fingerprint) = 0;

    // The address under which the sign is the user's own; without an account the local name.
    [[nodiscard]] virtual String GetOwnId() const = 0;
};

} // namespace host
} // namespace kivo
