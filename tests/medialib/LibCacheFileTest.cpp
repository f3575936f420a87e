#include "medialib/LibCacheFile.h"

#include "shell/contracts/common/Text.h"
#include "shell/contracts/framework/Files.h"
#include "tests/medialib/Record.h"
#include "tests/support/CaseName.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>
#include <tinyxml.h>

#include <random>
#include <string>

namespace kivo::tunehive {
namespace {

const std::string kHead = "<?xml version=\"1.0\" encoding=\"utf-8\" standalone=\"no\" ?>\n";

class LibCacheFile : public testing::Test {
protected:
    CLibCacheFile Open() { return {u"lib", folder_.GetPath("lib.mlib")}; }

    MediaInfo Lookup(const CLibCacheFile& file, const String& key)
    {
        MediaInfo info = Record(99, u"miss");
        file.Lookup(key, info);
        return info;
    }

    test::TempFolder folder_;
};

const MediaInfo kMiss = Record(99, u"miss");

TEST_F(LibCacheFile, SavesInTheOrderOfKeysWithOneAttributeAValue)
{
    CLibCacheFile file = Open();
    file.Merge(u"/b.mp3",
               {
                   {kInfoLength, u"216"      },
                   {kInfoTitle,  u"B & \"C\""},
                   {kInfoUrl,    u"u"        }
    });
    file.Merge(u"/B.mp3", {});
    file.Merge(u"/a.mp3", Record(kInfoArtist, u""));
    file.Merge(u"", Record(kInfoTitle, u"nowhere"));
    EXPECT_TRUE(file.Save());
    EXPECT_EQ(
        folder_.Read("lib.mlib"),
        kHead +
            "<Caches>\n"
            "    <Cache id=\"/B.mp3\" />\n"
            "    <Cache id=\"/a.mp3\" art=\"\" />\n"
            "    <Cache id=\"/b.mp3\" title='B &amp; &quot;C&quot;' length=\"216\" url=\"u\" />\n"
            "</Caches>\n");
}

// The layout is that of TiXmlDocument::SaveFile, byte for byte.
TEST_F(LibCacheFile, SavesTheBytesThatTinyXmlWouldSave)
{
    const MediaInfo info = {
        {kInfoTitle,   u"<t> 'a'\n\t\x01" },
        {kInfoComment, u"\u4E2D\U0001F3B5"}
    };
    CLibCacheFile file = Open();
    file.Merge(u"/x 'y' \"z\" &", info);
    EXPECT_TRUE(file.Save());

    TiXmlDocument document;
    document.LinkEndChild(new TiXmlDeclaration("1.0", "utf-8", "no"));
    auto* root = new TiXmlElement("Caches");
    document.LinkEndChild(root);
    auto* element = new TiXmlElement("Cache");
    root->LinkEndChild(element);
    element->SetAttribute("id", "/x 'y' \"z\" &");
    element->SetAttribute("title", common::CString_to_utf8(info.at(kInfoTitle)));
    element->SetAttribute("comm", common::CString_to_utf8(info.at(kInfoComment)));
    ASSERT_TRUE(document.SaveFile((folder_.GetNative() / "dom.xml").string()));
    EXPECT_EQ(folder_.Read("lib.mlib"), folder_.Read("dom.xml"));
}

TEST_F(LibCacheFile, WithoutEntriesItIsARootAlone)
{
    CLibCacheFile file = Open();
    file.Merge(u"", {});
    EXPECT_TRUE(file.Save());
    EXPECT_EQ(folder_.Read("lib.mlib"), kHead + "<Caches />\n");
}

TEST_F(LibCacheFile, GivesBackWhatWasSaved)
{
    std::mt19937 random(3);
    std::map<String, MediaInfo> records;
    for (int i = 0; i < 300; ++i) {
        MediaInfo info;
        for (std::int32_t key = 0; key < kMediaInfoKeyCount; ++key) {
            String text;
            while (random() % 8 != 0)
                text += static_cast<char16_t>(1 + random() % 0xFFFF);
            if (random() % 3 != 0)
                info[key] = text;
        }
        String path = u"/" + common::ToText(i);
        path += static_cast<char16_t>(0xDC80 + random() % 0x80);
        records[path] = info;
    }
    CLibCacheFile file = Open();
    for (const auto& [path, info] : records)
        file.Merge(path, info);
    ASSERT_TRUE(file.Save());

    CLibCacheFile read = Open();
    ASSERT_TRUE(read.Load());
    EXPECT_EQ(read.GetCount(), records.size());
    for (const auto& [path, info] : records) {
        SCOPED_TRACE(common::CString_to_utf8(path));
        EXPECT_EQ(Lookup(read, path), info);
    }
}

struct ReadCase {
    const char* name;
    std::string text;
    bool isLoaded;
    MediaInfo info; // Of "k", kMiss for none.
};

class LibCacheReadTest : public testing::TestWithParam<ReadCase> {};

TEST_P(LibCacheReadTest, Reads)
{
    const test::TempFolder folder;
    folder.Write("lib.mlib", GetParam().text);
    CLibCacheFile file(u"lib", folder.GetPath("lib.mlib"));
    EXPECT_EQ(file.Load(), GetParam().isLoaded);
    MediaInfo info = kMiss;
    EXPECT_EQ(file.Lookup(u"k", info), GetParam().info != kMiss);
    EXPECT_EQ(info, GetParam().info);
    EXPECT_TRUE(folder.Has("lib.mlib")) << "a file with a declaration stays, and so does a bad one";
}

std::string Document(const std::string& entries)
{
    return kHead + "<Caches>" + entries + "</Caches>";
}

const ReadCase kReadCases[] = {
    {"AnEntry",                      Document("<Cache id='k' title='T'/>"),                       true,  {{0, u"T"}}                },
    {"AnEmptyRecord",                Document("<Cache id='k'/>"),                                 true,  {}                         },
    {"AnEmptyTitle",                 Document("<Cache id='k' title=''/>"),                        true,  {{0, u""}}                 },
    {"AttributesInAnyOrder",
     Document("<Cache url='u' title='T' id='k'/>"),
     true,                                                                                               {{0, u"T"}, {14, u"u"}}    },
    {"UnknownAttributesAreLost",     Document("<Cache id='k' titel='T' art='A'/>"),               true,  {{1, u"A"}}                },
    {"AttributesMatchToTheLetter",
     Document("<Cache id='k' Title='T' art='A'/>"),
     true,                                                                                               {{1, u"A"}}                },
    {"NamesInOtherLetters",
     kHead + "<cACHES><cACHE ID='k' title='T'/></cACHES>",
     true,                                                                                               {{0, u"T"}}                },
    {"TheLaterOfTwoReplacesAll",
     Document("<Cache id='k' title='T'/><Cache id='k' art='A'/>"),
     true,                                                                                               {{1, u"A"}}                },
    {"AnEntryWithoutIdIsPassed",
     Document("<Cache title='x'/><Cache id='' title='x'/><Cache id='k' title='T'/>"),
     true,                                                                                               {{0, u"T"}}                },
    {"OtherElementsArePassed",
     Document("<Other id='k' title='x'/><Cache id='k' title='T'/><Other/>"),
     true,                                                                                               {{0, u"T"}}                },
    {"TheDeclarationsWordIsIgnored",
     "<?xml version='1.0' encoding='gb2312'?><Caches><Cache id='k' title='\xC3\xA4'/></Caches>",  true,
     {{0, u"\u00E4"}}                                                                                                               },
    {"ADeclarationWithoutEncoding",
     "<?xml version='1.0'?><Caches><Cache id='k' title='\xC3\xA4'/></Caches>",                    true,
     {{0, u"\u00E4"}}                                                                                                               },
    {"ABadByteLosesNoEntry",
     Document("<Cache id='a' title='x\xE4'/><Cache id='k' title='T'/>"),
     true,                                                                                               {{0, u"T"}}                },
    {"ABytePathComesBack",
     Document("<Cache id='k' title='\xED\xB2\x80'/>"),
     true,                                                                                               {{0, String(1, u'\xDC80')}}},
    {"NoFileContent",                "",                                                          false, kMiss                      },
    {"NoRoot",                       kHead + "<Cache id='k'/>",                                   false, kMiss                      },
    {"CutOff",                       kHead + "<Caches><Cache id='k' title='T'/><Cache id='l' ti", false, kMiss                      },
    {"NoXmlAtAll",                   "ID3\x03 and music",                                         false, kMiss                      },
    {"NoRootAndNoDeclaration",       "<Library/>",                                                false, kMiss                      },
};

INSTANTIATE_TEST_SUITE_P(LibCacheFile,
                         LibCacheReadTest,
                         testing::ValuesIn(kReadCases),
                         test::CaseName<ReadCase>);

TEST_F(LibCacheFile, AMissingOrEmptyFileIsNotLoaded)
{
    CLibCacheFile file = Open();
    EXPECT_FALSE(file.Load());
    EXPECT_TRUE(file.Save()); // Nothing changed.
    EXPECT_TRUE(folder_.List().empty());

    folder_.Write("lib.mlib", ""); // There is nothing to keep aside.
    EXPECT_FALSE(file.Load());
    file.Merge(u"k", {});
    EXPECT_TRUE(file.Save());
    EXPECT_EQ(folder_.List(), std::vector<std::string>{"lib.mlib"});
}

TEST_F(LibCacheFile, ALoadReplacesWhatWasThere)
{
    folder_.Write("lib.mlib", Document("<Cache id='k' title='T'/>"));
    CLibCacheFile file = Open();
    file.Merge(u"other", {});
    EXPECT_TRUE(file.Load());
    EXPECT_EQ(Lookup(file, u"other"), kMiss);
    folder_.Write("lib.mlib", "broken");
    EXPECT_FALSE(file.Load());
    EXPECT_EQ(Lookup(file, u"k"), kMiss);
}

TEST_F(LibCacheFile, AMergeKeepsOtherKeysAndOverwritesItsOwn)
{
    CLibCacheFile file = Open();
    file.Merge(u"k", {});
    EXPECT_EQ(Lookup(file, u"k"), MediaInfo()) << "an empty record makes an entry";
    for (const auto& [key, text] : {
             std::pair(0, u"T"), {4, u"1"  },
               {4, u"216"},
               {1, u"A"  }
    })
        file.Merge(u"k", Record(key, text));
    file.Merge(u"k", {});
    const MediaInfo expected = {
        {0, u"T"  },
        {1, u"A"  },
        {4, u"216"}
    };
    EXPECT_EQ(Lookup(file, u"k"), expected);
    EXPECT_EQ(file.GetCount(), 1U);
}

TEST_F(LibCacheFile, KeysCompareToTheLetter)
{
    CLibCacheFile file = Open();
    file.Merge(u"/Music/a.mp3", Record(0, u"T"));
    EXPECT_EQ(Lookup(file, u"/music/a.mp3"), kMiss);
    EXPECT_EQ(Lookup(file, u"/Music//a.mp3"), kMiss);
    EXPECT_EQ(Lookup(file, u"/Music/a.mp3"), Record(0, u"T"));
}

TEST_F(LibCacheFile, OnlyAMergeMakesASaveWrite)
{
    const std::string text = Document("<Cache id='k' titel='T'/>");
    folder_.Write("lib.mlib", text);
    CLibCacheFile file = Open();
    ASSERT_TRUE(file.Load());
    EXPECT_TRUE(file.Save());
    EXPECT_EQ(folder_.Read("lib.mlib"), text);
    file.Merge(u"k", {}); // Changes no value.
    EXPECT_TRUE(file.Save());
    EXPECT_EQ(folder_.Read("lib.mlib"), kHead + "<Caches>\n    <Cache id=\"k\" />\n</Caches>\n");
}

TEST_F(LibCacheFile, AnOlderFormIsReadInTheUsersCodePageAndReplaced)
{
    const int before = common::GetLegacyCodePage();
    common::SetLegacyCodePage(936);
    folder_.Write("lib.mlib",
                  "<Caches><Cache id='/\xD6\xD0\xCE\xC4.mp3' title='\xB8\xE8\xC7\xFA'/></Caches>");
    CLibCacheFile file = Open();
    EXPECT_TRUE(file.Load());
    common::SetLegacyCodePage(before);
    EXPECT_EQ(Lookup(file, u"/\u4E2D\u6587.mp3"), Record(0, u"\u6B4C\u66F2"));
    // One form is on disk at any time.
    EXPECT_EQ(folder_.List(), std::vector<std::string>{"lib.mlib.older"});
    EXPECT_TRUE(file.Save());
    EXPECT_EQ(folder_.List(), std::vector<std::string>{"lib.mlib"});
    EXPECT_NE(folder_.Read("lib.mlib").find("\xE4\xB8\xAD\xE6\x96\x87.mp3"), std::string::npos);
}

TEST_F(LibCacheFile, ACommentInFrontOfTheDeclarationMakesAnOlderForm)
{
    folder_.Write("lib.mlib", "<!-- x --><?xml version='1.0'?><Caches><Cache id='k'/></Caches>");
    CLibCacheFile file = Open();
    EXPECT_TRUE(file.Load());
    EXPECT_FALSE(folder_.Has("lib.mlib"));
}

TEST_F(LibCacheFile, AnUnreadableFileIsKeptAsideBeforeASaveReplacesIt)
{
    for (const char* text : {"<Caches><Cache id='k'", "<Library/>"}) {
        SCOPED_TRACE(text);
        const test::TempFolder folder;
        folder.Write("lib.mlib", text);
        CLibCacheFile file(u"lib", folder.GetPath("lib.mlib"));
        EXPECT_FALSE(file.Load());
        EXPECT_TRUE(file.Save());
        EXPECT_EQ(folder.List(), std::vector<std::string>{"lib.mlib"}) << "nothing has changed";
        file.Merge(u"k", {});
        EXPECT_TRUE(file.Save());
        EXPECT_EQ(folder.List(), (std::vector<std::string>{"lib.mlib", "lib.mlib.broken-1"}));
        EXPECT_EQ(folder.Read("lib.mlib.broken-1"), text);
        file.Merge(u"l", {});
        EXPECT_TRUE(file.Save());
        EXPECT_EQ(folder.List().size(), 2U) << "the new file is a good one";
    }
}

TEST_F(LibCacheFile, AFailedSaveStaysToBeDone)
{
    CLibCacheFile file(u"lib", folder_.GetPath("gone/lib.mlib"));
    file.Merge(u"k", Record(0, u"T"));
    EXPECT_FALSE(file.Save());
    EXPECT_EQ(TakeFailedWrites(), std::vector<String>{folder_.GetPath("gone/lib.mlib")});
    folder_.Write("gone/other", "");
    EXPECT_TRUE(file.Save());
    EXPECT_TRUE(folder_.Has("gone/lib.mlib"));
}

} // namespace
} // namespace kivo::tunehive
