#pragma once

#include "shell/contracts/base/String.h"

#include <optional>
#include <string>

namespace kivo::host {

// Keeps passwords for the user, in the desktop's keyring. Thread: the network's own, since
// unlocking a keyring may block on a question to the user. While it does, signs and contacts rest.
class ISecretStore {
public:
    virtual ~ISecretStore() = default;

    // Nothing: there is no keyring, it stays locked, or it has no password for the address.
    [[nodiscard]] virtual std::optional<std::string> Read(const String& address) = 0;

    // False: the password wasn't kept.
    virtual bool Write(const String& address, const std::string& password) = 0;
    virtual void Erase(const String& address) = 0;
};

} // namespace kivo::host
