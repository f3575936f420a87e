#include "platform/ui/XmlWalk.h"

#include "shell/contracts/common/Text.h"

#include <tinyxml.h>

namespace kivo::ui {

namespace {

constexpr std::size_t kMaxBytes = std::size_t{4} << 20;
constexpr int kMaxDepth = 64;

// How deep elements nest at most, counted without a parser: TinyXML calls itself for each level.
bool IsShallow(const std::string& xml)
{
    int depth = 0;
    for (std::size_t place = xml.find('<'); place != std::string::npos;
         place = xml.find('<', place + 1)) {
        const char next = place + 1 < xml.size() ? xml[place + 1] : '\0';
        if (next == '/')
            --depth;
        else if (next != '!' && next != '?' && ++depth > kMaxDepth)
            return false;
        const std::size_t end = xml.find('>', place);
        if (end == std::string::npos)
            break;
        if (next != '/' && next != '!' && next != '?' && xml[end - 1] == '/')
            --depth;
    }
    return true;
}

} // namespace

bool ParseBounded(const std::string& xml, TiXmlDocument& document)
{
    if (xml.size() > kMaxBytes || !IsShallow(xml))
        return false;
    document.Parse(xml.c_str(), nullptr, TIXML_ENCODING_UTF8);
    return !document.Error() && document.RootElement() != nullptr;
}

bool IsNamed(const TiXmlElement& element, std::string_view name)
{
    return common::string_compare_no_case(element.Value(), name) == 0;
}

std::string GetAttribute(const TiXmlElement& element, std::string_view name)
{
    for (const TiXmlAttribute* attribute = element.FirstAttribute(); attribute != nullptr;
         attribute = attribute->Next())
        if (common::string_compare_no_case(attribute->Name(), name) == 0)
            return attribute->Value();
    return {};
}

const TiXmlElement* FirstElement(const TiXmlElement& parent, std::string_view name)
{
    const TiXmlElement* element = parent.FirstChildElement();
    while (element != nullptr && !IsNamed(*element, name))
        element = element->NextSiblingElement();
    return element;
}

const TiXmlElement* NextElement(const TiXmlElement& element, std::string_view name)
{
    const TiXmlElement* next = element.NextSiblingElement();
    while (next != nullptr && !IsNamed(*next, name))
        next = next->NextSiblingElement();
    return next;
}

} // namespace kivo::ui
