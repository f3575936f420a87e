#include "fuzz/Fuzz.h"
#include "medialib/KivoMediaHelper.h"
#include "shell/contracts/base/Property.h"
#include "shell/contracts/framework/Arrays.h"

// A playlist, read as M3U and as ASX.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t count)
{
    using namespace kivo;
    const fuzz::MemoryFile file(fuzz::AsText(bytes, count));
    const tunehive::CKivoMediaHelper& helper = tunehive::GetMediaHelperInstance();
    CStringArray paths;
    helper.ReadM3UPlaylist(file.GetPath(), paths);
    std::map<String, Property> entries;
    helper.ReadASXPlaylist(file.GetPath(), entries);
    return 0;
}
