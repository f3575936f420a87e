#pragma once

#include "platform/attributes/MediaSource.h"

namespace kivo::attributes {

// Whether an MP4 file has a track of pictures, by the handlers of its tracks. Looks at the heads of
// at most 256 boxes.
[[nodiscard]] bool HasMp4Video(MediaSource& source);

} // namespace kivo::attributes
