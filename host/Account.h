#pragma once

#include "host/sign/ISignNetwork.h"
#include "shell/contracts/base/String.h"

namespace kivo::host {

class HostSettings;

// The user's account with the network of signs, as the settings keep it: where to sign in, and what
// of the user's signs may leave. The password is kept elsewhere. Thread: user interface.
class Account {
public:
    explicit Account(HostSettings& settings); // Borrowed.

    // Whether the user wants to be signed in. An account that is off keeps its fields.
    [[nodiscard]] bool IsOn() const;
    void SetOn(bool on);

    [[nodiscard]] SignAccount Get() const; // The address is empty where there never was one.
    void Set(const SignAccount& account);
    void SetFingerprint(const std::string& fingerprint);

    // Off until the user has said yes.
    [[nodiscard]] bool IsPublishing() const;
    void SetPublishing(bool publish);
    [[nodiscard]] bool IsTitleOnly() const; // Signs go without their addresses.
    void SetTitleOnly(bool titleOnly);

private:
    HostSettings& settings_;
};

// Whether it is the name or number of a server, without a port.
[[nodiscard]] bool IsServerName(StringView text);

// The part of an address behind its '@'; all of it where there is none.
[[nodiscard]] String GetServerOf(StringView id);

// The part in front of the '@'.
[[nodiscard]] String GetNameOf(StringView id);

} // namespace kivo::host
