#pragma once

#include "host/sign/ISecretStore.h"

#include <memory>

namespace kivo::host {

// The keyring of the desktop, through the freedesktop Secret Service.
[[nodiscard]] std::unique_ptr<ISecretStore> MakeSecretStore();

} // namespace kivo::host
