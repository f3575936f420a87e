#include "mediares/ItemPathIndex.h"

#include "mediares/SIDGenerator.h"

namespace kivo::tunehive {

ItemPathIndex::ItemPathIndex(std::pmr::memory_resource& memory)
    : allocator_(&memory)
    , texts_(memory)
    , tracks_(*allocator_.new_object<Map>())
{
}

ItemPathIndex::Place ItemPathIndex::Add(std::uint64_t track, StringView path)
{
    const PackedText text = texts_.Pack(path);
    const auto [place, isNew] = tracks_.try_emplace(text, Tracks{track, nullptr});
    if (isNew)
        return place;
    texts_.Drop(text);
    Tracks& tracks = place->second;
    if (tracks.others == nullptr)
        tracks.others = allocator_.new_object<std::pmr::set<std::uint64_t>>();
    tracks.others->insert(track);
    return place;
}

void ItemPathIndex::Remove(std::uint64_t track, Place place)
{
    Tracks& tracks = place->second;
    if (tracks.first != track) {
        if (tracks.others != nullptr)
            tracks.others->erase(track);
    } else if (tracks.others == nullptr || tracks.others->empty()) {
        if (tracks.others != nullptr)
            allocator_.delete_object(tracks.others);
        const PackedText text = place->first;
        tracks_.erase(place);
        texts_.Drop(text);
    } else {
        tracks.first = tracks.others->extract(tracks.others->begin()).value();
    }
}

void ItemPathIndex::Find(StringView path, std::set<String>& sids)
{
    const PackedText text = texts_.Pack(path);
    const auto place = tracks_.find(text);
    texts_.Drop(text);
    if (place == tracks_.end())
        return;
    sids.insert(SIDGenerator::FromNumber(place->second.first));
    if (place->second.others == nullptr)
        return;
    for (const std::uint64_t track : *place->second.others)
        sids.insert(SIDGenerator::FromNumber(track));
}

} // namespace kivo::tunehive
