#include "medialib/KivoMediaHelper.h"
#include "tests/medialib/Record.h"
#include "tests/medialib/ScriptedAttributes.h"
#include "tests/support/CaseName.h"

#include <gtest/gtest.h>

namespace kivo::tunehive {
namespace {

MediaInfo Read(test::ScriptedHeader& header)
{
    MediaInfo info;
    CKivoMediaHelper().ReadWMAttributes(&header, info);
    return info;
}

TEST(WmAttributeReader, ReadsSevenAttributes)
{
    test::ScriptedHeader header;
    header.SetNumber64(u"Duration", 2'156'000'000);
    header.SetText(u"Title", u" Title ");
    header.SetText(u"Author", u"\tAuthor");
    header.SetText(u"Description", u" Description ");
    header.SetNumber32(u"Bitrate", 128'000);
    header.SetText(u"WM/Genre", u" Genre ");
    header.SetText(u"WM/AlbumTitle", u" Album ");
    header.SetText(u"Rating", u"5");
    const MediaInfo expected = {
        {kInfoTitle,   u"Title"        },
        {kInfoArtist,  u"Author"       },
        {kInfoAlbum,   u" Album "      },
        {kInfoGenre,   u" Genre "      },
        {kInfoLength,  u"216"          },
        {kInfoBitrate, u"128000"       },
        {kInfoComment, u" Description "},
    };
    EXPECT_EQ(Read(header), expected);
}

TEST(WmAttributeReader, AMissingTextIsEmptyAndAMissingNumberAbsent)
{
    test::ScriptedHeader header;
    const MediaInfo expected = {
        {kInfoTitle,   u""},
        {kInfoArtist,  u""},
        {kInfoAlbum,   u""},
        {kInfoGenre,   u""},
        {kInfoComment, u""},
    };
    EXPECT_EQ(Read(header), expected);
}

TEST(WmAttributeReader, AFailedAttributeLeavesItsKeyAsItWas)
{
    test::ScriptedHeader header;
    header.SetText(u"Title", u"Title");
    header.failures[u"Title"] = E_FAIL;
    header.failures[u"WM/Genre"] = E_FAIL;
    MediaInfo info = {
        {kInfoTitle,   u"old"},
        {kInfoComment, u"old"}
    };
    CKivoMediaHelper().ReadWMAttributes(&header, info);
    EXPECT_EQ(GetInfoText(info, kInfoTitle), u"old");
    EXPECT_EQ(GetInfoText(info, kInfoComment), u"");
    EXPECT_EQ(info.count(kInfoGenre), 0U);
}

struct DurationCase {
    const char* name;
    std::uint64_t units;
    StringView seconds;
};

class DurationTest : public testing::TestWithParam<DurationCase> {};

TEST_P(DurationTest, RoundsToNearest)
{
    test::ScriptedHeader header;
    header.SetNumber64(u"Duration", GetParam().units);
    EXPECT_EQ(GetInfoText(Read(header), kInfoLength), GetParam().seconds);
}

constexpr DurationCase kDurationCases[] = {
    {"Nothing",          0,                   u"0"            },
    {"JustBelowAHalf",   4'999'999,           u"0"            },
    {"JustAboveAHalf",   5'000'001,           u"1"            },
    {"AlmostTheNext",    2'159'999'999,       u"216"          },
    {"LargerThanSigned", 0xFFFFFFFFFFFFFFFFU, u"1844674407371"},
};

INSTANTIATE_TEST_SUITE_P(WmAttributeReader,
                         DurationTest,
                         testing::ValuesIn(kDurationCases),
                         test::CaseName<DurationCase>);

TEST(WmAttributeReader, ABitrateIsSigned)
{
    test::ScriptedHeader header;
    header.SetNumber32(u"Bitrate", -1);
    EXPECT_EQ(GetInfoText(Read(header), kInfoBitrate), u"-1");
}

TEST(WmAttributeReader, ValuesOfAnOddSizeDoNoHarm)
{
    test::ScriptedHeader header;
    header.values[u"Duration"] = {1, 2, 3};
    header.values[u"Title"] = {'T', 0, 'x'};
    header.values[u"Author"] = {'A', 0, 'b', 0};         // No terminator.
    header.values[u"WM/Genre"] = {'G', 0, 0, 0, 'x', 0}; // More behind it.
    header.values[u"Description"] = {};
    const MediaInfo info = Read(header);
    EXPECT_EQ(GetInfoText(info, kInfoLength), u"0");
    EXPECT_EQ(GetInfoText(info, kInfoTitle), u"T");
    EXPECT_EQ(GetInfoText(info, kInfoArtist), u"Ab");
    EXPECT_EQ(GetInfoText(info, kInfoGenre), u"G");
    EXPECT_EQ(info.at(kInfoComment), u"");
}

TEST(WmAttributeReader, TheFilesEditorIsAskedAndReleased)
{
    test::ScriptedAttributes attributes;
    attributes.headers[u"/a.wma"].SetText(u"Title", u"T");
    const CKivoMediaHelper helper;
    MediaInfo info;
    helper.ReadWMFInfo(u"/a.wma", info);
    EXPECT_EQ(GetInfoText(info, kInfoTitle), u"T");
    EXPECT_EQ(attributes.editors, 0);
}

TEST(WmAttributeReader, WithoutAHeaderOrAnEditorTheRecordIsUntouched)
{
    test::ScriptedAttributes attributes;
    const CKivoMediaHelper helper;
    const MediaInfo old = Record(kInfoTitle, u"old");
    MediaInfo info = old;
    helper.ReadWMFInfo(u"/missing.wma", info);
    EXPECT_EQ(info, old);
    EXPECT_EQ(attributes.editors, 0);
    attributes.hasEditor = false;
    helper.ReadWMFInfo(u"/a.wma", info);
    EXPECT_EQ(info, old);
}

} // namespace
} // namespace kivo::tunehive
