#include "fuzz/Fuzz.h"
#include "shell/contracts/common/Text.h"

// Bytes as text: paths and UTF-8 come back as they were; no code page fails. The first byte picks
// the page.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t count)
{
    if (count == 0)
        return 0;
    constexpr int kPages[] = {0, 874, 932, 936, 949, 950, 1250, 1251, 1252, 1361, 54936, 65001, 7};
    const int page = kPages[bytes[0] % std::size(kPages)];
    const std::string_view text = kivo::fuzz::AsText(bytes + 1, count - 1);

    kivo::fuzz::Require(kivo::common::TextToPath(kivo::common::PathToText(text)) == text);
    const kivo::String read = kivo::common::utf8_to_CString(text);
    const kivo::String zeroless =
        kivo::common::utf8_to_CString(kivo::common::CString_to_utf8(read));
    kivo::fuzz::Require(kivo::common::utf8_to_CString(kivo::common::CString_to_utf8(zeroless)) ==
                        zeroless);

    const kivo::String decoded = kivo::common::MBCS2CString(text, page);
    static_cast<void>(kivo::common::CString2MBCS(decoded, page));
    kivo::fuzz::Require(kivo::common::ToDisplayText(decoded).size() == decoded.size());
    kivo::fuzz::Require(kivo::common::Trim(decoded).size() <= decoded.size());
    static_cast<void>(kivo::common::FormatNumber(decoded, 3));
    static_cast<void>(kivo::common::FormatText(decoded, {u"a", u"b"}));
    static_cast<void>(kivo::common::CString2Int(decoded));
    return 0;
}
