#pragma once

#include <string>
#include <string_view>
#include <vector>

// The user's language, as the desktop sets it. Thread: user interface, before others start.
namespace kivo::host {

// The names under which texts are looked for, the best first: "zh_TW", "zh", "en" for
// "zh_TW.UTF-8". `locale` is a name of the form language[_country][.coding][@variant], or several
// of them separated by ':'. "C" and "POSIX" are English.
[[nodiscard]] std::vector<std::string> GetLanguages(std::string_view locale);

// What the environment says, in its order of precedence: LC_ALL, LC_MESSAGES, LANG; LANGUAGE goes
// first unless that is "C".
[[nodiscard]] std::string GetEnvironmentLocale();

} // namespace kivo::host
