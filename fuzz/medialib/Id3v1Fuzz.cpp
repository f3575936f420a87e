#include "fuzz/Fuzz.h"
#include "medialib/Id3v1.h"
#include "shell/contracts/common/Text.h"

// The last 128 bytes of a file, in the code page of a user who reads two-byte characters.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t count)
{
    constexpr int kCodePages[] = {936, 932, 949, 1251};
    const std::string_view text = kivo::fuzz::AsText(bytes, count);
    for (const int codePage : kCodePages) {
        kivo::common::SetLegacyCodePage(codePage);
        const auto tag = kivo::tunehive::ParseId3v1(text);
        kivo::fuzz::Require(tag.has_value() == (count == 128 && text.starts_with("TAG")));
        if (tag) {
            kivo::fuzz::Require(tag->title.size() <= 30 && tag->year.size() <= 4);
            kivo::fuzz::Require(tag->comment.size() <= (text[125] == '\0' ? 28U : 30U));
            static_cast<void>(kivo::tunehive::GetGenreName(tag->genre));
        }
    }
    return 0;
}
