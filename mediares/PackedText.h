#pragma once

#include "shell/contracts/base/String.h"

#include <cstddef>
#include <functional>
#include <memory_resource>
#include <string>
#include <string_view>

namespace kivo::tunehive {

// A text that never changes, in a tenth of the room of a String object and half its characters'
// where all of them fit a byte: a group of 100,000 tracks holds 200,000 of these. Exact for every
// sequence of 16-bit units. It belongs to the PackedTexts that made it and is copied as a view is.
// Thread: user interface.
class PackedText {
public:
    PackedText() = default; // No text, which is not the same as an empty one.

    [[nodiscard]] bool IsSet() const { return block_ != nullptr; }
    [[nodiscard]] String Unpack() const;

    // As common::CString_to_utf8 makes it of the text: the packed bytes themselves where they are
    // that, else what it puts into `scratch`. Empty if it isn't set.
    [[nodiscard]] std::string_view ToUtf8(std::string& scratch) const;

    // Whether the texts are the same. Both are set.
    friend bool operator==(const PackedText& a, const PackedText& b)
    {
        return a.GetBytes() == b.GetBytes();
    }

    // All of the packed form: the same bytes for the same text, and for no other. It is set.
    [[nodiscard]] std::string_view GetBytes() const;

private:
    friend class PackedTexts;

    // A word of length and width, then the units, one byte or two each.
    std::byte* block_ = nullptr;
};

// Makes packed texts in a memory, whose end is also theirs: many are given back at once then.
class PackedTexts {
public:
    explicit PackedTexts(std::pmr::memory_resource& memory) // Outlives this.
        : memory_(memory)
    {
    }

    [[nodiscard]] PackedText Pack(StringView text);
    void Drop(PackedText text); // Which was made here and is used no more, or isn't set.

private:
    std::pmr::memory_resource& memory_;
};

struct PackedTextHash {
    std::size_t operator()(const PackedText& text) const
    {
        return std::hash<std::string_view>()(text.GetBytes());
    }
};

} // namespace kivo::tunehive
