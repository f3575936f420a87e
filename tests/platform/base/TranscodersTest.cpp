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
    {"Ascii",                "abc",                u"abc",                      u"abc"               },
    {"TwoThreeAndFourBytes", "é你𝄞",          u"é你𝄞",                u"é你𝄞"         },
    {"LongAsciiThenOther",   "0123456789abcdefé", u"0123456789abcdefé",       u"0123456789abcdefé"},
    {"ALoneTrailByte",       "a\x80z",             u"a\uFFFDz",                 u"a\xDC80z"          },
    {"ALeadWithoutATrail",   "a\xC3",              u"a\uFFFD",                  u"a\xDCC3"           },
    {"OverlongSlash",        "\xC0\xAF",           u"\uFFFD\uFFFD",             u"\xDCC0\xDCAF"      },
    {"BeyondTheLastSign",
     "\xF4\x90\x80\x80",                           u"\uFFFD\uFFFD\uFFFD\uFFFD",
     u"\xDCF4\xDC90\xDC80\xDC80"                                                                     },
    {"ASurrogateAlone",      "\xED\xB2\x80",       u"\xDC80",                   u"\xDCED\xDCB2\xDC80"},
    {"ASurrogatePair",
     "\xED\xA0\xB4\xED\xB4\x9E",                   u"\xD834\xDD1E",
     u"\xDCED\xDCA0\xDCB4\xDCED\xDCB4\xDC9E"                                                         },
    {"ByteOrderMarkStays",   "\xEF\xBB\xBF",       u"\uFEFF",                   u"\uFEFF"            },
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

TEST(Transcoders, AnyPathAndAnyTextSurviveTheWayThroughAFile)
{
    std::mt19937 random(1);
    for (int i = 0; i < 20000; ++i) {
        std::string path;
        String text;
        for (auto length = random() % 12; length > 0; --length) {
            const bool surrogate = random() % 2 == 0;
            path += static_cast<char>(random() % 255 + 1);
            text += static_cast<char16_t>(surrogate ? 0xD800 + random() % 0x800
                                                    : 1 + random() % 0xFFFF);
        }
        ASSERT_EQ(TextToPath(utf8_to_CString(CString_to_utf8(PathToText(path)))), path);
        ASSERT_EQ(utf8_to_CString(CString_to_utf8(text)), text);
    }
    EXPECT_EQ(CString_to_utf8(StringView(u"a\0b", 3)), "ab"); // Files' texts end at a NUL.
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
