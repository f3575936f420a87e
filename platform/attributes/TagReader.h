#pragma once

#include "platform/attributes/AttributeRecord.h"
#include "platform/attributes/MediaSource.h"

#include <optional>

namespace kivo::attributes {

// What a file is by its first bytes; names lie.
enum class Content { Mpeg, Asf, Wave, Mp4, Ape, Flac, Ogg, WavPack, Aiff, Midi, Unknown };

struct Sniffed {
    Content content = Content::Unknown;
    std::int64_t tagBytes = 0; // Of an ID3v2 tag that stands in front.
    std::int64_t offset = 0;   // Where TagLib begins: behind that tag, unless its class reads it.
};

// `isMp3Name`: the name ends in ".mp3", which decides where the bytes say nothing.
[[nodiscard]] Sniffed Sniff(MediaSource& source, bool isMp3Name);

// Reads by TagLib's class for the content. Nothing: TagLib has no class for it, or it isn't what it
// seems.
[[nodiscard]] std::optional<AttributeRecord> ReadTags(MediaSource& source, const Sniffed& sniffed);

} // namespace kivo::attributes
