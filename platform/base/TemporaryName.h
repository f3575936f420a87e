#pragma once

#include "platform/base/Descriptor.h"

#include <sys/types.h>

#include <string>
#include <string_view>

// The temporary files of the durable writer: ".NAME.XXXXXX" beside NAME. They begin with a dot and
// end in none of our extensions, so that no scan of a folder takes one for a file. Thread: any.
namespace kivo {

// Creates one for the target, readable for nobody beyond `mode` and the user's mask, and gives its
// path. No file: that failed.
[[nodiscard]] Descriptor
CreateTemporary(const std::string& target, mode_t mode, std::string& temporaryPath);

// A name of that shape whose NAME has an extension, as every file of ours has.
[[nodiscard]] bool IsTemporaryName(std::string_view name);

} // namespace kivo
