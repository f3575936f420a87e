#include "fuzz/Fuzz.h"
#include "medialib/KivoMediaHelper.h"
#include "shell/contracts/base/Property.h"
#include "shell/contracts/framework/Arrays.h"

// A playlist, read as M3U and as ASX.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t count)
{
    const kivo::fuzz::MemoryFile file(kivo::fuzz::AsText(bytes, count));
    const kivo::tunehive::CKivoMediaHelper& helper = kivo::tunehive::GetMediaHelperInstance();
    kivo::CStringArray paths;
    helper.ReadM3UPlaylist(file.GetPath(), paths);
    std::map<kivo::String, kivo::Property> entries;
    helper.ReadASXPlaylist(file.GetPath(), entries);
    return 0;
}
