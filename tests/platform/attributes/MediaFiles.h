#pragma once

#include "shell/contracts/base/String.h"
#include "shell/contracts/control/MediaAttributes.h"

#include <cstdint>
#include <optional>
#include <string>

namespace kivo::attributes {

// Points the program at its modules, and at the code page that the files are made for.
void PrepareMediaFiles();
[[nodiscard]] String FilePath(const std::string& name);

// An attribute of an open header by the two calls that every caller makes. Nothing: not found.
[[nodiscard]] std::optional<String> TextOf(IWMHeaderInfo3* header, const char16_t* name);
[[nodiscard]] std::optional<std::int64_t> NumberOf(IWMHeaderInfo3* header, const char16_t* name);

} // namespace kivo::attributes
