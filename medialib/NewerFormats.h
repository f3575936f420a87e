#pragma once

#include "shell/contracts/base/String.h"

#include <span>

namespace kivo::tunehive {

// A format that is younger than the three extension lists of the system, which stay as they are.
// It counts only while kivo::IsBeyond(), and only where a list has said no.
struct NewerFormat {
    StringView extension; // Lower case, without its dot.
    bool isVideo;
    int type; // A MediaFileType from 100 on.
};

// The whole table, whatever the switch says: for the types of a provider and a picker's filter.
[[nodiscard]] std::span<const NewerFormat> GetNewerFormats();

// The row of an extension without its dot, in any letter case. Null: no such row, or not beyond.
[[nodiscard]] const NewerFormat* FindNewerFormat(StringView extension);

} // namespace kivo::tunehive
