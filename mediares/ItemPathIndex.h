#pragma once

#include "mediares/PackedText.h"
#include "shell/contracts/base/String.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <set>

namespace kivo::tunehive {

// Which tracks of a group bear a path. It keeps each path's text once, however many do. A track is
// its SID's number. Paths compare exactly. Thread: user interface.
class ItemPathIndex {
public:
    // Enters the track; the text lives until the last track of that path is removed.
    const PackedText* Add(std::uint64_t track, StringView path);

    // `path` is what Add gave for that track.
    void Remove(std::uint64_t track, const PackedText* path);
    void Clear() { tracks_.clear(); }

    // Adds the SIDs of that path to the set.
    void Find(StringView path, std::set<String>& sids) const;

private:
    // Most paths belong to one track.
    struct Tracks {
        std::uint64_t first = 0;
        std::unique_ptr<std::set<std::uint64_t>> others;
    };

    std::map<PackedText, Tracks, PackedTextLess> tracks_;
};

} // namespace kivo::tunehive
