#pragma once

#include "platform/attributes/MediaSource.h"

#include <cstddef>
#include <cstdint>

// Whether the comments of a file are few enough to be read: one costs TagLib some hundred bytes of
// memory, however short it is.
namespace kivo::attributes {

// Of FLAC; `offset` is that of the first metadata block.
[[nodiscard]] bool HasSaneFlacComments(MediaSource& source, std::int64_t offset);

// Of an Ogg stream; `magicBytes` stand before the vendor's length in its second packet.
[[nodiscard]] bool HasSaneOggComments(MediaSource& source, std::size_t magicBytes);

} // namespace kivo::attributes
