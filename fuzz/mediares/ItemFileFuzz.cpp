#include "fuzz/Fuzz.h"
#include "mediares/ItemFile.h"
#include "mediares/MediaResGroup.h"
#include "shell/contracts/framework/Files.h"

#include <vector>

namespace {

std::vector<kivo::tunehive::MediaInfo> GetTracks(kivo::tunehive::MediaResGroup& group,
                                                 const std::vector<kivo::String>& sids)
{
    std::vector<kivo::tunehive::MediaInfo> tracks(sids.size());
    for (std::size_t i = 0; i < sids.size(); ++i)
        kivo::fuzz::Require(group.GetItem(sids[i], tracks[i]) != 0);
    return tracks;
}

} // namespace

// The file of a group: the tracks that it gave are there again, in order, after a save, and what it
// held is never lost.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t count)
{
    static const kivo::fuzz::WorkFolder folder;
    folder.Empty();
    const kivo::String path = folder.GetPath("a.kvm");
    kivo::fuzz::Require(kivo::WriteFileDurably(path, kivo::fuzz::AsText(bytes, count)) != 0);

    kivo::tunehive::MediaResGroup group(u"a", path, nullptr);
    std::vector<kivo::String> sids;
    group.Load(sids);
    const bool isOlder = folder.Has("a.kvm.older");
    kivo::fuzz::Require(isOlder || folder.Has("a.kvm"));
    const auto tracks = GetTracks(group, sids);
    group.Save(sids);

    kivo::tunehive::MediaResGroup saved(u"a", path, nullptr);
    std::vector<kivo::String> savedSids;
    saved.Load(savedSids);
    kivo::fuzz::Require(GetTracks(saved, savedSids) == tracks);
    kivo::fuzz::Require(!folder.Has("a.kvm.older"));
    return 0;
}
