#include "fuzz/Fuzz.h"
#include "medialib/LibCacheFile.h"
#include "shell/contracts/framework/Files.h"

// A library file: what it gave is there again after a save, and what it held is never lost.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t count)
{
    static const kivo::fuzz::WorkFolder folder;
    folder.Empty();
    const kivo::String path = folder.GetPath("lib.mlib");
    kivo::fuzz::Require(kivo::WriteFileDurably(path, kivo::fuzz::AsText(bytes, count)) != 0);

    kivo::tunehive::CLibCacheFile file(u"lib", path);
    const bool isLoaded = file.Load();
    kivo::fuzz::Require(isLoaded || file.GetCount() == 0);
    file.Merge(u"/a.mp3",
               {
                   {kivo::tunehive::kInfoLength, u"216"}
    });
    kivo::fuzz::Require(file.Save());

    kivo::tunehive::CLibCacheFile saved(u"lib", path);
    kivo::fuzz::Require(saved.Load() && saved.GetCount() == file.GetCount());
    kivo::tunehive::MediaInfo info;
    kivo::fuzz::Require(saved.Lookup(u"/a.mp3", info) &&
                        info.at(kivo::tunehive::kInfoLength) == u"216");
    if (!isLoaded && count > 0)
        kivo::fuzz::Require(folder.Has("lib.mlib.broken-1"));
    return 0;
}
