#pragma once

#include "shell/contracts/base/String.h"

#include <string>

namespace kivo {

// What an address leads to, as far as can be said before it is opened.
enum class AddressKind {
    LocalFile,   // A regular file stands there.
    Missing,     // A local path where nothing stands.
    NotPlayable, // Refused: another scheme, or a folder, pipe, device or socket.
    Network,
};

struct Address {
    AddressKind kind = AddressKind::NotPlayable;
    std::string target; // The bytes for the core: an absolute path, or the scheme in lower case.
    bool isBroadcast = false; // mms or rtsp: waits before it plays, whatever its length.
};

// What isn't "scheme://…" is a local path. Of the schemes http, https, mms, mmsh, mmst and rtsp
// pass; the core would take others for sound generators, slices of files, and more. Looks at the
// disk once. Thread: any.
[[nodiscard]] Address ClassifyAddress(const String& url);

// For an "mms" address over http that failed: the same over its own transport. Else empty.
[[nodiscard]] std::string GetSecondTry(const std::string& target);

} // namespace kivo
