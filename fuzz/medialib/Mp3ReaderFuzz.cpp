#include "fuzz/Fuzz.h"
#include "medialib/KivoMediaHelper.h"
#include "tests/medialib/LiteralSearch.h"

// A file named .mp3: the walk over its frames, against the search as it is written down, and its
// ID3v1 tag.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t count)
{
    using namespace kivo;
    const std::string_view text = fuzz::AsText(bytes, count);
    const fuzz::MemoryFile memory(text);
    const tunehive::CKivoMediaHelper& helper = tunehive::GetMediaHelperInstance();
    tunehive::MediaInfo info;
    fuzz::Require(helper.ReadMP3Info(memory.GetPath(), info) && info.size() == 14);

    CBinaryFile file;
    fuzz::Require(file.Open(memory.GetPath()));
    tunehive::CFileWindow window(file);
    const auto buffered = tunehive::WalkFrames([&](std::uint32_t& header, int skip) {
        return helper.FindFrameHeader(window, header, skip);
    });
    tunehive::LiteralSearch literal(text);
    const auto expected = tunehive::WalkFrames(
        [&](std::uint32_t& header, int skip) { return literal.Find(header, skip); });
    fuzz::Require(buffered == expected);
    return 0;
}
