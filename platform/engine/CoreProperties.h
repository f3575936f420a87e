#pragma once

#include <cstdint>

namespace kivo {

// What the core tells of by itself, and what it is asked for now and then; the values are the
// numbers that come back with the answer.
enum class CoreProperty : std::uint64_t {
    None,
    CachePaused,
    Buffering,
    Width,
    Height,
    Title,
    Metadata,
    Output,
    EndReached,    // Of gapless playing: the last of the sound is on its way.
    Position,      // Asked for: it changes fourteen times a second, and each would wake us.
    Bitrate,       // Asked for, also a number that hardly stands still.
    AudioPosition, // Asked for.
    CachePosition, // Asked for.
};

struct CorePropertyName {
    CoreProperty id;
    const char* name;
};

inline constexpr CorePropertyName kObserved[] = {
    {CoreProperty::CachePaused, "paused-for-cache"     },
    {CoreProperty::Buffering,   "cache-buffering-state"},
    {CoreProperty::Width,       "dwidth"               },
    {CoreProperty::Height,      "dheight"              },
    {CoreProperty::Title,       "media-title"          },
    {CoreProperty::Metadata,    "metadata"             },
    {CoreProperty::Output,      "current-ao"           },
};

} // namespace kivo
