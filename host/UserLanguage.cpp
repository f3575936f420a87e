#include "host/UserLanguage.h"

#include <algorithm>
#include <array>
#include <cstdlib>

namespace kivo::host {

namespace {

std::string GetVariable(const char* name)
{
    // NOLINTNEXTLINE(concurrency-mt-unsafe): read before the first thread starts
    const char* const value = std::getenv(name);
    return value != nullptr ? value : "";
}

void AddOnce(std::vector<std::string>& names, std::string_view name)
{
    if (!name.empty() && std::find(names.begin(), names.end(), name) == names.end())
        names.emplace_back(name);
}

bool IsPlainEnglish(std::string_view name)
{
    return name == "C" || name == "POSIX";
}

// The name becomes part of a path.
bool IsLanguageName(std::string_view name)
{
    return std::all_of(name.begin(), name.end(), [](char c) {
        return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_';
    });
}

} // namespace

std::vector<std::string> GetLanguages(std::string_view locale)
{
    std::vector<std::string> names;
    while (!locale.empty()) {
        const std::size_t end = std::min(locale.find(':'), locale.size());
        std::string_view name = locale.substr(0, end);
        locale.remove_prefix(std::min(end + 1, locale.size()));
        name = name.substr(0, name.find_first_of(".@"));
        if (IsPlainEnglish(name))
            name = "en";
        if (!IsLanguageName(name))
            continue;
        AddOnce(names, name);
        AddOnce(names, name.substr(0, name.find('_')));
    }
    AddOnce(names, "en");
    return names;
}

std::string GetEnvironmentLocale()
{
    constexpr std::array kVariables{"LC_ALL", "LC_MESSAGES", "LANG"};
    std::string locale;
    for (const char* const variable : kVariables) {
        locale = GetVariable(variable);
        if (!locale.empty())
            break;
    }
    const std::string_view name = std::string_view(locale).substr(0, locale.find('.'));
    if (locale.empty() || IsPlainEnglish(name))
        return "C";
    const std::string preferred = GetVariable("LANGUAGE");
    return preferred.empty() ? locale : preferred + ":" + locale;
}

} // namespace kivo::host
