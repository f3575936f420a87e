#pragma once

#include <mpv/client.h>

#include <string>

namespace kivo {

// What the container says before any packet is read: the only moment at which a length is the
// container's own and not what was read so far.
struct MediaFacts {
    double duration = 0; // Seconds; 0: it says none.
    bool seekable = false;
    bool partiallySeekable = false; // Only inside what the cache holds.
    bool hasAudio = false;
    bool hasVideo = false; // A moving picture; cover art and stills are none.
    int width = 0;         // The container's picture size; 0 without a moving picture.
    int height = 0;
    double frameSeconds = 0; // One picture's time; 0: it doesn't say.
    int rate = 0;            // Of the first sound track; 0: it doesn't say.
    int channels = 0;
    std::string channelLayout; // By the core's name.
    double fileSize = 0;       // Bytes; a server may claim any number.
    std::string fileFormat;
};

// Reads them from a core that waits in its hook.
[[nodiscard]] MediaFacts ReadMediaFacts(mpv_handle* core);

// The length to tell. A listener ends a track by it, so a guess would cut music off: from the
// network it counts only where the whole can be reached, 0 otherwise; a file without one answers
// 0.4, which is above nothing and below the second from which ends are counted.
[[nodiscard]] double GetTellableLength(const MediaFacts& facts, bool isNetwork);

// The text under the key, whatever the case of its letters; empty without it. `metadata` is a map.
[[nodiscard]] std::string FindTag(const mpv_node& metadata, const char* key);

} // namespace kivo
