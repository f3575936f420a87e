#pragma once

#include "host/sign/ISecretStore.h"
#include "host/sign/ISignNetwork.h"
#include "host/sign/SignAddress.h"

#include <memory>

namespace kivo::host {

// The network of signs: local under `localName` until SignIn, from then on with the contacts of
// that account. What it hears reaches the listener through the process's queue of posts; no thread
// runs before the first SignIn. The destructor takes the user's sign away and signs out; it waits
// for that at most three seconds, and for a few milliseconds as a rule.
[[nodiscard]] std::unique_ptr<ISignNetwork>
MakeSignNetwork(const String& localName,
                std::unique_ptr<ISecretStore> store,
                SignAddressRule rule = SignAddressRule::NotThisMachine);

} // namespace kivo::host
