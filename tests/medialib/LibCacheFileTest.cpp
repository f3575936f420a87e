#include "medialib/LibCacheFile.h"

#include "shell/contracts/common/Text.h"
#include "shell/contracts/framework/Files.h"
#include "tests/medialib/Record.h"
#include "tests/support/CaseName.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <random>
#include <sstream>
#include <string>
#include <string_view>

namespace kivo::tunehive {
namespace {

const std::string kHead = "<?xml version=\"1.0\" encoding=\"utf-8\" standalone=\"no\" ?>\n";
const MediaInfo kMiss = Record(99, u"miss");

using Files = std::vector<std::string>;

std::string Document(const std::string& entries)
{
    return kHead + "<Caches>" + entries + "</Caches>";
}

MediaInfo Lookup(const CLibCacheFile& file, const String& key)
{
    MediaInfo info = kMiss;
    const bool isHit = file.Lookup(key, info);
    EXPECT_EQ(isHit, info != kMiss);
    return info;
}

class LibCacheFile : public testing::Test {
protected:
    test::TempFolder folder_;
    CLibCacheFile file_{u"lib", folder_.GetPath("lib.mlib")};
};

TEST_F(LibCacheFile, SavesInTheOrderOfKeysWithOneAttributeAValue)
{
    file_.Merge(u"/b.mp3",
                {
                    {kInfoLength, u"216"      },
                    {kInfoTitle,  u"B & \"C\""},
                    {kInfoUrl,    u"u"        }
    });
    file_.Merge(u"/B.mp3", {});
    file_.Merge(u"/a.mp3", Record(kInfoArtist, u""));
    file_.Merge(u"", Record(kInfoTitle, u"nowhere"));
    EXPECT_TRUE(file_.Save());
    EXPECT_EQ(
        folder_.Read("lib.mlib"),
        kHead +
            "<Caches>\n"
            "    <Cache id=\"/B.mp3\" />\n"
            "    <Cache id=\"/a.mp3\" art=\"\" />\n"
            "    <Cache id=\"/b.mp3\" title='B &amp; &quot;C&quot;' length=\"216\" url=\"u\" />\n"
            "</Caches>\n");
}

// Keys of all that sorts in another way by its bytes: pairs, halves of them and what lies above.
std::map<String, MediaInfo> MakeRecords()
{
    constexpr std::u16string_view kUnits =
        u"a\u00E4\u4E2D\uCFFF\uD7FF\xD83C\xDFB5\xDC80\uE000\uFFFD";
    std::mt19937 random(3);
    std::map<String, MediaInfo> records;
    for (int i = 0; i < 300; ++i) {
        String path = u"/";
        while (random() % 4 != 0)
            path += kUnits[random() % kUnits.size()];
        MediaInfo& info = records[path];
        for (std::int32_t key = 0; key < kMediaInfoKeyCount; ++key) {
            String text;
            while (random() % 8 != 0)
                text += static_cast<char16_t>(1 + random() % 0xFFFF);
            if (random() % 3 != 0)
                info[key] = text;
        }
    }
    records[u"/"][kInfoComment] = String(70'000, u'x');
    return records;
}

TEST_F(LibCacheFile, GivesBackWhatWasSavedInTheOrderOfSixteenBitUnits)
{
    const std::map<String, MediaInfo> records = MakeRecords();
    for (const auto& [path, info] : records)
        file_.Merge(path, info);
    ASSERT_TRUE(file_.Save());

    CLibCacheFile read(u"lib", folder_.GetPath("lib.mlib"));
    ASSERT_TRUE(read.Load());
    EXPECT_EQ(read.GetCount(), records.size());
    std::istringstream lines(folder_.Read("lib.mlib"));
    std::string line;
    std::getline(lines, line); // The declaration.
    std::getline(lines, line); // The root.
    for (const auto& [path, info] : records) {
        SCOPED_TRACE(common::CString_to_utf8(path));
        EXPECT_EQ(Lookup(read, path), info);
        std::getline(lines, line);
        EXPECT_TRUE(line.starts_with("    <Cache id=\"" + common::CString_to_utf8(path) + '"'));
    }
}

struct ReadCase {
    const char* name;
    std::string text;
    MediaInfo info; // Of "k", kMiss where the file isn't loaded.
};

class LibCacheReadTest : public LibCacheFile, public testing::WithParamInterface<ReadCase> {};

TEST_P(LibCacheReadTest, Reads)
{
    folder_.Write("lib.mlib", GetParam().text);
    EXPECT_EQ(file_.Load(), GetParam().info != kMiss);
    EXPECT_EQ(Lookup(file_, u"k"), GetParam().info);
    EXPECT_TRUE(folder_.Has("lib.mlib"))
        << "a file with a declaration stays, and so does a bad one";
}

const std::string kGood = "<Cache id='k' title='T'/>";
const std::string kOtherWord = "<?xml version='1.0' encoding='gb2312'?>";
const std::string kNoWord = "<?xml version='1.0'?>";
const std::string kUmlaut = "<Caches><Cache id='k' title='\xC3\xA4'/></Caches>";

const ReadCase kReadCases[] = {
    {"AnEntry",                      Document(kGood),                                      {{0, u"T"}}     },
    {"AnEmptyRecord",                Document("<Cache id='k'/>"),                          {}              },
    {"AttributesInAnyOrder",
     Document("<Cache url='u' title='T' id='k'/>"),
     {{0, u"T"}, {14, u"u"}}                                                                               },
    {"UnknownAttributesAreLost",     Document("<Cache id='k' titel='T' art='A'/>"),        {{1, u"A"}}     },
    {"AttributesMatchToTheLetter",   Document("<Cache id='k' Title='T' art='A'/>"),        {{1, u"A"}}     },
    {"NamesInOtherLetters",          kHead + "<cACHES><cACHE ID='k' art='A'/></cACHES>",   {{1, u"A"}}     },
    {"TheLaterOfTwoReplacesAll",     Document(kGood + "<Cache id='k' art='A'/>"),          {{1, u"A"}}     },
    {"EntriesWithoutIdArePassed",    Document("<Cache art='x'/><Cache id=''/>" + kGood),   {{0, u"T"}}     },
    {"OtherElementsArePassed",       Document("<Other id='k' art='x'/>" + kGood + "<O/>"), {{0, u"T"}}     },
    {"TheDeclarationsWordIsNothing", kOtherWord + kUmlaut,                                 {{0, u"\u00E4"}}},
    {"ADeclarationWithoutWord",      kNoWord + kUmlaut,                                    {{0, u"\u00E4"}}},
    {"ABadByteLosesNoEntry",         Document("<Cache id='a' title='x\xE4'/>" + kGood),    {{0, u"T"}}     },
    {"NoRoot",                       kHead + kGood,                                        kMiss           },
    {"CutOff",                       kHead + "<Caches>" + kGood + "<Cache id='l' ti",      kMiss           },
    {"NoXmlAtAll",                   "ID3\x03 and music",                                  kMiss           },
    {"NoRootAndNoDeclaration",       "<Library/>",                                         kMiss           },
};

INSTANTIATE_TEST_SUITE_P(LibCacheFile,
                         LibCacheReadTest,
                         testing::ValuesIn(kReadCases),
                         test::CaseName<ReadCase>);

TEST_F(LibCacheFile, AMissingOrEmptyFileIsNotLoaded)
{
    EXPECT_FALSE(file_.Load());
    EXPECT_TRUE(file_.Save()); // Nothing changed.
    EXPECT_TRUE(folder_.List().empty());
    folder_.Write("lib.mlib", ""); // There is nothing to keep aside.
    EXPECT_FALSE(file_.Load());
    file_.Merge(u"k", {});
    EXPECT_TRUE(file_.Save());
    EXPECT_EQ(folder_.List(), Files{"lib.mlib"});
}

TEST_F(LibCacheFile, ALoadReplacesWhatWasThere)
{
    folder_.Write("lib.mlib", Document(kGood));
    file_.Merge(u"other", {});
    EXPECT_TRUE(file_.Load());
    EXPECT_EQ(Lookup(file_, u"other"), kMiss);
    folder_.Write("lib.mlib", "broken");
    EXPECT_FALSE(file_.Load());
    EXPECT_EQ(Lookup(file_, u"k"), kMiss);
}

TEST_F(LibCacheFile, AMergeKeepsOtherKeysAndOverwritesItsOwn)
{
    file_.Merge(u"k", {});
    EXPECT_EQ(Lookup(file_, u"k"), MediaInfo()) << "an empty record makes an entry";
    file_.Merge(u"k", Record(0, u"T"));
    file_.Merge(u"k", Record(4, u"1"));
    file_.Merge(u"k", Record(4, u"216"));
    file_.Merge(u"k", {});
    EXPECT_EQ(Describe(Lookup(file_, u"k")), "title='T' length='216'");
    EXPECT_EQ(Lookup(file_, u"K"), kMiss) << "keys compare to the letter";
    EXPECT_EQ(file_.GetCount(), 1U);
}

TEST_F(LibCacheFile, OnlyAMergeMakesASaveWrite)
{
    const std::string text = Document("<Cache id='k' titel='T'/>");
    folder_.Write("lib.mlib", text);
    ASSERT_TRUE(file_.Load());
    EXPECT_TRUE(file_.Save());
    EXPECT_EQ(folder_.Read("lib.mlib"), text);
    file_.Merge(u"k", {}); // Changes no value.
    EXPECT_TRUE(file_.Save());
    EXPECT_EQ(folder_.Read("lib.mlib"), kHead + "<Caches>\n    <Cache id=\"k\" />\n</Caches>\n");
}

TEST_F(LibCacheFile, AnOlderFormIsReadInTheUsersCodePageAndReplaced)
{
    const int before = common::GetLegacyCodePage();
    common::SetLegacyCodePage(936);
    folder_.Write("lib.mlib",
                  "<!-- x --><?xml version='1.0' encoding='utf-8'?><Caches>"
                  "<Cache id='/\xD6\xD0\xCE\xC4.mp3' title='\xB8\xE8\xC7\xFA'/></Caches>");
    EXPECT_TRUE(file_.Load()) << "a comment in front makes an older form of it";
    common::SetLegacyCodePage(before);
    EXPECT_EQ(Lookup(file_, u"/\u4E2D\u6587.mp3"), Record(0, u"\u6B4C\u66F2"));
    EXPECT_EQ(folder_.List(), Files{"lib.mlib.older"}) << "one form is on disk at any time";
    EXPECT_TRUE(file_.Save());
    EXPECT_EQ(folder_.List(), Files{"lib.mlib"});
    EXPECT_NE(folder_.Read("lib.mlib").find("\xE4\xB8\xAD\xE6\x96\x87.mp3"), std::string::npos);
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
        EXPECT_EQ(folder.List(), Files{"lib.mlib"}) << "nothing has changed";
        for (const char16_t* key : {u"k", u"l"}) { // The second time it is a good one.
            file.Merge(key, {});
            EXPECT_TRUE(file.Save());
            EXPECT_EQ(folder.List(), (Files{"lib.mlib", "lib.mlib.broken-1"}));
        }
        EXPECT_EQ(folder.Read("lib.mlib.broken-1"), text);
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
