#include "shell/contracts/common/Text.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace kivo::common {
namespace {

TEST(Text, ComparesWithoutCaseAndWithoutLocale)
{
    struct Row {
        const char* a;
        const char* b;
        int result;
    };
    constexpr Row kRows[] = {
        {"ENTRY", "entry", 0 },
        {"b",     "A",     1 },
        {"ab",    "a",     1 },
        {"",      "",      0 },
        {"_",     "A",     -1}, // '_' lies behind 'A' and before 'a'.
        {"\xE4",  "z",     1 }, // Bytes are numbers from 0 to 255.
        {"\xC4",  "\xE4",  -1},
    };
    for (const Row& row : kRows) {
        const int result = string_compare_no_case(row.a, row.b);
        EXPECT_EQ((result > 0) - (result < 0), row.result) << row.a << " and " << row.b;
    }
    EXPECT_EQ(ToLowerAscii(u"ABZ[@`ÄİК"), u"abz[@`ÄİК");
}

TEST(Text, TrimsAllWhiteSpaceOfBothEnds)
{
    EXPECT_EQ(Trim(u"\t\r\n \u0085\u00A0\u2000\u200A\u2028\u2029\u3000\uFEFFa b\u3000 "), u"a b");
    EXPECT_EQ(Trim(u" \u200B "), u"\u200B"); // No white space: it joins nothing and is no blank.
    EXPECT_EQ(Trim(u"  "), u"");
}

TEST(Text, SplitsIntoAllPieces)
{
    using Pieces = std::vector<String>;
    EXPECT_EQ(AnalyzeString(u"a:b::c:", u":"), (Pieces{u"a", u"b", u"", u"c", u""}));
    EXPECT_EQ(AnalyzeString(u"a--b-c", u"--"), (Pieces{u"a", u"b-c"}));
    EXPECT_EQ(AnalyzeString(u"", u":"), (Pieces{u""}));
    EXPECT_EQ(AnalyzeString(u"a:b", u""), (Pieces{u"a:b"}));
}

TEST(Text, ReadsNumbersAsAtoiAndClamps)
{
    struct Row {
        const char* text;
        int number;
    };
    constexpr Row kRows[] = {
        {" \t\n\v\f\r-7x",           -7             },
        {"+-5",                      0              },
        {"- 5",                      0              },
        {"",                         0              },
        {"2147483647",               2147483647     },
        {"2147483648",               2147483647     },
        {"-2147483648",              -2147483647 - 1},
        {"999999999999999999999999", 2147483647     },
    };
    for (const Row& row : kRows) {
        SCOPED_TRACE(row.text);
        EXPECT_EQ(BytesToInt(row.text), row.number);
        EXPECT_EQ(CString2Int(utf8_to_CString(row.text)), row.number);
    }
    EXPECT_EQ(CString2Int(u"１２"), 0); // Digits of ASCII alone.
    EXPECT_EQ(ToText(std::numeric_limits<int>::min()), u"-2147483648");
}

TEST(Text, PutsArgumentsInAndTakesThemAsTheyAre)
{
    EXPECT_EQ(FormatText(u"%s-%s", {u"%s", u"b"}), u"%s-b");
    EXPECT_EQ(FormatText(u"100% %d %", {u"a"}), u"100% %d %");
    EXPECT_EQ(FormatText(u"%s%s", {u"a"}), u"a%s");
}

TEST(Text, TakesANumberOnlyWhereTheFormatWantsOne)
{
    struct Row {
        const char16_t* format;
        const char16_t* text;
    };
    constexpr Row kRows[] = {
        {u"%%%d%%",    u"%7%"        },
        {u"no number", u"no number 7"},
        {u"%d and %d", u"%d and %d 7"},
        {u"%n",        u"%n 7"       },
        {u"%5d",       u"%5d 7"      },
        {u"%d %",      u"%d % 7"     },
        {u"",          u" 7"         },
    };
    for (const Row& row : kRows)
        EXPECT_EQ(FormatNumber(row.format, 7), row.text);
}

TEST(Text, RoundsToWholeNumbersAsPrintf)
{
    struct Row {
        double number;
        const char16_t* text;
    };
    constexpr double kInfinite = std::numeric_limits<double>::infinity();
    const Row kRows[] = {
        {0.4,          u"0"               },
        {1.5,          u"2"               },
        {2.5,          u"2"               },
        {-3.7,         u"-4"              },
        {1e15,         u"1000000000000000"},
        {std::nan(""), u"0"               },
        {kInfinite,    u"0"               },
    };
    for (const Row& row : kRows)
        EXPECT_EQ(FormatWhole(row.number), row.text);
    EXPECT_EQ(FormatWhole(std::numeric_limits<double>::max()).size(), 309U);
}

} // namespace
} // namespace kivo::common
