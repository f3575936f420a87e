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

struct Entity {
    std::string_view name; // Behind the '&'.
    char character;
};
constexpr Entity kEntities[] = {
    {"apos;", '\''},
    {"amp;",  '&' },
    {"quot;", '"' },
    {"lt;",   '<' },
    {"gt;",   '>' },
};

// Null: some other reference, or none.
const Entity* FindEntity(std::string_view behindMark)
{
    for (const Entity& entity : kEntities)
        if (behindMark.starts_with(entity.name))
            return &entity;
    return nullptr;
}

bool HasOnlyEntities(std::string_view value)
{
    for (auto mark = value.find('&'); mark != std::string_view::npos;
         mark = value.find('&', mark + 1))
        if (FindEntity(value.substr(mark + 1)) == nullptr)
            return false;
    return true;
}

void AppendDecoded(std::string_view value, std::string& text)
{
    for (auto mark = value.find('&'); mark != std::string_view::npos; mark = value.find('&')) {
        text.append(value.substr(0, mark));
        const Entity* const entity = FindEntity(value.substr(mark + 1));
        text += entity->character;
        value.remove_prefix(mark + 1 + entity->name.size());
    }
    text.append(value);
}

// Lets the values that hold entities be views into `decoded`.
void DecodeValues(std::vector<XmlAttribute>& attributes, std::string& decoded)
{
    const auto isCoded = [](const XmlAttribute& attribute) {
        return attribute.value.find('&') != std::string_view::npos;
    };
    decoded.clear();
    std::size_t size = 0;
    for (const XmlAttribute& attribute : attributes)
        size += isCoded(attribute) ? attribute.value.size() : 0;
    if (size == 0)
        return;
    decoded.reserve(size); // From here on it stays where it is.
    for (XmlAttribute& attribute : attributes) {
        if (!isCoded(attribute))
            continue;
        const std::size_t start = decoded.size();
        AppendDecoded(attribute.value, decoded);
        attribute.value = std::string_view(decoded).substr(start);
    }
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
    return HasOnlyEntities(attribute.value) ? end + 1 : nullptr;
}

} // namespace

const char* ReadPlainElement(const char* text,
                             std::string_view& name,
                             std::vector<XmlAttribute>& attributes,
                             std::string& decoded)
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
    if (rest[0] != '/' || rest[1] != '>')
        return nullptr;
    DecodeValues(attributes, decoded);
    return rest + 2;
}

} // namespace kivo::tunehive
