#pragma once

#include "shell/contracts/base/String.h"

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

namespace kivo::tunehive {

// A text that never changes, in a tenth of the room of a String object and half its characters'
// where all of them fit a byte: a group of 100,000 tracks holds 200,000 of these. Exact for every
// sequence of 16-bit units. Thread: user interface.
class PackedText {
public:
    PackedText() = default; // No text, which is not the same as an empty one.
    explicit PackedText(StringView text);

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
    struct Free {
        void operator()(std::byte* block) const; // The block of the empty text is shared.
    };

    // A word of length and width, then the units, one byte or two each.
    std::unique_ptr<std::byte[], Free> block_;
};

struct PackedTextHash {
    std::size_t operator()(const PackedText& text) const
    {
        return std::hash<std::string_view>()(text.GetBytes());
    }
};

} // namespace kivo::tunehive
