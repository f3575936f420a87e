#include "host/sign/MakeSignNetwork.h"

#include "host/sign/LocalSignNetwork.h"

namespace kivo::host {

std::unique_ptr<ISignNetwork> MakeSignNetwork(const String& localName,
                                              std::unique_ptr<ISecretStore> /*store*/,
                                              SignAddressRule /*rule*/)
{
    return std::make_unique<LocalSignNetwork>(localName);
}

} // namespace kivo::host
