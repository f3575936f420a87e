#include "platform/base/CodePages.h"

#include "shell/contracts/common/Text.h"

#include <gtest/gtest.h>

#include <set>
#include <string_view>

namespace kivo {
namespace {

using namespace std::string_view_literals; // The rows hold NULs.

struct PageCase {
    int codePage;
    std::string_view bytes;
    std::u16string_view text;
};

// A word or three signs of each page that tell it from its neighbours, found by other converters
// than ours. With two names for each of two numbers and the ten pages that nothing here reads
// these are the 141 names that item files may use.
constexpr PageCase kPages[] = {
    {37,    "\x63\x59"sv,                                 u"\u00C4\u00DF"sv                  },
    {437,   "\x84\xE1\xEA"sv,                             u"\u00E4\u00DF\u03A9"sv            },
    {500,   "\x63\x59"sv,                                 u"\u00C4\u00DF"sv                  },
    {708,   "\xC7\xD0\xE0"sv,                             u"\u0627\u0630\u0640"sv            },
    {720,   "\xEA\xA9\xA5\xA0\x9F"sv,                     u"\u0645\u0631\u062D\u0628\u0627"sv},
    {737,   "\x80\x9F\xE3\xA4\x98"sv,                     u"\u0391\u03B8\u03AE\u03BD\u03B1"sv},
    {775,   "\xEA\xD7"sv,                                 u"\u013B\u016B"sv                  },
    {850,   "\xE8\x91"sv,                                 u"\u00DE\u00E6"sv                  },
    {852,   "\x88\xBD"sv,                                 u"\u0142\u017B"sv                  },
    {855,   "\xD3\xB7\xE1"sv,                             u"\u041C\u0438\u0440"sv            },
    {857,   "\xA7\x98"sv,                                 u"\u011F\u0130"sv                  },
    {858,   "\xD5\x91"sv,                                 u"\u20AC\u00E6"sv                  },
    {860,   "\x84\x99"sv,                                 u"\u00E3\u00D5"sv                  },
    {861,   "\x8D\x8C"sv,                                 u"\u00DE\u00F0"sv                  },
    {862,   "\x99\x8C\x85\x8D"sv,                         u"\u05E9\u05DC\u05D5\u05DD"sv      },
    {863,   "\x92\x85"sv,                                 u"\u00CA\u00E0"sv                  },
    {864,   "\x9D"sv,                                     u"\uFEFB"sv                        },
    {865,   "\x9B\xAF"sv,                                 u"\u00F8\u00A4"sv                  },
    {866,   "\x8C\xA8\xE0"sv,                             u"\u041C\u0438\u0440"sv            },
    {869,   "\xA4\xE2\x9E"sv,                             u"\u0391\u03B8\u03AE"sv            },
    {870,   "\x80\x9F\xE1"sv,                             u"\u02D8\u00A4\u00F7"sv            },
    {874,   "\xCA\xC7\xD1\xCA"sv,                         u"\u0E2A\u0E27\u0E31\u0E2A"sv      },
    {875,   "\x41"sv,                                     u"\u0391"sv                        },
    {932,   "\x93\xFA\x96\x7B\x8C\xEA"sv,                 u"\u65E5\u672C\u8A9E"sv            },
    {936,   "\xC4\xE3\xBA\xC3\x96\x45"sv,                 u"\u4F60\u597D\u670E"sv            },
    {949,   "\xC7\xD1\xB1\xB9\x8C\x63"sv,                 u"\uD55C\uAD6D\uB620"sv            },
    {950,   "\xA7\x41\xA6\x6E"sv,                         u"\u4F60\u597D"sv                  },
    {1026,  "\x63\x59"sv,                                 u"\u00C4\u00DF"sv                  },
    {1047,  "\x4A\x6A\x80"sv,                             u"\u00A2\u00A6\u00D8"sv            },
    {1140,  "\x63\x59"sv,                                 u"\u00C4\u00DF"sv                  },
    {1141,  "\x4A\x5A\x6A"sv,                             u"\u00C4\u00DC\u00F6"sv            },
    {1142,  "\x5A\x5B\x6A"sv,                             u"\u20AC\u00C5\u00F8"sv            },
    {1143,  "\x4A\x5A\x5B"sv,                             u"\u00A7\u20AC\u00C5"sv            },
    {1144,  "\x4A\x5A\x6A"sv,                             u"\u00B0\u00E9\u00F2"sv            },
    {1145,  "\x6A\x7B\x80"sv,                             u"\u00F1\u00D1\u00D8"sv            },
    {1146,  "\x5B\x6A\x80"sv,                             u"\u00A3\u00A6\u00D8"sv            },
    {1147,  "\x4A\x5A\x6A"sv,                             u"\u00B0\u00A7\u00F9"sv            },
    {1148,  "\x6A\x80\x9F"sv,                             u"\u00A6\u00D8\u20AC"sv            },
    {1149,  "\x4A\x5A\x6A"sv,                             u"\u00DE\u00C6\u00A6"sv            },
    {1200,  "\xC4\x00\x60\x4F"sv,                         u"\u00C4\u4F60"sv                  },
    {1201,  "\x00\xC4\x4F\x60"sv,                         u"\u00C4\u4F60"sv                  },
    {1250,  "\xB3\xAF"sv,                                 u"\u0142\u017B"sv                  },
    {1251,  "\xCC\xE8\xF0"sv,                             u"\u041C\u0438\u0440"sv            },
    {1252,  "\x80\xE9"sv,                                 u"\u20AC\u00E9"sv                  },
    {1253,  "\xC1\xE8"sv,                                 u"\u0391\u03B8"sv                  },
    {1254,  "\xF0\xDD"sv,                                 u"\u011F\u0130"sv                  },
    {1255,  "\xF9\xEC\xE5\xED"sv,                         u"\u05E9\u05DC\u05D5\u05DD"sv      },
    {1256,  "\xE3\xD1\xCD"sv,                             u"\u0645\u0631\u062D"sv            },
    {1257,  "\xCF\xFB"sv,                                 u"\u013B\u016B"sv                  },
    {1258,  "\xD0\xF5"sv,                                 u"\u0110\u01A1"sv                  },
    {1361,  "\xD0\x65\x8A\x82\x99\xB1"sv,                 u"\uD55C\uAD6D\uB620"sv            },
    {10000, "\x8E\xB0"sv,                                 u"\u00E9\u221E"sv                  },
    {10001, "\x93\xFA\x96\x7B"sv,                         u"\u65E5\u672C"sv                  },
    {10002, "\xA7\x41\xA6\x6E"sv,                         u"\u4F60\u597D"sv                  },
    {10003, "\xC7\xD1\xB1\xB9"sv,                         u"\uD55C\uAD6D"sv                  },
    {10006, "\xB0\xF5\xDC\xEE\xE1"sv,                     u"\u0391\u03B8\u03AE\u03BD\u03B1"sv},
    {10007, "\x8C\xE8\xF0"sv,                             u"\u041C\u0438\u0440"sv            },
    {10008, "\xC4\xE3\xBA\xC3"sv,                         u"\u4F60\u597D"sv                  },
    {10017, "\x80\x9F\xC0"sv,                             u"\u0410\u042F\u0458"sv            },
    {10021, "\xCA\xC7\xD1"sv,                             u"\u0E2A\u0E27\u0E31"sv            },
    {10029, "\xB8\xFB"sv,                                 u"\u0142\u017B"sv                  },
    {10079, "\xDE\xDF"sv,                                 u"\u00DE\u00FE"sv                  },
    {10081, "\xDB\xDC"sv,                                 u"\u011F\u0130"sv                  },
    {12000, "\xC4\x00\x00\x00\x1E\xD1\x01\x00"sv,         u"\u00C4\U0001D11E"sv              },
    {12001, "\x00\x00\x00\xC4\x00\x01\xD1\x1E"sv,         u"\u00C4\U0001D11E"sv              },
    {20000, "\xA4\xA4"sv,                                 u"\uFF13"sv                        },
    {20002, "\xA7\x41\xA6\x6E"sv,                         u"\u4F60\u597D"sv                  },
    {20105, "\x41\x7E"sv,                                 u"A~"sv                            },
    {20106, "\x5B\x7B\x7C"sv,                             u"\u00C4\u00E4\u00F6"sv            },
    {20107, "\x5B\x7B\x7C"sv,                             u"\u00C4\u00E4\u00F6"sv            },
    {20108, "\x5B\x7B\x7C"sv,                             u"\u00C6\u00E6\u00F8"sv            },
    {20127, "\x41\x7E"sv,                                 u"A~"sv                            },
    {20261, "\xE0\xE1\xF0"sv,                             u"\u2126\u00C6\u0138"sv            },
    {20269, "\xD0\xE0\xE1"sv,                             u"\u2014\u2126\u00C6"sv            },
    {20273, "\x4A\xA1"sv,                                 u"\u00C4\u00DF"sv                  },
    {20277, "\x5A\x5B\x6A"sv,                             u"\u00A4\u00C5\u00F8"sv            },
    {20278, "\x4A\x5A\x5B"sv,                             u"\u00A7\u00A4\u00C5"sv            },
    {20280, "\x4A\x5A\x6A"sv,                             u"\u00B0\u00E9\u00F2"sv            },
    {20284, "\x6A\x7B\x80"sv,                             u"\u00F1\u00D1\u00D8"sv            },
    {20285, "\x5B\x6A\x80"sv,                             u"\u00A3\u00A6\u00D8"sv            },
    {20290, "\x4A\x5B\x81"sv,                             u"\u00A3\u00A5\uFF71"sv            },
    {20297, "\x4A\x5A\x6A"sv,                             u"\u00B0\u00A7\u00F9"sv            },
    {20420, "\x4A\x6A\x80"sv,                             u"\u00A2\u00A6\u0634"sv            },
    {20423, "\x7B\x7C\x80"sv,                             u"\u00A3\u00A7\u00C4"sv            },
    {20424, "\x41\x42"sv,                                 u"\u05D0\u05D1"sv                  },
    {20838, "\x4A\x6A\x80"sv,                             u"\u00A2\u00A6\u0E4F"sv            },
    {20866, "\xED\xC9\xD2"sv,                             u"\u041C\u0438\u0440"sv            },
    {20871, "\x4A\x5A\x6A"sv,                             u"\u00DE\u00C6\u00A6"sv            },
    {20880, "\x6A\x80\x9F"sv,                             u"\u00A6\u0446\u043F"sv            },
    {20905, "\x4A\x5A\x5B"sv,                             u"\u00C7\u011E\u0130"sv            },
    {20924, "\x4A\x6A\x80"sv,                             u"\u00A2\u00A6\u00D8"sv            },
    {20936, "\xC4\xE3\xBA\xC3"sv,                         u"\u4F60\u597D"sv                  },
    {20949, "\xC7\xD1\xB1\xB9"sv,                         u"\uD55C\uAD6D"sv                  },
    {21025, "\x80\x9F\xE1"sv,                             u"\u0446\u043F\u00A7"sv            },
    {21866, "\xB7\xD6\xC1\xCB"sv,                         u"\u0407\u0436\u0430\u043A"sv      },
    {28591, "\xE9\xFF"sv,                                 u"\u00E9\u00FF"sv                  },
    {28592, "\xB3\xAF"sv,                                 u"\u0142\u017B"sv                  },
    {28593, "\xB1\xD5"sv,                                 u"\u0127\u0120"sv                  },
    {28594, "\xA6\xFE"sv,                                 u"\u013B\u016B"sv                  },
    {28595, "\xBC\xD8\xE0"sv,                             u"\u041C\u0438\u0440"sv            },
    {28596, "\xE5\xD1\xCD"sv,                             u"\u0645\u0631\u062D"sv            },
    {28597, "\xC1\xE8"sv,                                 u"\u0391\u03B8"sv                  },
    {28598, "\xF9\xEC\xE5\xED"sv,                         u"\u05E9\u05DC\u05D5\u05DD"sv      },
    {28599, "\xF0\xDD"sv,                                 u"\u011F\u0130"sv                  },
    {28603, "\xCF\xFB"sv,                                 u"\u013B\u016B"sv                  },
    {28605, "\xA4\xB4"sv,                                 u"\u20AC\u017D"sv                  },
    {38598, "\xF9\xEC\xE5\xED"sv,                         u"\u05E9\u05DC\u05D5\u05DD"sv      },
    {50221, "\x1B\x24\x42\x46\x7C\x4B\x5C\x1B\x28\x42"sv, u"\u65E5\u672C"sv                  },
    {50222, "\x1B\x24\x42\x46\x7C\x4B\x5C\x1B\x28\x42"sv, u"\u65E5\u672C"sv                  },
    {50225, "\x1B\x24\x29\x43\x0E\x47\x51\x31\x39\x0F"sv, u"\uD55C\uAD6D"sv                  },
    {50227, "\x1B\x24\x29\x41\x0E\x44\x63\x3A\x43\x0F"sv, u"\u4F60\u597D"sv                  },
    {50229, "\x1B\x24\x29\x41\x0E\x44\x63\x3A\x43\x0F"sv, u"\u4F60\u597D"sv                  },
    {51932, "\xC6\xFC\xCB\xDC\xB8\xEC"sv,                 u"\u65E5\u672C\u8A9E"sv            },
    {51936, "\xC4\xE3\xBA\xC3"sv,                         u"\u4F60\u597D"sv                  },
    {51949, "\xC7\xD1\xB1\xB9"sv,                         u"\uD55C\uAD6D"sv                  },
    {52936, "\x7E\x7B\x44\x63\x3A\x43\x7E\x7D"sv,         u"\u4F60\u597D"sv                  },
    {54936, "\xC4\xE3\x81\x39\xEE\x39"sv,                 u"\u4F60\u3400"sv                  },
    {57002, "\xB3"sv,                                     u"\u0915"sv                        },
    {57003, "\xB3"sv,                                     u"\u0995"sv                        },
    {57004, "\xB3"sv,                                     u"\u0B95"sv                        },
    {57005, "\xB3"sv,                                     u"\u0C15"sv                        },
    {57006, "\xB3"sv,                                     u"\u0995"sv                        },
    {57007, "\xB3"sv,                                     u"\u0B15"sv                        },
    {57008, "\xB3"sv,                                     u"\u0C95"sv                        },
    {57009, "\xB3"sv,                                     u"\u0D15"sv                        },
    {57010, "\xB3"sv,                                     u"\u0A95"sv                        },
    {57011, "\xB3"sv,                                     u"\u0A15"sv                        },
    {65000, "\x2B\x41\x4D\x52\x50\x59\x41\x2D"sv,         u"\u00C4\u4F60"sv                  },
    {65001, "\xC3\x84\xE4\xBD\xA0"sv,                     u"\u00C4\u4F60"sv                  },
};

constexpr int kUnknownPages[] = {
    10004, 10005, 10010, 10082, 20001, 20003, 20004, 20005, 20833, 29001};

class LegacyPage {
public:
    explicit LegacyPage(int codePage) { common::SetLegacyCodePage(codePage); }
    LegacyPage(const LegacyPage&) = delete;
    LegacyPage& operator=(const LegacyPage&) = delete;
    ~LegacyPage() { common::SetLegacyCodePage(before_); }

private:
    int before_ = common::GetLegacyCodePage(); // Read before the body sets another.
};

TEST(CodePages, EachOfTheNamedPagesReadsItsOwnSigns)
{
    std::set<int> numbers;
    for (const PageCase& page : kPages) {
        SCOPED_TRACE(page.codePage);
        numbers.insert(page.codePage);
        EXPECT_EQ(common::MBCS2CString(page.bytes, page.codePage), page.text);
    }
    EXPECT_EQ(numbers.size() + std::size(kUnknownPages) + 2, 141U);
}

TEST(CodePages, TheUnknownOnesAreReadAsTheSystemsOwn)
{
    const LegacyPage legacy(1251);
    for (const int codePage : kUnknownPages) {
        SCOPED_TRACE(codePage);
        EXPECT_EQ(FindConverter(codePage).kind, ConverterKind::None);
        EXPECT_EQ(common::MBCS2CString("\xCC\xE8\xF0", codePage), u"Мир");
    }
    EXPECT_EQ(common::MBCS2CString("\xCC\xE8\xF0", -1), u"Мир");
    EXPECT_EQ(common::MBCS2CString("\xCC\xE8\xF0", 99999), u"Мир");
}

TEST(CodePages, WhatCantBeReadBecomesTheReplacementInEveryPage)
{
    EXPECT_EQ(common::MBCS2CString("a\xFF", 932), u"a\uFFFD"); // ICU's own answer is U+001A.
    EXPECT_EQ(common::MBCS2CString("a\xC4", 936), u"a\uFFFD"); // Cut off in mid-character.
    EXPECT_EQ(common::MBCS2CString("\xD0\x65\x8A", 1361), u"\uD55C\uFFFD");
    EXPECT_EQ(common::MBCS2CString("a\xFF\xFFz", 1361), u"a\uFFFD\uFFFDz");
}

TEST(CodePages, LongTextsPassTheBlocksOfEachConverter)
{
    std::string bytes;
    String text;
    for (int i = 0; i < 5000; ++i) {
        bytes += "\xD0\x65";
        text += u'\uD55C';
    }
    EXPECT_EQ(common::MBCS2CString(bytes, 1361), text);
    EXPECT_EQ(common::MBCS2CString(common::CString2MBCS(text, 54936), 54936), text);
}

TEST(CodePages, AnyBytesInAnyPageGiveAText)
{
    std::string bytes;
    for (int i = 0; i < 3 * 256; ++i)
        bytes += static_cast<char>(i * 7 + i / 256);
    for (const PageCase& page : kPages) {
        SCOPED_TRACE(page.codePage);
        EXPECT_FALSE(common::MBCS2CString(bytes, page.codePage).empty());
        EXPECT_TRUE(common::MBCS2CString("", page.codePage).empty());
    }
}

TEST(CodePages, WritingTakesThePageWhereItCanAndUtf8Elsewhere)
{
    EXPECT_EQ(common::CString2MBCS(u"Мир", 1251), "\xCC\xE8\xF0");
    EXPECT_EQ(common::CString2MBCS(u"Мир", 0), "Мир");
    EXPECT_EQ(common::CString2MBCS(u"Мир", 65001), "Мир");
    EXPECT_EQ(common::CString2MBCS(u"\uD55C", 1361), "\xED\x95\x9C"); // iconv's are only read.
}

TEST(CodePages, ZeroIsUtf8OrTheLegacyPage)
{
    struct Row {
        const char* name;
        int legacy;
        std::string_view bytes;
        std::u16string_view text;
    };
    constexpr Row kRows[] = {
        {"Utf8Wins",                     1252, "é你",        u"é你"      },
        {"ElseTheLegacyPage",            1251, "\xCC\xE8\xF0", u"Мир"     },
        {"OneBadByteDecides",            1252, "\xC3\xA9\xE9", u"Ã©é"     },
        {"SurrogatesAreNoUtf8",          1252, "\xED\xA0\x80", u"í\u00A0€"},
        {"ShortGbkThatIsUtf8ByAccident", 936,  "\xC4\xA3",     u"模"        },
        {"WithAsciiLettersItIsUtf8",     936,  "caf\xC3\xA9",  u"café"      },
        {"BeyondTheWestItIsUtf8",        936,  "你好",       u"你好"     },
        {"TheLegacyPageMustReadItWhole", 932,  "\xC3\x85",     u"Å"         },
        {"RussianHasNoSuchAccidents",    1251, "\xD0\x94",     u"Д"         },
        {"AsciiStays",                   936,  "1999 - (2)",   u"1999 - (2)" },
        {"EmptyStays",                   936,  "",             u""           },
    };
    for (const Row& row : kRows) {
        SCOPED_TRACE(row.name);
        const LegacyPage legacy(row.legacy);
        EXPECT_EQ(common::MBCS2CString(row.bytes, 0), row.text);
    }
}

TEST(CodePages, LanguagesHaveTheirLegacyPage)
{
    struct Row {
        std::string_view language;
        int codePage;
    };
    constexpr Row kRows[] = {
        {"zh_CN.UTF-8", 936 },
        {"zh",          936 },
        {"zh_TW",       950 },
        {"zh-TW",       950 },
        {"sr_RS@latin", 1251},
        {"zh_HK.UTF-8", 950 },
        {"ja_JP",       932 },
        {"ko",          949 },
        {"ru_RU.UTF-8", 1251},
        {"rugby",       1252},
        {"de_DE",       1252},
        {"C",           1252},
        {"",            1252},
    };
    for (const Row& row : kRows)
        EXPECT_EQ(LegacyCodePageOf(row.language), row.codePage) << row.language;
}

} // namespace
} // namespace kivo
