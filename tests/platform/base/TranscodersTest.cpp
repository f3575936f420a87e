#include "shell/contracts/common/Text.h"

#include <gtest/gtest.h>

#include <random>

namespace kivo::common {
namespace {

struct DecodeCase {
    const char* name;
    std::string_view bytes;
    std::u16string_view file; // As the decoder of files reads it,
    std::u16string_view path; // and that of paths.
};

constexpr DecodeCase kDecode[] = {
    {"Ascii",                "abc",                u"abc",                            u"abc"               },
    {"TwoThreeAndFourBytes", "é你𝄞",          u"é你𝄞",                      u"é你𝄞"         },
    {"LongAsciiThenOther",   "0123456789abcdefé", u"0123456789abcdefé",             u"0123456789abcdefé"},
    {"ALoneTrailByte",       "a\x80z",             u"a\uFFFDz",                       u"a\xDC80z"          },
    {"ALeadWithoutATrail",   "a\xC3",              u"a\uFFFD",                        u"a\xDCC3"           },
    {"ALeadBeforeAscii",     "\xE4\xBDz",          u"\uFFFD\uFFFDz",                  u"\xDCE4\xDCBDz"     },
    {"OverlongSlash",        "\xC0\xAF",           u"\uFFFD\uFFFD",                   u"\xDCC0\xDCAF"      },
    {"OverlongInThreeBytes", "\xE0\x80\xAF",       u"\uFFFD\uFFFD\uFFFD",             u"\xDCE0\xDC80\xDCAF"},
    {"BeyondTheLastSign",
     "\xF4\x90\x80\x80",                           u"\uFFFD\uFFFD\uFFFD\uFFFD",
     u"\xDCF4\xDC90\xDC80\xDC80"                                                                           },
    {"FiveByteForm",
     "\xF8\x88\x80\x80\x80",                       u"\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD",
     u"\xDCF8\xDC88\xDC80\xDC80\xDC80"                                                                     },
    {"ASurrogateAlone",      "\xED\xB2\x80",       u"\xDC80",                         u"\xDCED\xDCB2\xDC80"},
    {"ASurrogatePair",
     "\xED\xA0\xB4\xED\xB4\x9E",                   u"\xD834\xDD1E",
     u"\xDCED\xDCA0\xDCB4\xDCED\xDCB4\xDC9E"                                                               },
    {"ByteOrderMarkStays",   "\xEF\xBB\xBF",       u"\uFEFF",                         u"\uFEFF"            },
};

TEST(Transcoders, EachDecoderReadsItsOwn)
{
    for (const DecodeCase& row : kDecode) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(utf8_to_CString(row.bytes), row.file);
        EXPECT_EQ(PathToText(row.bytes), row.path);
        EXPECT_EQ(MBCS2CString(row.bytes, 65001), row.file);
        EXPECT_EQ(TextToPath(PathToText(row.bytes)), row.bytes);
    }
}

TEST(Transcoders, APathKeepsEachByteInTheMiddleAndAtTheEnd)
{
    for (int byte = 1; byte < 256; ++byte) {
        if (byte == '/')
            continue;
        SCOPED_TRACE(byte);
        for (const char* end : {"", "z", "\x80", "é"}) {
            const std::string path = std::string("a") + static_cast<char>(byte) + end;
            EXPECT_EQ(TextToPath(PathToText(path)), path);
        }
    }
}

TEST(Transcoders, APathSurvivesTheWayThroughAFile)
{
    std::mt19937 random(1);
    for (int i = 0; i < 20000; ++i) {
        std::string path;
        for (auto length = random() % 12; length > 0; --length)
            path += static_cast<char>(random() % 255 + 1);
        const String text = PathToText(path);
        ASSERT_EQ(utf8_to_CString(CString_to_utf8(text)), text);
        ASSERT_EQ(TextToPath(utf8_to_CString(CString_to_utf8(text))), path);
    }
}

TEST(Transcoders, AnyTextSurvivesTheWayThroughAFile)
{
    std::mt19937 random(2);
    for (int i = 0; i < 20000; ++i) {
        String text;
        for (auto length = random() % 12; length > 0; --length) {
            const bool surrogate = random() % 2 == 0;
            text += static_cast<char16_t>(surrogate ? 0xD800 + random() % 0x800
                                                    : 1 + random() % 0xFFFF);
        }
        ASSERT_EQ(utf8_to_CString(CString_to_utf8(text)), text);
    }
}

TEST(Transcoders, ANulIsDroppedWhereTextsEndAtIt)
{
    EXPECT_EQ(CString_to_utf8(StringView(u"a\0b", 3)), "ab");
}

TEST(Transcoders, TheScreenGetsNoLoneSurrogate)
{
    EXPECT_EQ(ToDisplayText(u"a\xDC80z"), u"a\uFFFDz");
    EXPECT_EQ(ToDisplayText(u"\xD834"), u"\uFFFD");
    EXPECT_EQ(ToDisplayText(u"\xD834\xDD1E\xDD1E"), u"\xD834\xDD1E\uFFFD");
    EXPECT_EQ(ToDisplayText(u"\xD834\xD834\xDD1E"), u"\uFFFD\xD834\xDD1E");
}

} // namespace
} // namespace kivo::common
