#pragma once

#include <string>
#include <string_view>

class TiXmlDocument;
class TiXmlElement;

// The walk over our own XML files: names are found whatever their letter case.
namespace kivo::ui {

// Parses within bounds of size and nesting. False: too large, too deep, or not well-formed.
bool ParseBounded(const std::string& xml, TiXmlDocument& document);

[[nodiscard]] bool IsNamed(const TiXmlElement& element, std::string_view name);
[[nodiscard]] std::string GetAttribute(const TiXmlElement& element, std::string_view name);
[[nodiscard]] const TiXmlElement* FirstElement(const TiXmlElement& parent, std::string_view name);
[[nodiscard]] const TiXmlElement* NextElement(const TiXmlElement& element, std::string_view name);

} // namespace kivo::ui
