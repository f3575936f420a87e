#include "platform/base/CodePages.h"
#include "platform/base/Utf.h"
#include "shell/contracts/common/Text.h"

#include <algorithm>
#include <atomic>
#include <cstdlib>

namespace kivo::common {
namespace {

constexpr int kUtf8 = 65001;

// The variables by which a session names its language for characters, the strongest first.
int CodePageOfEnvironment()
{
    for (const char* name : {"LC_ALL", "LC_CTYPE", "LANG"}) {
        const char* value =
            std::getenv(name); // NOLINT(concurrency-mt-unsafe): read once, never set
        if (value != nullptr && *value != '\0')
            return LegacyCodePageOf(value);
    }
    return LegacyCodePageOf("");
}

std::atomic<int>& LegacyCodePage()
{
    static std::atomic<int> codePage = CodePageOfEnvironment();
    return codePage;
}

bool IsEastAsian(int codePage)
{
    return codePage == 932 || codePage == 936 || codePage == 949 || codePage == 950;
}

// One text in five of a single hanzi in GBK is also valid UTF-8, of two still one in thirty. Such
// an accident reads as letters of the West, the Near East or Greece alone; a real text of those has
// ASCII letters among them.
bool LooksLikeAccident(StringView text)
{
    return std::all_of(text.begin(), text.end(), [](char16_t unit) {
        const bool asciiLetter = (unit >= u'a' && unit <= u'z') || (unit >= u'A' && unit <= u'Z');
        return unit < 0x600 && !asciiLetter;
    });
}

bool IsAscii(std::string_view bytes)
{
    return std::none_of(bytes.begin(), bytes.end(), [](char byte) {
        return (static_cast<unsigned char>(byte) & 0x80U) != 0;
    });
}

String DecodeLegacy(std::string_view bytes)
{
    const auto text = DecodeWith(FindConverter(GetLegacyCodePage()), bytes);
    return text ? *text : utf8_to_CString(bytes);
}

String DecodeLocal(std::string_view bytes)
{
    if (!utf::IsValid(bytes))
        return DecodeLegacy(bytes);
    String text = utf8_to_CString(bytes);
    if (IsEastAsian(GetLegacyCodePage()) && !IsAscii(bytes) && LooksLikeAccident(text)) {
        String legacy = DecodeLegacy(bytes);
        if (legacy.find(utf::kReplacement) == String::npos)
            return legacy;
    }
    return text;
}

} // namespace

int GetLegacyCodePage()
{
    return LegacyCodePage().load(std::memory_order_relaxed);
}

void SetLegacyCodePage(int codePage)
{
    LegacyCodePage().store(codePage, std::memory_order_relaxed);
}

String MBCS2CString(std::string_view bytes, int codePage)
{
    if (codePage == kUtf8)
        return utf8_to_CString(bytes);
    const auto text = DecodeWith(FindConverter(codePage), bytes);
    return text ? *text : DecodeLocal(bytes);
}

std::string CString2MBCS(StringView text, int codePage)
{
    const auto bytes = EncodeWith(FindConverter(codePage), text);
    return bytes ? *bytes : CString_to_utf8(text);
}

} // namespace kivo::common
