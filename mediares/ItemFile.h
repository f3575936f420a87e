#pragma once

#include "shell/base/XmlRecords.h"
#include "shell/contracts/base/String.h"

#include <cstdint>
#include <functional>
#include <string_view>

// The file of a group: its tracks in order, each with path and name. Thread: user interface.
namespace kivo::tunehive {

// The keys of a stored track record, beside which a record may hold others in memory.
enum ItemKey : std::int32_t {
    kItemPath = 0,
    kItemName = 1, // May be empty.
};

using TakeItem = std::function<void(const String& path, const String& name)>;

// Texts in UTF-8, as common::CString_to_utf8 makes them.
using WriteItem = std::function<void(std::string_view path, std::string_view name)>;
using GiveItems = std::function<void(const WriteItem&)>;

// Hands each track over, in the order of the file. On any other result than Read forget them. A
// file of the older form is set aside once it was read, unless `keepsOlder`.
[[nodiscard]] XmlResult ReadItemFile(const String& path, const TakeItem& take, bool keepsOlder);

// Writes the tracks that `give` hands to its argument, all or nothing. 1: done, and an older form
// that was set aside is gone; 0: the old file stands.
int WriteItemFile(const String& path, const GiveItems& give);

int CreateFileIfAbsent(const String& path); // An empty one. 1: it is there. 0: that failed.
int DeleteGroupFile(const String& path); // With its older form. 1: gone. 0: it wasn't there, or is.

} // namespace kivo::tunehive
