#include "mediares/ItemFile.h"

#include "medialib/MediaInfo.h"
#include "shell/contracts/common/Text.h"
#include "tests/support/CaseName.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

namespace kivo::tunehive {
namespace {

const std::string kHead = "<?xml version=\"1.0\" encoding=\"utf-8\" standalone=\"no\" ?>\n";

std::vector<MediaInfo> Read(const String& path, XmlResult& result, bool keepsOlder = false)
{
    std::vector<MediaInfo> items;
    result = ReadItemFile(
        path,
        [&items](const String& itemPath, const String& name) {
            items.push_back({
                {kItemPath, itemPath},
                {kItemName, name    }
            });
        },
        keepsOlder);
    return items;
}

int Write(const String& path, const std::vector<MediaInfo>& items)
{
    return WriteItemFile(path, [&items](const WriteItem& write) {
        for (const MediaInfo& item : items)
            write(common::CString_to_utf8(GetInfoText(item, kItemPath)),
                  common::CString_to_utf8(GetInfoText(item, kItemName)));
    });
}

TEST(ItemFile, IsWrittenToTheByte)
{
    const test::TempFolder folder;
    ASSERT_EQ(Write(folder.GetPath("f"),
                    {
                        {{0, u"/a&\"b"}, {1, u"中"}},
                        {{0, u"/c"},     {1, u""}   }
    }),
              1);
    EXPECT_EQ(folder.Read("f"),
              kHead + "<Items>\n    <Item path='/a&amp;&quot;b' name=\"中\" />\n"
                      "    <Item path=\"/c\" name=\"\" />\n</Items>\n");
    ASSERT_EQ(Write(folder.GetPath("f"), {}), 1);
    EXPECT_EQ(folder.Read("f"), kHead + "<Items />\n");
}

struct EncodingCase {
    const char* name;
    std::string head;  // In front of the root.
    std::string bytes; // Of the name.
    const char16_t* text;
};

std::string Declared(const char* encoding)
{
    return std::string("<?xml version=\"1.0\" encoding=\"") + encoding + "\"?>";
}

const EncodingCase kEncodingCases[] = {
    {"Utf8",                     Declared("utf-8"),                "中文",           u"中文"},
    {"Gb2312InCapitals",         Declared("GB2312"),               "\xD6\xD0\xCE\xC4", u"中文"},
    {"Gb2312BeyondItsOldSet",    Declared("gb2312"),               "\x81\x40",         u"丂"   },
    {"Big5",                     Declared("big5"),                 "\xA4\xA4\xA4\xE5", u"中文"},
    {"ShiftJis",                 Declared("Shift_JIS"),            "\x93\xFA\x96\x7B", u"日本"},
    {"EucJp",                    Declared("euc-jp"),               "\xC6\xFC\xCB\xDC", u"日本"},
    {"EucKr",                    Declared("euc-kr"),               "\xC7\xD1",         u"한"   },
    {"Windows1251",              Declared("windows-1251"),         "\xCF\xF0",         u"Пр"  },
    {"Koi8R",                    Declared("koi8-r"),               "\xF0\xD2",         u"Пр"  },
    {"Iso88591",                 Declared("iso-8859-1"),           "\xE9",             u"é"    },
    {"Iso885915",                Declared("iso-8859-15"),          "\xA4",             u"€"   },
    {"Ibm850",                   Declared("ibm850"),               "\x82",             u"é"    },
    {"AnUnknownName",            Declared("klingon"),              "\xE9",             u"é"    },
    {"NoEncoding",               "<?xml version=\"1.0\"?>",        "\xE9",             u"é"    },
    {"NoDeclarationIsGbk",       "",                               "\xD6\xD0\xCE\xC4", u"中文"},
    {"AReferenceToNulIsNothing", Declared("utf-8"),                "a&#0;b",           u"ab"    },
    {"ACommentInFrontIsNone",    "<!-- x -->" + Declared("utf-8"), "\xD6\xD0\xCE\xC4", u"中文"},
};

class ItemFileEncoding : public testing::TestWithParam<EncodingCase> {};

TEST_P(ItemFileEncoding, DecodesByTheDeclaredName)
{
    const test::TempFolder folder;
    folder.Write("f",
                 GetParam().head + "<Items><Item path=\"/a\" name=\"" + GetParam().bytes +
                     "\"/></Items>");
    XmlResult result = XmlResult::Failed;
    const std::vector<MediaInfo> items = Read(folder.GetPath("f"), result, /*keepsOlder=*/true);
    ASSERT_EQ(result, XmlResult::Read);
    ASSERT_EQ(items.size(), 1U);
    EXPECT_EQ(GetInfoText(items[0], kItemName), GetParam().text);
}

INSTANTIATE_TEST_SUITE_P(Names,
                         ItemFileEncoding,
                         testing::ValuesIn(kEncodingCases),
                         test::CaseName<EncodingCase>);

TEST(ItemFile, TakesItemsAndTheirTwoAttributesAlone)
{
    const test::TempFolder folder;
    folder.Write("f",
                 kHead + "<ITEMS><item NAME='n' other='o' Path='/p'/><Else path='/x'/>"
                         "<Item name='only'/></ITEMS>");
    XmlResult result = XmlResult::Failed;
    const std::vector<MediaInfo> items = Read(folder.GetPath("f"), result);
    EXPECT_EQ(items,
              (std::vector<MediaInfo>{
                  {{0, u"/p"}, {1, u"n"}   },
                  {{0, u""},   {1, u"only"}}
    }));
}

TEST(ItemFile, RandomTracksComeBack)
{
    const test::TempFolder folder;
    std::mt19937 random(11);
    // Path bytes of all kinds, as they stand in a text: also those that aren't UTF-8.
    const auto makeText = [&random] {
        std::string bytes(1 + random() % 40, 'x');
        for (char& c : bytes)
            c = static_cast<char>(1 + random() % 255);
        return common::PathToText(bytes);
    };
    for (int round = 0; round < 20; ++round) {
        std::vector<MediaInfo> items(random() % 50);
        for (MediaInfo& item : items)
            item = {
                {kItemPath, makeText()},
                {kItemName, makeText()}
            };
        ASSERT_EQ(Write(folder.GetPath("f"), items), 1);
        XmlResult result = XmlResult::Failed;
        ASSERT_EQ(Read(folder.GetPath("f"), result), items);
        ASSERT_EQ(result, XmlResult::Read);
    }
}

} // namespace
} // namespace kivo::tunehive
