#include "mediares/ItemPathIndex.h"

#include "mediares/SIDGenerator.h"

namespace kivo::tunehive {

ItemPathIndex::Place ItemPathIndex::Add(std::uint64_t track, StringView path)
{
    const auto [place, isNew] = tracks_.try_emplace(PackedText(path), Tracks{track, nullptr});
    if (isNew)
        return place;
    Tracks& tracks = place->second;
    if (tracks.others == nullptr)
        tracks.others = std::make_unique<std::set<std::uint64_t>>();
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
        tracks_.erase(place);
    } else {
        tracks.first = tracks.others->extract(tracks.others->begin()).value();
    }
}

void ItemPathIndex::Find(StringView path, std::set<String>& sids) const
{
    const auto place = tracks_.find(PackedText(path));
    if (place == tracks_.end())
        return;
    sids.insert(SIDGenerator::FromNumber(place->second.first));
    if (place->second.others == nullptr)
        return;
    for (const std::uint64_t track : *place->second.others)
        sids.insert(SIDGenerator::FromNumber(track));
}

} // namespace kivo::tunehive
