#include "medialib/Id3v1.h"

#include "shell/contracts/common/Text.h"
#include "tests/support/CaseName.h"

#include <gtest/gtest.h>

#include <string>

namespace kivo::tunehive {
namespace {

std::string MakeTag(const std::string& title, const std::string& comment, int genre)
{
    std::string tag(kId3v1Size, '\0');
    tag.replace(0, 3, "TAG");
    tag.replace(3, title.size(), title);
    tag.replace(33, 6, "Artist");
    tag.replace(63, 5, "Album");
    tag.replace(93, 4, "1998");
    tag.replace(97, comment.size(), comment);
    tag[127] = static_cast<char>(genre);
    return tag;
}

TEST(Id3v1, GivesEachFieldUpToItsFirstZeroByte)
{
    const auto tag = ParseId3v1(MakeTag("Title", "Comment", 17));
    ASSERT_TRUE(tag);
    EXPECT_EQ(tag->title, u"Title");
    EXPECT_EQ(tag->artist, u"Artist");
    EXPECT_EQ(tag->album, u"Album");
    EXPECT_EQ(tag->year, u"1998");
    EXPECT_EQ(tag->comment, u"Comment");
    EXPECT_EQ(tag->genre, 17);
}

TEST(Id3v1, AFieldMayFillItsWholeRoom)
{
    const std::string full(30, 'x');
    const auto tag = ParseId3v1(MakeTag(full, "", 0));
    ASSERT_TRUE(tag);
    EXPECT_EQ(tag->title, String(30, u'x'));
    EXPECT_EQ(tag->artist, u"Artist");
}

TEST(Id3v1, ATrackNumberShortensTheComment)
{
    std::string bytes = MakeTag("Title", std::string(30, 'c'), 255);
    EXPECT_EQ(ParseId3v1(bytes)->comment, String(30, u'c'));
    bytes[125] = '\0';
    bytes[126] = '\x07';
    EXPECT_EQ(ParseId3v1(bytes)->comment, String(28, u'c'));
    EXPECT_EQ(ParseId3v1(bytes)->genre, 255);
}

TEST(Id3v1, BytesOfTheUsersCodePageAreRead)
{
    const int before = common::GetLegacyCodePage();
    common::SetLegacyCodePage(936);
    EXPECT_EQ(ParseId3v1(MakeTag("\xD6\xD0\xCE\xC4\xB8\xE8\xC7\xFA", "", 0))->title,
              u"\u4E2D\u6587\u6B4C\u66F2");
    common::SetLegacyCodePage(1251);
    EXPECT_EQ(ParseId3v1(MakeTag("\xCF\xE5\xF1\xED\xFF", "", 0))->title,
              u"\u041F\u0435\u0441\u043D\u044F");
    common::SetLegacyCodePage(before);
}

struct NoTagCase {
    const char* name;
    std::string bytes;
};

class NoTagTest : public testing::TestWithParam<NoTagCase> {};

TEST_P(NoTagTest, IsNone)
{
    EXPECT_FALSE(ParseId3v1(GetParam().bytes));
}

const NoTagCase kNoTagCases[] = {
    {"Nothing",    ""  },
    {                       "OneByteTooFew", MakeTag("T",   "", 0).substr(0, 127)},
    {            "OneByteTooMany",            MakeTag("T", "", 0) + "x"},
    {"LowerCaseMark",    "tag" + MakeTag("T",        "", 0).substr(3)},
    {                           "ZeroesWithoutTag",          std::string(kId3v1Size,'\0')},
};

INSTANTIATE_TEST_SUITE_P(Id3v1,
                         NoTagTest,
                         testing::ValuesIn(kNoTagCases),
                         test::CaseName<NoTagCase>);

struct GenreCase {
    const char* name;
    int genre;
    StringView text;
};

class GenreTest : public testing::TestWithParam<GenreCase> {};

TEST_P(GenreTest, HasItsName)
{
    EXPECT_EQ(GetGenreName(GetParam().genre), GetParam().text);
}

constexpr GenreCase kGenreCases[] = {
    {"TheFirst",      0,   u"Blues"      },
    {"AMisspelling",  67,  u"Psychadelic"},
    {"AnAmpersand",   78,  u"Rock & Roll"},
    {"OfTheSequel",   80,  u"Folk"       },
    {"TheLast",       147, u"SynthPop"   },
    {"BehindTheLast", 148, u""           },
    {"NoTag",         255, u""           },
};

INSTANTIATE_TEST_SUITE_P(Id3v1,
                         GenreTest,
                         testing::ValuesIn(kGenreCases),
                         test::CaseName<GenreCase>);

} // namespace
} // namespace kivo::tunehive
