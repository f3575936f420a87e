#pragma once

#include "shell/base/XmlRecords.h"

#include <string>
#include <string_view>
#include <vector>

namespace kivo::tunehive {

// Reads an element of the plainest shape, as nearly all of a library file are: no content, ASCII
// names, quoted values without a reference by number. Its texts are views into `text`, which begins
// with '<' and ends in a zero byte, or into `decoded`, which is replaced. Gives what stands behind
// the element; null for every other shape, sound or not, which is then TinyXML's to read. What it
// does read it reads as TinyXML would, many times faster.
[[nodiscard]] const char* ReadPlainElement(const char* text,
                                           std::string_view& name,
                                           std::vector<XmlAttribute>& attributes,
                                           std::string& decoded);

} // namespace kivo::tunehive
