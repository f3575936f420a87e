#include "fuzz/Fuzz.h"
#include "shell/contracts/common/Text.h"

// Bytes as text: paths and UTF-8 come back as they were; no code page fails. The first byte picks
// the page.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t count)
{
    using namespace kivo;
    if (count == 0)
        return 0;
    constexpr int kPages[] = {0, 874, 932, 936, 949, 950, 1250, 1251, 1252, 1361, 54936, 65001, 7};
    const int page = kPages[bytes[0] % std::size(kPages)];
    const std::string_view text = fuzz::AsText(bytes + 1, count - 1);

    fuzz::Require(common::TextToPath(common::PathToText(text)) == text);
    const String read = common::utf8_to_CString(text);
    const String zeroless = common::utf8_to_CString(common::CString_to_utf8(read));
    fuzz::Require(common::utf8_to_CString(common::CString_to_utf8(zeroless)) == zeroless);

    const String decoded = common::MBCS2CString(text, page);
    static_cast<void>(common::CString2MBCS(decoded, page));
    fuzz::Require(common::ToDisplayText(decoded).size() == decoded.size());
    fuzz::Require(common::Trim(decoded).size() <= decoded.size());
    static_cast<void>(common::FormatNumber(decoded, 3));
    static_cast<void>(common::FormatText(decoded, {u"a", u"b"}));
    static_cast<void>(common::CString2Int(decoded));
    return 0;
}
