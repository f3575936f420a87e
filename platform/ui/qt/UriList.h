#pragma once

#include "shell/contracts/base/Export.h"
#include "shell/contracts/framework/Arrays.h"

#include <string_view>

namespace kivo::ui::qt {

// The paths and addresses of a "text/uri-list", from its raw bytes: percent-decoded paths of
// "file:///…" and "file://localhost/…", byte for byte; http, https, mms, mmsh, mmst and rtsp
// addresses as they stand. Comment lines, other schemes and other hosts are passed over.
[[nodiscard]] KIVO_API CStringArray ReadUriList(std::string_view bytes);

} // namespace kivo::ui::qt
