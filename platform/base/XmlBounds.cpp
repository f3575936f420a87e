#include "shell/contracts/common/XmlBounds.h"

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace kivo::common {
namespace {

constexpr int kMaxDepth = 64;
constexpr int kMaxAttributes = 256;

bool StartsName(char c)
{
    const auto byte = static_cast<unsigned char>(c);
    return byte >= 127 || (byte >= 'A' && byte <= 'Z') || (byte >= 'a' && byte <= 'z') ||
           byte == '_';
}

struct StartTag {
    std::size_t end = std::string_view::npos; // of its '>'
    int attributes = 0;
    bool isClosed = false;
};

StartTag ReadStartTag(std::string_view text, std::size_t at)
{
    StartTag tag;
    for (; at < text.size(); ++at) {
        const char c = text[at];
        if (c == '"' || c == '\'') {
            at = text.find(c, at + 1);
            if (at == std::string_view::npos)
                return tag;
        } else if (c == '=') {
            ++tag.attributes;
        } else if (c == '>') {
            tag.end = at;
            tag.isClosed = text[at - 1] == '/';
            return tag;
        }
    }
    return tag;
}

// How many bytes TinyXML takes for the character that begins with this one.
std::size_t SequenceLength(unsigned char lead)
{
    if (lead >= 0xF0 && lead <= 0xF4)
        return 4;
    if (lead >= 0xE0 && lead <= 0xEF)
        return 3;
    return lead >= 0xC2 && lead <= 0xDF ? 2 : 1;
}

// Behind the whole words of ASCII that begin at `at`: most of an ordinary file.
std::size_t SkipAscii(std::string_view bytes, std::size_t at)
{
    constexpr std::uint64_t kHighBits = 0x8080808080808080U;
    std::uint64_t word = 0;
    for (; bytes.size() - at >= sizeof word; at += sizeof word) {
        std::memcpy(&word, bytes.data() + at, sizeof word);
        if ((word & kHighBits) != 0)
            break;
    }
    return at;
}

// Behind what begins at `at` and isn't an element; npos: the text ends in it.
std::size_t SkipOther(std::string_view text, std::size_t at)
{
    const std::string_view rest = text.substr(at);
    std::string_view end = ">";
    if (rest.starts_with("<!--"))
        end = "-->";
    else if (rest.starts_with("<![CDATA["))
        end = "]]>";
    return text.find(end, at);
}

} // namespace

bool IsInsideXmlBounds(std::string_view text)
{
    int depth = 0;
    for (std::size_t at = text.find('<'); at != std::string_view::npos; at = text.find('<', at)) {
        const char next = at + 1 < text.size() ? text[at + 1] : '\0';
        if (StartsName(next)) {
            const StartTag tag = ReadStartTag(text, at + 1);
            if (tag.attributes > kMaxAttributes || depth >= kMaxDepth)
                return false;
            depth += tag.isClosed ? 0 : 1;
            at = tag.end;
        } else {
            // Between documents' nodes an end tag closes nothing.
            if (next == '/' && depth > 0)
                --depth;
            at = SkipOther(text, at);
        }
        if (at == std::string_view::npos)
            return true;
    }
    return true;
}

bool IsWholeUtf8(std::string_view bytes)
{
    for (std::size_t i = SkipAscii(bytes, 0); i < bytes.size(); i = SkipAscii(bytes, i)) {
        const std::size_t length = SequenceLength(static_cast<unsigned char>(bytes[i]));
        if (length > bytes.size() - i)
            return false;
        for (std::size_t k = 1; k < length; ++k)
            if ((static_cast<unsigned char>(bytes[i + k]) & 0xC0U) != 0x80U)
                return false;
        i += length;
    }
    return true;
}

} // namespace kivo::common
