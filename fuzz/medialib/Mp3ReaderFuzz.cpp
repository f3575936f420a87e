#include "fuzz/Fuzz.h"
#include "medialib/KivoMediaHelper.h"
#include "tests/medialib/LiteralSearch.h"

// A file named .mp3: the walk over its frames, against the search as it is written down, and its
// ID3v1 tag.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t count)
{
    const std::string_view text = kivo::fuzz::AsText(bytes, count);
    const kivo::fuzz::MemoryFile memory(text);
    const kivo::tunehive::CKivoMediaHelper& helper = kivo::tunehive::GetMediaHelperInstance();
    kivo::tunehive::MediaInfo info;
    kivo::fuzz::Require(helper.ReadMP3Info(memory.GetPath(), info) && info.size() == 14);

    kivo::CBinaryFile file;
    kivo::fuzz::Require(file.Open(memory.GetPath()));
    kivo::tunehive::CFileWindow window(file);
    const auto buffered = kivo::tunehive::WalkFrames([&](std::uint32_t& header, int skip) {
        return helper.FindFrameHeader(window, header, skip);
    });
    kivo::tunehive::LiteralSearch literal(text);
    const auto expected = kivo::tunehive::WalkFrames(
        [&](std::uint32_t& header, int skip) { return literal.Find(header, skip); });
    kivo::fuzz::Require(buffered == expected);
    return 0;
}
