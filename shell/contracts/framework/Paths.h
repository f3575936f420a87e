#pragma once

#include "shell/contracts/base/Export.h"
#include "shell/contracts/base/String.h"

#include <initializer_list>

// Paths are native: '/' separates, every other character is ordinary. A byte that isn't UTF-8 is
// carried as U+DC00+byte and comes back as the byte. Thread: any. Each test of a file is one system
// call.
namespace kivo {

inline constexpr char16_t kSeparator = u'/';

[[nodiscard]] KIVO_API bool PathFileExistsW(const String& path);  // A file or folder stands there.
[[nodiscard]] KIVO_API bool PathIsDirectoryW(const String& path); // Links are followed.

// From the last dot behind the last separator to the end, dot included; empty if there is none.
[[nodiscard]] KIVO_API String PathFindExtensionW(const String& path);

// What stands behind the last separator; the whole path if there is none.
[[nodiscard]] KIVO_API String PathFindFileNameW(const String& path);

inline constexpr int URLIS_URL = 0;

// True for "scheme://…": a letter, then one or more letters, digits, '+', '-' or '.'. Only
// URLIS_URL is known; any other `kind` gives false.
[[nodiscard]] KIVO_API bool UrlIsW(const String& text, int kind = URLIS_URL);

// 1: made. 0: it was there already or can't be made. One level, with the user's umask.
KIVO_API int CreateDirectoryW(const String& path);

// 1: gone. 0: not there, or it can't be removed. Never a folder.
KIVO_API int DeleteFileW(const String& path);

// Composes the system's own paths: `\` in `pattern` becomes the platform's separator, each "%s" the
// next argument, which is taken as it is. "%splugin\\tunehive\\skin.xml" with "/opt/kivo/" gives
// "/opt/kivo/plugin/tunehive/skin.xml".
[[nodiscard]] KIVO_API String ComposePath(StringView pattern,
                                          std::initializer_list<StringView> arguments);

// Shows the folder in the desktop's file manager. `verb` is "explore"; others do nothing. Thread:
// user interface.
KIVO_API void ShellExecuteW(const String& verb, const String& path);

} // namespace kivo
