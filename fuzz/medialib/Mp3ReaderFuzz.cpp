#include "fuzz/Fuzz.h"
#include "medialib/KivoMediaHelper.h"

// A file named .mp3: the walk over its frames and its ID3v1 tag.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t count)
{
    using namespace kivo;
    const fuzz::MemoryFile file(fuzz::AsText(bytes, count));
    tunehive::MediaInfo info;
    const bool isRead = tunehive::GetMediaHelperInstance().ReadMP3Info(file.GetPath(), info);
    fuzz::Require(isRead && info.size() == 14);
    return 0;
}
