#pragma once

#include "mediares/PackedText.h"
#include "shell/contracts/base/String.h"

#include <cstdint>
#include <memory>
#include <set>
#include <unordered_map>

namespace kivo::tunehive {

// Which tracks of a group bear a path. It keeps each path's text once, however many do. A track is
// its SID's number. Paths compare exactly. Thread: user interface.
class ItemPathIndex {
    // Most paths belong to one track.
    struct Tracks {
        std::uint64_t first = 0;
        std::unique_ptr<std::set<std::uint64_t>> others;
    };
    using Map = std::unordered_map<PackedText, Tracks, PackedTextHash>;

public:
    // Where a path stands; it holds until the last track of that path is removed.
    using Place = Map::iterator;

    Place Add(std::uint64_t track, StringView path); // Enters the track.
    void Remove(std::uint64_t track, Place place);   // `place` is what Add gave for that track.
    void Clear() { tracks_.clear(); }

    [[nodiscard]] static const PackedText& GetPath(Place place) { return place->first; }

    // Adds the SIDs of that path to the set.
    void Find(StringView path, std::set<String>& sids) const;

private:
    Map tracks_;
};

} // namespace kivo::tunehive
