#pragma once

#include "mediares/PackedText.h"
#include "shell/contracts/base/String.h"

#include <cstdint>
#include <memory_resource>
#include <set>
#include <unordered_map>

namespace kivo::tunehive {

// Which tracks of a group bear a path. It keeps each path's text once, however many do. A track is
// its SID's number. Paths compare exactly. All of it stands in the memory that it is given, whose
// end is also its own: nothing is freed one by one then. Thread: user interface.
class ItemPathIndex {
    // Most paths belong to one track.
    struct Tracks {
        std::uint64_t first = 0;
        std::pmr::set<std::uint64_t>* others = nullptr;
    };
    using Map = std::pmr::unordered_map<PackedText, Tracks, PackedTextHash>;

public:
    // Where a path stands; it holds until the last track of that path is removed.
    using Place = Map::iterator;

    explicit ItemPathIndex(std::pmr::memory_resource& memory); // Outlives this.

    Place Add(std::uint64_t track, StringView path); // Enters the track.
    void Remove(std::uint64_t track, Place place);   // `place` is what Add gave for that track.

    [[nodiscard]] static const PackedText& GetPath(Place place) { return place->first; }

    // Adds the SIDs of that path to the set.
    void Find(StringView path, std::set<String>& sids);

private:
    std::pmr::polymorphic_allocator<> allocator_;
    PackedTexts texts_;
    Map& tracks_;
};

} // namespace kivo::tunehive
