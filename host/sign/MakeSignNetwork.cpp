#include "host/sign/MakeSignNetwork.h"

#include "host/sign/XmppSignNetwork.h"

#include <utility>

namespace kivo::host {

std::unique_ptr<ISignNetwork>
MakeSignNetwork(const String& localName, std::unique_ptr<ISecretStore> store, SignAddressRule rule)
{
    return std::make_unique<XmppSignNetwork>(localName, std::move(store), rule);
}

} // namespace kivo::host
