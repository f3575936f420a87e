#pragma once

#include "shell/contracts/base/String.h"

#include <cstdint>
#include <map>

namespace kivo::tunehive {

// What is known of a track, as text under numbered keys; an absent key is an unknown value. Copied
// by value wherever it passes. As a metadata record its keys are those of MediaInfoKey; a group's
// stored track record is the same type with two keys of its own, and the two are never mixed.
using MediaInfo = std::map<std::int32_t, String>;

// The keys of a metadata record. All values are text, numbers in decimal.
enum MediaInfoKey : std::int32_t {
    kInfoTitle = 0,
    kInfoArtist = 1,
    kInfoAlbum = 2,
    kInfoGenre = 3,
    kInfoLength = 4,  // Whole seconds.
    kInfoBitrate = 5, // Bits per second; from the MP3 reader kilobits per second.
    kInfoComment = 6,
    kInfoChannelMode = 7,
    kInfoEmphasis = 8,
    kInfoHasCrc = 9,  // "1" or "0": the protection bit as it stands in the frame header.
    kInfoIsCopy = 10, // "1" or "0".
    kInfoMpegVersion = 11,
    kInfoSampleRate = 12, // Hertz.
    kInfoYear = 13,
    kInfoUrl = 14, // No reader fills it.
};

inline constexpr std::int32_t kMediaInfoKeyCount = 15;

// The value of a key; empty when the record doesn't hold it.
[[nodiscard]] inline String GetInfoText(const MediaInfo& info, std::int32_t key)
{
    const auto found = info.find(key);
    return found != info.end() ? found->second : String();
}

} // namespace kivo::tunehive
