#pragma once

#include "platform/attributes/MediaSource.h"

#include <cstdint>

// Whether the comments of a file are so few and short that they can be read: each costs TagLib some
// hundred bytes of memory, and a byte of text up to ten.
namespace kivo::attributes {

// Of FLAC; `offset` is that of the first metadata block.
[[nodiscard]] bool HasSaneFlacComments(MediaSource& source, std::int64_t offset);

// Of Vorbis and Opus in Ogg; `magicBytes` stand before the vendor's length in the second packet.
[[nodiscard]] bool HasSaneOggComments(MediaSource& source, std::uint32_t magicBytes);

// Of FLAC in Ogg, a packet of which is a metadata block.
[[nodiscard]] bool HasSaneOggFlacComments(MediaSource& source);

} // namespace kivo::attributes
