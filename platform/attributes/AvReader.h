#pragma once

#include "platform/attributes/AttributeRecord.h"
#include "platform/attributes/MediaSource.h"

#include <optional>
#include <string>

namespace kivo::attributes {

// Bounds libavformat's memory for the whole process and quiets it; before its first use. Thread:
// any.
void PrepareAvformat();

// Reads by libavformat what TagLib can't: at most 16 MB and 3 seconds, from this file alone.
// `extension` without a dot helps the probe. Nothing: it isn't media.
// The module of tags hands this on to that of libavformat, which it loads for the first such file.
[[nodiscard]] std::optional<AttributeRecord> ReadByAvformat(MediaSource& source,
                                                            const std::string& extension);

} // namespace kivo::attributes
