#include "host/Arguments.h"

#include "shell/contracts/common/Text.h"
#include "tests/support/CaseName.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace kivo::host {
namespace {

using test::CaseName;
using test::TempFolder;
using namespace std::string_literals;

struct ItemCase {
    const char* name;
    std::string raw;
    ItemKind kind;
    std::string text; // A path's bytes, or an address.
};

const std::string kOneMegabyte = "http://h/" + std::string(1U << 20U, 'a');

const ItemCase kItemCases[] = {
    {"AFullPath",                  "/music/a.mp3",        ItemKind::Path,    "/music/a.mp3"            },
    {"ARelativePath",              "a.mp3",               ItemKind::Path,    "/start/here/a.mp3"       },
    {"DotsAreFolded",              "./x/../../b//c/.",    ItemKind::Path,    "/start/b/c"              },
    {"NothingIsAboveTheRoot",      "/../../a",            ItemKind::Path,    "/a"                      },
    {"TheRootItself",              "/",                   ItemKind::Path,    "/"                       },
    {"ATrailingSeparatorGoes",     "/music/",             ItemKind::Path,    "/music"                  },
    {"PercentInAPathStays",        "100%25.mp3",          ItemKind::Path,    "/start/here/100%25.mp3"  },
    {"ABackslashIsALetter",        "a\\b",                ItemKind::Path,    "/start/here/a\\b"        },
    {"AColonIsALetter",            "c:\\a.mp3",           ItemKind::Path,    "/start/here/c:\\a.mp3"   },
    {"OneLetterIsNoScheme",        "c://a",               ItemKind::Path,    "/start/here/c:/a"        },
    {"BytesThatAreNoText",         "\xE9\xFF.mp3",        ItemKind::Path,    "/start/here/\xE9\xFF.mp3"},
    {"ANewlineInAName",            "/a\nb",               ItemKind::Path,    "/a\nb"                   },
    {"AFileAddress",               "file:///m/a%20b.mp3", ItemKind::Path,    "/m/a b.mp3"              },
    {"AFileAddressOfRawBytes",     "file:///m/%E9.mp3",   ItemKind::Path,    "/m/\xE9.mp3"             },
    {"AFileAddressOfThisHost",     "FILE://LocalHost/a",  ItemKind::Path,    "/a"                      },
    {"AFileAddressIsFolded",       "file:///a/%2e%2e/b",  ItemKind::Path,    "/b"                      },
    {"AnotherHostsFile",           "file://server/a",     ItemKind::Refused, ""                        },
    {"AFileAddressWithoutSlashes", "file:a.mp3",          ItemKind::Refused, ""                        },
    {"AnEscapedZero",              "file:///a%00b",       ItemKind::Refused, ""                        },
    {"ACutEscape",                 "file:///a%2",         ItemKind::Refused, ""                        },
    {"AnEscapeThatIsNone",         "file:///a%zz",        ItemKind::Refused, ""                        },
    {"Http",                       "http://h/a?b=%20",    ItemKind::Address, "http://h/a?b=%20"        },
    {"SchemesInAnyLetters",        "MMS://h/a",           ItemKind::Address, "MMS://h/a"               },
    {"Rtsp",                       "rtsp://h/a",          ItemKind::Address, "rtsp://h/a"              },
    {"ASchemeThatPlaysFiles",      "edl://a",             ItemKind::Refused, ""                        },
    {"AScript",                    "javascript://x",      ItemKind::Refused, ""                        },
    {"ControlsInAnAddress",        "http://h/\r\nX: y",   ItemKind::Refused, ""                        },
    {"AnEmptyName",                "",                    ItemKind::Refused, ""                        },
    {"AZeroInside",                "a\0b"s,               ItemKind::Refused, ""                        },
    {"OneMegabyte",                kOneMegabyte,          ItemKind::Refused, ""                        },
};

class NormalizeItemTest : public testing::TestWithParam<ItemCase> {};

TEST_P(NormalizeItemTest, GivesOneForm)
{
    const ItemCase& row = GetParam();
    const Item item = NormalizeItem(row.raw, "/start/here");
    EXPECT_EQ(item.kind, row.kind);
    EXPECT_EQ(common::TextToPath(item.text), row.text);
    EXPECT_EQ(item.reason.empty(), row.kind != ItemKind::Refused);
    EXPECT_EQ(item.reason.find('\n'), std::string::npos);
}

INSTANTIATE_TEST_SUITE_P(Arguments,
                         NormalizeItemTest,
                         testing::ValuesIn(kItemCases),
                         CaseName<ItemCase>);

TEST(NormalizeItem, WithoutAFolderOnlyFullPathsHold)
{
    EXPECT_EQ(NormalizeItem("a.mp3", "").kind, ItemKind::Refused);
    EXPECT_EQ(NormalizeItem("/a.mp3", "").kind, ItemKind::Path);
}

ParsedArguments Parse(std::vector<std::string> arguments, const std::string& folder = "/")
{
    arguments.insert(arguments.begin(), "kivo");
    return ParseArguments(arguments, folder);
}

std::vector<std::string> SplitAtBlanks(std::string_view line)
{
    std::vector<std::string> words;
    while (!line.empty()) {
        const std::size_t end = std::min(line.find(' '), line.size());
        words.emplace_back(line.substr(0, end));
        line.remove_prefix(std::min(end + 1, line.size()));
    }
    return words;
}

TEST(ParseArguments, TakesOptionsBeforeBetweenAndBehindItems)
{
    const TempFolder folder;
    folder.Write("a.mp3", "x");
    folder.Write("-b.mp3", "x");
    const std::string native = folder.GetNative().native();
    const std::string_view line = "--quit-at-end a.mp3 --profile p/../q http://h/x "
                                  "--audio-file=out.wav --music-server 127.0.0.1:80 -- -b.mp3";
    const auto [options, error] = Parse(SplitAtBlanks(line), native);
    EXPECT_EQ(error, "");
    EXPECT_TRUE(options.quitAtEnd);
    EXPECT_EQ(options.profile, native + "/q");
    EXPECT_EQ(options.audioFile, native + "/out.wav");
    EXPECT_EQ(options.musicServer, "127.0.0.1:80");
    std::vector<String> items{folder.GetPath("a.mp3"), u"http://h/x", folder.GetPath("-b.mp3")};
    EXPECT_EQ(options.items, items);
}

struct WrongUse {
    const char* name;
    const char* first;
    const char* second;
    const char* error;
};

const WrongUse kWrongUses[] = {
    {"AnUnknownOption",        "--loud",         nullptr,          "unknown option --loud"                  },
    {"AnUnknownLetter",        "-x",             nullptr,          "unknown option -x"                      },
    {"AValueWhereNoneBelongs", "--help=x",       nullptr,          "unknown option --help=x"                },
    {"AMissingValue",          "--profile",      nullptr,          "--profile needs a value"                },
    {"AnEmptyValue",           "--profile",      "",               "--profile needs a value"                },
    {"AMissingFile",           "/no/such.mp3",   nullptr,          "/no/such.mp3: no such file or folder"   },
    {"AMissingTargetFolder",   "--audio-file",   "/no/such/a.wav", "/no/such/: no such folder"              },
    {"AFolderAsATarget",       "--screenshot",   "/usr",           "/usr: is a folder"                      },
    {"AServerWithAPath",       "--music-server", "h/x",            "--music-server takes HOST or HOST:PORT" },
    {"AnotherHostsFile",       "file://h/x",     nullptr,          "file://h/x: not a file of this computer"},
    {"ControlsAreNotEchoed",   "--\033[2J",      nullptr,          "unknown option --?[2J"                  },
};

class WrongUseTest : public testing::TestWithParam<WrongUse> {};

TEST_P(WrongUseTest, IsToldInOneLine)
{
    std::vector<std::string> arguments{GetParam().first};
    if (GetParam().second != nullptr)
        arguments.emplace_back(GetParam().second);
    EXPECT_EQ(Parse(arguments).error, GetParam().error);
}

INSTANTIATE_TEST_SUITE_P(Arguments,
                         WrongUseTest,
                         testing::ValuesIn(kWrongUses),
                         CaseName<WrongUse>);

} // namespace
} // namespace kivo::host
