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
    header.SetNumber(u"Duration", std::uint64_t{2'156'000'000});
    header.SetText(u"Title", u" Title ");
    header.SetText(u"Author", u"\tAuthor");
    header.SetText(u"Description", u" Description ");
    header.SetNumber(u"Bitrate", 128'000);
    header.SetText(u"WM/Genre", u" Genre ");
    header.SetText(u"WM/AlbumTitle", u" Album ");
    header.SetText(u"Rating", u"5");
    EXPECT_EQ(Describe(Read(header)),
              "title='Title' art='Author' album=' Album ' genre=' Genre ' length='216' "
              "bitrate='128000' comm=' Description '");
}

TEST(WmAttributeReader, WritesEmptyTextsButNoMissingNumberAndNothingThatFails)
{
    test::ScriptedHeader header;
    header.SetText(u"Title", u"Title");
    header.failures[u"Title"] = E_FAIL;
    header.failures[u"WM/Genre"] = E_FAIL;
    MediaInfo info = {
        {kInfoTitle,   u"old"},
        {kInfoLength,  u"old"},
        {kInfoComment, u"old"}
    };
    CKivoMediaHelper().ReadWMAttributes(&header, info);
    EXPECT_EQ(Describe(info), "title='old' art='' album='' length='old' comm=''");
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
    header.SetNumber(u"Bitrate", -1);
    EXPECT_EQ(GetInfoText(Read(header), kInfoBitrate), u"-1");
    for (const auto& [units, seconds] : durations) {
        header.SetNumber(u"Duration", units);
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
    EXPECT_EQ(Describe(Read(header)), "title='T' art='Ab' album='' genre='G' length='0' comm=''");
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
