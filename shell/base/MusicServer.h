#pragma once

#include "shell/contracts/base/String.h"

namespace kivo::tunehive {

// The web server of music, as "HOST" or "HOST:PORT": links of its pages name tracks. The default
// is a setting of the build, and exists nowhere. Thread: user interface.
[[nodiscard]] const String& GetMusicServer();
void SetMusicServer(const String& hostAndPort);

} // namespace kivo::tunehive
