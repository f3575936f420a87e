#pragma once

#include "shell/contracts/base/String.h"

#include <cstddef>

namespace kivo::host {

inline constexpr std::size_t kLongestSignText = 512; // Units of String.
inline constexpr std::size_t kLongestContactName = 128;

// A stranger's text for one line: controls, marks that turn the direction of writing, and half
// characters gone, runs of white space one blank, at most `longest` units.
[[nodiscard]] String CleanSignText(StringView text, std::size_t longest = kLongestSignText);

// "name@server" of what a user typed or a server sent: trimmed, without a resource, ASCII letters
// small. Empty: it is no such address.
[[nodiscard]] String NormalizeSignId(StringView text);

} // namespace kivo::host
