#include "medialib/KivoMediaHelper.h"
#include "medialib/MediaFileType.h"
#include "medialib/MediaLibManager.h"
#include "medialib/NewerFormats.h"
#include "shell/contracts/base/Beyond.h"
#include "tests/support/CaseName.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <set>

namespace kivo::tunehive {
namespace {

// What an extension makes of a file: taken by an import, a video, of that type to the manager.
struct Kind {
    bool isMedia;
    bool isVideo;
    int type;

    friend bool operator==(const Kind&, const Kind&) = default;
    friend std::ostream& operator<<(std::ostream& out, const Kind& kind)
    {
        return out << kind.isMedia << ' ' << kind.isVideo << ' ' << kind.type;
    }
};

struct ExtensionCase {
    const char* name;
    const char* extension;
    Kind kind;
    Kind beyond;
};

class ExtensionTest : public testing::TestWithParam<ExtensionCase> {
protected:
    Kind Look()
    {
        const std::string extension = GetParam().extension;
        folder_.Write("a." + extension, "");
        const String path = folder_.GetPath("a." + extension);
        const CKivoMediaHelper helper;
        return {helper.IsMediaExtension(String(extension.begin(), extension.end())),
                helper.IsVideoFile(path),
                MediaLibManager::GetFileType(path)};
    }

    test::TempFolder folder_;
};

TEST_P(ExtensionTest, CountsAs)
{
    EXPECT_EQ(Look(), GetParam().kind);
    SetBeyond(true);
    EXPECT_EQ(Look(), GetParam().beyond);
    SetBeyond(false);
}

constexpr Kind kNothing = {false, false, kNoFileType};

constexpr ExtensionCase kExtensionCases[] = {
    {"Mp3",       "mp3",  {true, false, 0},           {true, false, 0}          },
    {"Mp3Upper",  "MP3",  {true, false, kNoFileType}, {true, false, 0}          },
    {"Wma",       "wma",  {true, false, 1},           {true, false, 1}          },
    {"Wmv",       "wmv",  {true, true, 2},            {true, true, 2}           },
    {"Wav",       "wav",  {true, false, 3},           {true, false, 3}          },
    {"Asf",       "asf",  {true, true, 4},            {true, true, 4}           },
    {"AsfMixed",  "Asf",  {true, true, kNoFileType},  {true, true, 4}           },
    {"Midi",      "midi", {true, false, 5},           {true, false, 5}          },
    {"Mid",       "mid",  kNothing,                   kNothing                  },
    {"Mp2",       "mp2",  kNothing,                   kNothing                  },
    {"Avi",       "avi",  {true, true, 6},            {true, true, 6}           },
    {"Mpg",       "mpg",  {true, true, 7},            {true, true, 7}           },
    {"Mpeg",      "mpeg", {true, true, 7},            {true, true, 7}           },
    {"Rm",        "rm",   {true, true, 9},            {true, true, 9}           },
    {"Rmvb",      "rmvb", {true, true, 10},           {true, true, 10}          },
    {"Mp4",       "mp4",  {false, true, 11},          {false, true, 11}         },
    {"Ape",       "ape",  {true, false, 12},          {true, false, 12}         },
    {"Asx",       "asx",  {false, false, 13},         {false, false, 13}        },
    {"M3u",       "m3u",  {false, false, 14},         {false, false, 14}        },
    {"Mov",       "mov",  {false, true, kNoFileType}, {false, true, kNoFileType}},
    {"Flac",      "flac", kNothing,                   {true, false, 100}        },
    {"FlacUpper", "FLAC", kNothing,                   {true, false, 100}        },
    {"Mkv",       "mkv",  kNothing,                   {true, true, 107}         },
    {"Ts",        "ts",   kNothing,                   {true, true, 110}         },
    {"Empty",     "",     kNothing,                   kNothing                  },
};

INSTANTIATE_TEST_SUITE_P(Extensions,
                         ExtensionTest,
                         testing::ValuesIn(kExtensionCases),
                         test::CaseName<ExtensionCase>);

TEST(Extensions, TheLastDotOfThePathDecides)
{
    const CKivoMediaHelper helper;
    for (const char16_t* path : {u"", u"/films/avi", u"/films.avi/trailer", u"/films/a.avi.mp3"})
        EXPECT_FALSE(helper.IsVideoFile(path));
    EXPECT_TRUE(helper.IsVideoFile(u"/films/a.mp3.avi"));
    EXPECT_TRUE(helper.IsVideoFile(u".avi"));
    EXPECT_FALSE(helper.IsMediaExtension(u".mp3"));
}

TEST(Extensions, OnlyAnExistingFileHasAType)
{
    const test::TempFolder folder;
    for (const char* name : {"mp3", "a.mp3.txt", "x.mp3/file"})
        folder.Write(name, "");
    for (const char* name : {"mp3", "a.mp3.txt", "x.mp3/file", "x.mp3", "missing.mp3"})
        EXPECT_EQ(MediaLibManager::GetFileType(folder.GetPath(name)), kNoFileType) << name;
    EXPECT_EQ(MediaLibManager::GetFileType(u"http://host/a.mp3"), kNoFileType);
}

TEST(Extensions, NewerFormatsAreNumberedOnceBehindTheOthers)
{
    std::set<int> types;
    for (const NewerFormat& format : GetNewerFormats())
        EXPECT_TRUE(format.type >= 100 && types.insert(format.type).second) << format.type;
}

// In what order, and that links and pipes lead nowhere, is the platform's walk to say.
TEST(ListMediaFiles, GivesTheMediaFilesBelowAFolder)
{
    const test::TempFolder folder;
    for (const char* name : {"b/x.mp3", "c/y.WMA", "a.MP3", "a.mid", "film.mp4", "x.mp3/track"})
        folder.Write(name, "");
    const CKivoMediaHelper helper;
    CStringArray paths = {u"of an earlier call"};
    helper.ListMediaFiles(folder.GetPath(), paths);
    const CStringArray all = {
        folder.GetPath("a.MP3"), folder.GetPath("b/x.mp3"), folder.GetPath("c/y.WMA")};
    EXPECT_EQ(paths, all);
    int asked = 0;
    helper.ListMediaFiles(folder.GetPath(), paths, [&asked] { return ++asked < 3; });
    EXPECT_EQ(paths, CStringArray(all.begin(), all.begin() + 2));
    for (const String& nothing : {String(), folder.GetPath("missing"), folder.GetPath("a.MP3")}) {
        helper.ListMediaFiles(nothing, paths);
        EXPECT_TRUE(paths.empty());
    }
}

} // namespace
} // namespace kivo::tunehive
