#pragma once

#include "shell/contracts/base/Export.h"
#include "shell/contracts/base/String.h"

namespace kivo::common {

// The folder of the program, ending in a separator. Set once at start. Thread: any.
[[nodiscard]] KIVO_API String GetAppPath();
KIVO_API void SetAppPath(const String& folder);

[[nodiscard]] KIVO_API bool IsFileExist(const String& path); // A file, not a folder.
[[nodiscard]] KIVO_API String
GetFileDirFromPath(const String& path); // Up to the last separator, which stays.
[[nodiscard]] KIVO_API String GetFileNameFromPath(const String& path); // Behind the last separator.

// Opens an address in the user's browser: http and https alone; anything else does nothing. `mode`
// is not used. Thread: user interface.
KIVO_API void SafeOpenWeb(const String& url, int mode);

} // namespace kivo::common
