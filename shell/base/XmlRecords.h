#pragma once

#include "shell/contracts/base/String.h"

#include <functional>
#include <span>
#include <string>
#include <string_view>

// The system's own XML files all have one shape: a declaration, a root element, and below it a flat
// list of elements that hold attributes alone. They are read and written element by element, so
// that a file of 100,000 tracks never stands in memory as a tree.
//
// Names are found in any letter case, by an 8-bit compare. Values are bytes; whoever asks decodes
// them. Thread: any.
namespace kivo::tunehive {

enum class XmlResult {
    Read,    // well-formed, and the root was there
    Missing, // no such file
    Empty,   // a file of no bytes
    NoRoot,  // well-formed, without the root
    Failed,  // can't be read, isn't well-formed, or lies outside the bounds below
};

// A file stands there that holds something and did not give it. It is to be kept aside before
// another takes its place.
[[nodiscard]] constexpr bool IsUnread(XmlResult result)
{
    return result == XmlResult::NoRoot || result == XmlResult::Failed;
}

// What stood in front of the root.
struct XmlProlog {
    bool isDeclared = false; // The first node is a declaration; else the file is of the older form.
    std::string encoding;    // As it is spelt there; empty if it names none.
};

struct XmlAttribute {
    std::string_view name;
    std::string_view value;
};

// An element: its name and its attributes in the order of the file, no name twice.
struct XmlRecord {
    std::string_view name;
    std::span<const XmlAttribute> attributes;
};

using TakeXmlRecord = std::function<void(const XmlRecord&)>;

// Reads the elements below the first root of that name, in document order. `prolog` is set before
// the first call of `take`; the record and its texts are only lent. On any other result than Read
// forget what was taken. Bounds: 256 MB, 64 levels, 256 attributes an element.
[[nodiscard]] XmlResult
ReadXmlRecords(const String& path, const char* root, XmlProlog& prolog, const TakeXmlRecord& take);

// The same from bytes. Never Missing.
[[nodiscard]] XmlResult
ParseXmlRecords(std::string bytes, const char* root, XmlProlog& prolog, const TakeXmlRecord& take);

[[nodiscard]] bool IsNamed(const XmlRecord& record, std::string_view name);

// The value of the first attribute of that name; empty if there is none. Lives with the record.
[[nodiscard]] std::string_view GetAttribute(const XmlRecord& record, std::string_view name);

} // namespace kivo::tunehive
