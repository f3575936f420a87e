#include "platform/base/Utf.h"
#include "shell/contracts/common/Text.h"

// UTF-8 in its two forms, that of files and that of paths: the one takes a surrogate's three bytes,
// the other takes none, so that each gives back exactly what it was given.
namespace kivo::common {
namespace {

constexpr char16_t kByteBase = 0xDC00; // A path byte b that isn't UTF-8 stands as U+DC00+b.

template <class OnMalformed>
String DecodeAll(std::string_view bytes, utf::Surrogates surrogates, OnMalformed onMalformed)
{
    String text;
    text.reserve(bytes.size());
    for (std::size_t i = 0; i < bytes.size();) {
        const std::size_t ascii = utf::CountAsciiBlocks(bytes, i);
        text.append(bytes.begin() + static_cast<std::ptrdiff_t>(i),
                    bytes.begin() + static_cast<std::ptrdiff_t>(i + ascii));
        i += ascii;
        if (i == bytes.size())
            break;
        const utf::Decoded decoded = utf::Decode(bytes, i, surrogates);
        if (decoded.length == 0)
            text.push_back(onMalformed(static_cast<unsigned char>(bytes[i])));
        else
            utf::AppendUtf16(text, decoded.character);
        i += decoded.length == 0 ? 1 : decoded.length;
    }
    return text;
}

// Appends the ASCII units from `position` on and says how many there were.
std::size_t AppendAscii(std::string& bytes, StringView text, std::size_t position)
{
    std::size_t end = position;
    while (end < text.size() && text[end] < 0x80)
        ++end;
    const std::size_t before = bytes.size();
    bytes.resize(before + end - position);
    for (std::size_t i = position; i < end; ++i)
        bytes[before + i - position] = static_cast<char>(text[i]);
    return end - position;
}

// Calls `onUnpaired` with the result and each surrogate that stands alone.
template <class OnUnpaired>
std::string EncodeAll(StringView text, OnUnpaired onUnpaired)
{
    std::string bytes;
    bytes.reserve(text.size() + text.size() / 2);
    for (std::size_t i = AppendAscii(bytes, text, 0); i < text.size();
         i += AppendAscii(bytes, text, i)) {
        const char16_t unit = text[i++];
        if (!utf::IsHighSurrogate(unit) && !utf::IsLowSurrogate(unit)) {
            utf::AppendUtf8(bytes, unit);
        } else if (utf::IsHighSurrogate(unit) && i < text.size() && utf::IsLowSurrogate(text[i])) {
            utf::AppendUtf8(bytes, 0x10000U + ((unit & 0x3FFU) << 10U) + (text[i] & 0x3FFU));
            ++i;
        } else {
            onUnpaired(bytes, unit);
        }
    }
    return bytes;
}

} // namespace

std::string CString_to_utf8(StringView text)
{
    std::string bytes =
        EncodeAll(text, [](std::string& result, char16_t unit) { utf::AppendUtf8(result, unit); });
    std::erase(bytes, '\0'); // Texts end at U+0000 in every file that holds them.
    return bytes;
}

String utf8_to_CString(std::string_view bytes)
{
    return DecodeAll(
        bytes, utf::Surrogates::Accept, [](unsigned char) { return utf::kReplacement; });
}

String PathToText(std::string_view bytes)
{
    return DecodeAll(bytes, utf::Surrogates::Refuse, [](unsigned char byte) {
        return static_cast<char16_t>(kByteBase + byte);
    });
}

std::string TextToPath(StringView text)
{
    return EncodeAll(text, [](std::string& bytes, char16_t unit) {
        if (unit >= kByteBase + 0x80 && unit <= kByteBase + 0xFF)
            bytes.push_back(static_cast<char>(unit - kByteBase));
        else
            utf::AppendUtf8(bytes, unit);
    });
}

String ToDisplayText(StringView text)
{
    String shown(text);
    for (std::size_t i = 0; i < shown.size(); ++i) {
        if (utf::IsHighSurrogate(shown[i]) && i + 1 < shown.size() &&
            utf::IsLowSurrogate(shown[i + 1]))
            ++i;
        else if (utf::IsHighSurrogate(shown[i]) || utf::IsLowSurrogate(shown[i]))
            shown[i] = utf::kReplacement;
    }
    return shown;
}

} // namespace kivo::common
