#include "shell/base/PlainElement.h"

#include <algorithm>
#include <cstddef>
#include <cstring>

namespace kivo::tunehive {

namespace {

// More of them would make the search for doubles slow.
constexpr std::size_t kMostAttributes = 16;

bool IsBlank(char c)
{
    return c == ' ' || c == '\n' || c == '\t';
}

const char* SkipBlanks(const char* text)
{
    while (IsBlank(*text))
        ++text;
    return text;
}

bool IsLetter(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_';
}

// Empty: no name begins there.
std::string_view ReadName(const char* text)
{
    if (!IsLetter(*text))
        return {};
    const char* end = text + 1;
    while (IsLetter(*end) || (*end >= '0' && *end <= '9') || *end == '-' || *end == '.' ||
           *end == ':')
        ++end;
    return {text, static_cast<std::size_t>(end - text)};
}

// Gives what stands behind the closing quote; null for another shape.
const char* ReadAttribute(const char* text, XmlAttribute& attribute)
{
    attribute.name = ReadName(text);
    if (attribute.name.empty() || text[attribute.name.size()] != '=')
        return nullptr;
    const char* const quote = text + attribute.name.size() + 1;
    if (*quote != '"' && *quote != '\'')
        return nullptr;
    const char* const end = std::strchr(quote + 1, *quote);
    if (end == nullptr)
        return nullptr;
    attribute.value = {quote + 1, static_cast<std::size_t>(end - quote - 1)};
    return attribute.value.find('&') == std::string_view::npos ? end + 1 : nullptr;
}

} // namespace

const char*
ReadPlainElement(const char* text, std::string_view& name, std::vector<XmlAttribute>& attributes)
{
    attributes.clear();
    name = ReadName(text + 1);
    if (name.empty())
        return nullptr;
    const char* rest = text + 1 + name.size();
    while (IsBlank(*rest)) {
        rest = SkipBlanks(rest);
        if (*rest == '/')
            break;
        XmlAttribute attribute;
        rest = ReadAttribute(rest, attribute);
        const bool isDouble =
            std::any_of(attributes.begin(), attributes.end(), [&attribute](const auto& other) {
                return other.name == attribute.name;
            });
        if (rest == nullptr || isDouble || attributes.size() == kMostAttributes)
            return nullptr;
        attributes.push_back(attribute);
    }
    return rest[0] == '/' && rest[1] == '>' ? rest + 2 : nullptr;
}

} // namespace kivo::tunehive
