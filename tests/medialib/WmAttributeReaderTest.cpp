#include "medialib/KivoMediaHelper.h"
#include "tests/medialib/Record.h"
#include "tests/medialib/ScriptedAttributes.h"

#include <gtest/gtest.h>

#include <utility>

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

TEST(WmAttributeReader, WritesEmptyTextsButNoMissingNumberAndNothingThatFails)
{
    test::ScriptedHeader header;
    header.SetText(u"Title", u"Title");
    header.failures[u"Title"] = E_FAIL;
    header.failures[u"WM/Genre"] = E_FAIL;
    MediaInfo info = {
        {kInfoTitle,   u"old"},
        {kInfoComment, u"old"},
        {kInfoLength,  u"old"}
    };
    CKivoMediaHelper().ReadWMAttributes(&header, info);
    const MediaInfo expected = {
        {kInfoTitle,   u"old"},
        {kInfoArtist,  u""   },
        {kInfoAlbum,   u""   },
        {kInfoLength,  u"old"},
        {kInfoComment, u""   }
    };
    EXPECT_EQ(info, expected);
}

TEST(WmAttributeReader, NumbersAreRoundedToNearestAndSigned)
{
    const std::pair<std::uint64_t, StringView> durations[] = {
        {0,                   u"0"            },
        {4'999'999,           u"0"            },
        {5'000'001,           u"1"            },
        {0xFFFFFFFFFFFFFFFFU, u"1844674407371"},
    };
    test::ScriptedHeader header;
    header.SetNumber32(u"Bitrate", -1);
    EXPECT_EQ(GetInfoText(Read(header), kInfoBitrate), u"-1");
    for (const auto& [units, seconds] : durations) {
        header.SetNumber64(u"Duration", units);
        EXPECT_EQ(GetInfoText(Read(header), kInfoLength), seconds);
    }
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

TEST(WmAttributeReader, WithoutAHeaderOrAnEditorTheRecordIsUntouched)
{
    test::ScriptedAttributes attributes;
    attributes.headers[u"/a.wma"].SetText(u"Title", u"T");
    const CKivoMediaHelper helper;
    MediaInfo info = Record(kInfoTitle, u"old");
    helper.ReadWMFInfo(u"/missing.wma", info);
    attributes.hasEditor = false;
    helper.ReadWMFInfo(u"/a.wma", info);
    EXPECT_EQ(info, Record(kInfoTitle, u"old"));
    attributes.hasEditor = true;
    helper.ReadWMFInfo(u"/a.wma", info);
    EXPECT_EQ(GetInfoText(info, kInfoTitle), u"T");
    EXPECT_EQ(attributes.editors, 0) << "each is released";
}

} // namespace
} // namespace kivo::tunehive
