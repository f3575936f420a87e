#pragma once

#include "shell/contracts/base/String.h"

#include <taglib/tstring.h>

namespace kivo::attributes {

[[nodiscard]] String ToString(const TagLib::String& text);
[[nodiscard]] TagLib::String ToTagString(StringView text);

// Has TagLib read bytes of no declared coding (ID3v1, "latin1" ID3v2, RIFF INFO) as code page 0.
// Once, before any thread reads.
void InstallTextHandlers();

} // namespace kivo::attributes
