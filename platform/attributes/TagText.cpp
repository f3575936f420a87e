#include "platform/attributes/TagText.h"

#include "shell/contracts/common/Text.h"

#include <taglib/id3v1tag.h>
#include <taglib/id3v2tag.h>
#include <taglib/infotag.h>

#include <algorithm>
#include <string>
#include <string_view>

namespace kivo::attributes {

namespace {

// More than an attribute's 16-bit length can tell.
constexpr std::size_t kLongestText = 32 * 1024;

TagLib::String Decode(const TagLib::ByteVector& data, bool cutsBlanks)
{
    std::string_view bytes(data.data(), data.size());
    bytes = bytes.substr(0, std::min(bytes.find('\0'), bytes.size()));
    if (cutsBlanks) {
        while (!bytes.empty() && bytes.back() == ' ')
            bytes.remove_suffix(1);
    }
    return ToTagString(common::MBCS2CString(bytes, 0));
}

class Id3v1Text : public TagLib::ID3v1::StringHandler {
public:
    TagLib::String parse(const TagLib::ByteVector& data) const override
    {
        return Decode(data, /*cutsBlanks=*/true); // Fields of ID3v1 are often padded with blanks.
    }
};

class Id3v2Text : public TagLib::ID3v2::Latin1StringHandler {
public:
    TagLib::String parse(const TagLib::ByteVector& data) const override
    {
        return Decode(data, /*cutsBlanks=*/false);
    }
};

class InfoText : public TagLib::RIFF::Info::StringHandler {
public:
    TagLib::String parse(const TagLib::ByteVector& data) const override
    {
        return Decode(data, /*cutsBlanks=*/false);
    }
};

} // namespace

String ToString(const TagLib::String& text)
{
    // TagLib holds UTF-16 units in wide characters; a whole code point is met only if that ever
    // changes.
    String result;
    result.reserve(std::min<std::size_t>(text.size(), kLongestText));
    for (const wchar_t wide : text) {
        if (result.size() >= kLongestText)
            break;
        const auto unit = static_cast<char32_t>(wide);
        if (unit == 0)
            break;
        if (unit > 0xFFFF && unit <= 0x10FFFF) {
            result += static_cast<char16_t>(0xD7C0 + (unit >> 10));
            result += static_cast<char16_t>(0xDC00 + (unit & 0x3FF));
        } else {
            result += static_cast<char16_t>(unit);
        }
    }
    return result;
}

TagLib::String ToTagString(StringView text)
{
    return {std::wstring(text.begin(), text.end())};
}

void InstallTextHandlers()
{
    // Never destroyed: libtag keeps the pointers as long as the process lives.
    static const auto* const id3v1 = new Id3v1Text;
    static const auto* const id3v2 = new Id3v2Text;
    static const auto* const info = new InfoText;
    TagLib::ID3v1::Tag::setStringHandler(id3v1);
    TagLib::ID3v2::Tag::setLatin1StringHandler(id3v2);
    TagLib::RIFF::Info::Tag::setStringHandler(info);
}

} // namespace kivo::attributes
