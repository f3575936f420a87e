// What the program finds in the module of signs by name.

#include "host/sign/SecretStore.h"
#include "host/sign/XmppSignNetwork.h"
#include "shell/contracts/base/Export.h"

extern "C" KIVO_API kivo::host::ISignNetwork* MakeXmppSignNetwork(const kivo::String& localName)
{
    namespace host = kivo::host;
    return new host::XmppSignNetwork(
        localName, host::MakeSecretStore(), host::SignAddressRule::NotThisMachine);
}
