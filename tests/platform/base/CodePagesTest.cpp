#include "platform/base/CodePages.h"

#include "shell/contracts/common/Text.h"

#include <gtest/gtest.h>

#include <fstream>
#include <set>
#include <sstream>
#include <string>
#include <vector>

namespace kivo {
namespace {

struct PageCase {
    int codePage = 0;
    std::string bytes;
    String text;
};

// The rows of code_pages.txt.
std::vector<PageCase> ReadPages()
{
    std::vector<PageCase> pages;
    std::ifstream file(KIVO_CODE_PAGES);
    for (std::string line; std::getline(file, line);) {
        std::istringstream row(line);
        PageCase page;
        std::string hex;
        std::string text;
        if (!(row >> page.codePage >> hex >> text))
            continue; // The comment.
        for (std::size_t i = 0; i < hex.size(); i += 2)
            page.bytes += static_cast<char>(std::stoi(hex.substr(i, 2), nullptr, 16));
        page.text = common::utf8_to_CString(text);
        pages.push_back(page);
    }
    return pages;
}

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

TEST(CodePages, EachOfTheNamedPagesReadsItsOwnSignsAndAnyOtherBytes)
{
    std::string anyBytes;
    for (int i = 0; i < 3 * 256; ++i)
        anyBytes += static_cast<char>(i * 7 + i / 256);
    std::set<int> numbers;
    for (const PageCase& page : ReadPages()) {
        SCOPED_TRACE(page.codePage);
        numbers.insert(page.codePage);
        EXPECT_EQ(common::MBCS2CString(page.bytes, page.codePage), page.text);
        EXPECT_FALSE(common::MBCS2CString(anyBytes, page.codePage).empty());
        EXPECT_TRUE(common::MBCS2CString("", page.codePage).empty());
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
        {"zh_TW",       950 },
        {"zh-TW",       950 },
        {"sr_RS@latin", 1251},
        {"ja_JP",       932 },
        {"ko",          949 },
        {"ru_RU.UTF-8", 1251},
        {"rugby",       1252},
        {"C",           1252},
        {"",            1252},
    };
    for (const Row& row : kRows)
        EXPECT_EQ(LegacyCodePageOf(row.language), row.codePage) << row.language;
}

} // namespace
} // namespace kivo
