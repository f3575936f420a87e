#pragma once

#include "shell/contracts/base/String.h"

#include <cstddef>
#include <optional>
#include <string_view>

namespace kivo::tunehive {

inline constexpr std::size_t kId3v1Size = 128; // The tag is the last 128 bytes of a file.

// The texts as they stand, in the system's code page, up to their first zero byte, not trimmed.
struct Id3v1Tag {
    String title;
    String artist;
    String album;
    String year;
    String comment; // 28 characters in the form with a track number, else 30.
    int genre = 255;
};

// Reads the tag from exactly kId3v1Size bytes; nothing when they aren't a tag. Thread: any.
[[nodiscard]] std::optional<Id3v1Tag> ParseId3v1(std::string_view bytes);

// The name of a genre by its number; empty beyond the 148 names.
[[nodiscard]] StringView GetGenreName(int genre);

} // namespace kivo::tunehive
