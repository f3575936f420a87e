#pragma once

#include "medialib/MediaInfo.h"

namespace kivo::tunehive {

// A record of one value.
[[nodiscard]] inline MediaInfo Record(std::int32_t key, const String& text)
{
    return {
        {key, text}
    };
}

} // namespace kivo::tunehive
