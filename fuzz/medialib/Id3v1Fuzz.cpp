#include "fuzz/Fuzz.h"
#include "medialib/Id3v1.h"
#include "shell/contracts/common/Text.h"

// The last 128 bytes of a file, in the code page of a user who reads two-byte characters.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t count)
{
    using namespace kivo;
    constexpr int kCodePages[] = {936, 932, 949, 1251};
    const std::string_view text = fuzz::AsText(bytes, count);
    for (const int codePage : kCodePages) {
        common::SetLegacyCodePage(codePage);
        const auto tag = tunehive::ParseId3v1(text);
        fuzz::Require(tag.has_value() == (count == 128 && text.starts_with("TAG")));
        if (tag) {
            fuzz::Require(tag->title.size() <= 30 && tag->year.size() <= 4);
            fuzz::Require(tag->comment.size() <= (text[125] == '\0' ? 28U : 30U));
            static_cast<void>(tunehive::GetGenreName(tag->genre));
        }
    }
    return 0;
}
