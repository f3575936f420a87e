#include "medialib/KivoMediaHelper.h"
#include "shell/contracts/base/Property.h"
#include "tests/support/CaseName.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <map>
#include <string>

namespace kivo::tunehive {
namespace {

// "@" in text and paths stands for the folder of the playlist, with its separator.
struct M3UCase {
    const char* name;
    std::string text;
    CStringArray paths;
};

String Place(const String& text, const String& folder)
{
    return !text.empty() && text.front() == u'@' ? folder + text.substr(1) : text;
}

class M3UTest : public testing::TestWithParam<M3UCase> {};

TEST_P(M3UTest, Gives)
{
    const test::TempFolder folder;
    folder.Write("a.mp3", "");
    folder.Write("b.mp3", "");
    folder.Write("sub/c.mp3", "");
    folder.Write("\xE4\xB8\xAD.mp3", "");
    folder.Write("list.m3u", GetParam().text);
    CStringArray expected = {u"already there"};
    for (const String& path : GetParam().paths)
        expected.push_back(Place(path, folder.GetPath()));
    CStringArray paths = {u"already there"};
    CKivoMediaHelper().ReadM3UPlaylist(folder.GetPath("list.m3u"), paths);
    EXPECT_EQ(paths, expected);
}

const M3UCase kM3UCases[] = {
    {"NamesBesideIt",            "a.mp3\nb.mp3\n",                       {u"@a.mp3", u"@b.mp3"}           },
    {"NoLastLineEnd",            "a.mp3",                                {u"@a.mp3"}                      },
    {"NamesBelowIt",             "sub/c.mp3\n",                          {u"@sub/c.mp3"}                  },
    {"InTheOrderOfTheFile",      "b.mp3\na.mp3\nb.mp3\n",                {u"@b.mp3", u"@a.mp3", u"@b.mp3"}},
    {"WindowsLineEnds",          "a.mp3\r\nb.mp3\r\n",                   {u"@a.mp3", u"@b.mp3"}           },
    {"AnEmptyLineEndsIt",        "a.mp3\n\nb.mp3\n",                     {u"@a.mp3"}                      },
    {"AnEmptyWindowsLineEndsIt", "a.mp3\r\n\r\nb.mp3\r\n",               {u"@a.mp3"}                      },
    {"ALineOfBlanksDoesNot",     "a.mp3\n \t \nb.mp3\n",                 {u"@a.mp3", u"@b.mp3"}           },
    {"CommentsArePassed",        "#EXTM3U\n#EXTINF:1,x\na.mp3\n  # c\n", {u"@a.mp3"}                      },
    {"LinesAreTrimmed",          "  a.mp3\t\n",                          {u"@a.mp3"}                      },
    {"AMarkInFront",
     "\xEF\xBB\xBF"
     "a.mp3\n",                                                          {u"@a.mp3"}                      },
    {"AMarkAndAComment",         "\xEF\xBB\xBF#EXTM3U\na.mp3\n",         {u"@a.mp3"}                      },
    {"AMarkAlone",               "\xEF\xBB\xBF\na.mp3\n",                {u"@a.mp3"}                      },
    {"MissingNamesAreDropped",   "x.mp3\na.mp3\n",                       {u"@a.mp3"}                      },
    {"UrlsAreDropped",           "http://host/a.mp3\na.mp3\n",           {u"@a.mp3"}                      },
    {"AbsolutePathsAreTaken",    "/missing/x.mp3\n",                     {u"/missing/x.mp3"}              },
    {"DriveLettersAreTaken",     "C:\\missing\\x.mp3\n",                 {u"C:\\missing\\x.mp3"}          },
    {"TheRootComesFirst",        "dev/null\n",                           {u"/dev/null"}                   },
    {"Utf8",                     "\xE4\xB8\xAD.mp3\n",                   {u"@\u4E2D.mp3"}                 },
    {"Backslashes",              "sub\\c.mp3\n",                         {}                               },
    {"OneLetter",                "a\n:\n",                               {}                               },
    {"Nothing",                  "",                                     {}                               },
};

INSTANTIATE_TEST_SUITE_P(PlaylistReader,
                         M3UTest,
                         testing::ValuesIn(kM3UCases),
                         test::CaseName<M3UCase>);

TEST(PlaylistReader, TheRootWinsOverTheFolder)
{
    const test::TempFolder folder;
    folder.Write("dev/null", "");
    folder.Write("list.m3u", "dev/null\n");
    CStringArray paths;
    CKivoMediaHelper().ReadM3UPlaylist(folder.GetPath("list.m3u"), paths);
    EXPECT_EQ(paths, CStringArray{u"/dev/null"});
}

TEST(PlaylistReader, AMissingListGivesNothing)
{
    const test::TempFolder folder;
    CStringArray paths;
    CKivoMediaHelper().ReadM3UPlaylist(folder.GetPath("list.m3u"), paths);
    CKivoMediaHelper().ReadM3UPlaylist(u"list.m3u", paths);
    CKivoMediaHelper().ReadM3UPlaylist(folder.GetPath(), paths);
    EXPECT_TRUE(paths.empty());
}

using Entries = std::map<String, std::map<std::uint32_t, std::string>>;

struct ASXCase {
    const char* name;
    std::string text;
    Entries entries;
};

class ASXTest : public testing::TestWithParam<ASXCase> {};

TEST_P(ASXTest, Gives)
{
    const test::TempFolder folder;
    folder.Write("list.asx", GetParam().text);
    std::map<String, Property> entries;
    CKivoMediaHelper().ReadASXPlaylist(folder.GetPath("list.asx"), entries);
    Entries plain;
    for (const auto& [url, entry] : entries)
        plain[url] = entry.GetEntries();
    EXPECT_EQ(plain, GetParam().entries);
}

std::string Entry(const std::string& url)
{
    return "<entry><ref href='" + url + "'/></entry>";
}

Entries Urls(const std::vector<std::string>& urls)
{
    Entries entries;
    for (const std::string& url : urls)
        entries[String(url.begin(), url.end())] = {
            {14, url}
        };
    return entries;
}

const ASXCase kASXCases[] = {
    {"AWholeEntry",
     "<asx><entry><title>T</title><author>A</author><ref href='http://a'/></entry></asx>",   {{u"http://a", {{0, "T"}, {1, "A"}, {14, "http://a"}}}}},
    {"NamesInAnyCase",
     "<ASX><ENTRY><TITLE>T</TITLE><REF HREF='http://a'/></ENTRY></ASX>",                     {{u"http://a", {{0, "T"}, {14, "http://a"}}}}          },
    {"EndTagsInOtherCase",               "<asx><Entry><ref href='http://a'/></entry></ASX>", Urls({"http://a"})                                     },
    {"SeveralEntries",
     "<asx>" + Entry("u://b") + Entry("u://a") + "</asx>",
     Urls({"u://a", "u://b"})                                                                                                                       },
    {"TheLaterOfTwoWithOneUrl",
     "<asx>" + Entry("u://a") + "<entry><title>T</title><ref href='u://a'/></entry></asx>",
     {{u"u://a", {{0, "T"}, {14, "u://a"}}}}                                                                                                        },
    {"BeforeTheFirstEntryNothingCounts",
     "<asx><title>T</title><other><ref href='u://x'/></other>" + Entry("u://a") + "</asx>",
     Urls({"u://a"})                                                                                                                                },
    {"BehindItEverythingDoes",
     "<asx>" + Entry("u://a") + "<other><ref href='u://x'/></other></asx>",
     Urls({"u://a", "u://x"})                                                                                                                       },
    {"AnEntryWithoutRef",                "<asx><entry><title>T</title></entry></asx>",       {{u"", {{0, "T"}}}}                                    },
    {"ARefWithoutHref",                  "<asx><entry><ref/></entry></asx>",                 {{u"", {{14, ""}}}}                                    },
    {"TheFirstOfSeveralRefs",
     "<asx><entry><ref href='u://a'/><ref href='u://b'/></entry></asx>",                     Urls({"u://a"})                                        },
    {"BareAmpersands",                   "<asx>" + Entry("u://a?x=1&y=2") + "</asx>",        Urls({"u://a?x=1&y=2"})                                },
    {"NoEntry",                          "<asx><title>T</title></asx>",                      {}                                                     },
    {"AnotherRoot",                      "<other>" + Entry("u://a") + "</other>",            {}                                                     },
    {"NotClosed",                        "<asx>" + Entry("u://a"),                           {}                                                     },
    {"AnIniFile",                        "[Reference]\nRef1=http://a\n",                     {}                                                     },
    {"AsfData",                          "\x30\x26\xB2\x75\x8E\x66\xCF\x11",                 {}                                                     },
};

INSTANTIATE_TEST_SUITE_P(PlaylistReader,
                         ASXTest,
                         testing::ValuesIn(kASXCases),
                         test::CaseName<ASXCase>);

} // namespace
} // namespace kivo::tunehive
