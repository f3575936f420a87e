#include "medialib/KivoMediaHelper.h"
#include "medialib/NewerFormats.h"
#include "shell/contracts/base/Beyond.h"
#include "tests/support/CaseName.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <set>

namespace kivo::tunehive {
namespace {

// The switch for the time of a test.
class Beyond {
public:
    explicit Beyond(bool on) { SetBeyond(on); }
    Beyond(const Beyond&) = delete;
    Beyond& operator=(const Beyond&) = delete;
    ~Beyond() { SetBeyond(false); }
};

struct ExtensionCase {
    const char* name;
    String extension;
    bool isMedia;
    bool isVideo;
    bool isMediaBeyond;
    bool isVideoBeyond;
};

class ExtensionTest : public testing::TestWithParam<ExtensionCase> {};

TEST_P(ExtensionTest, CountsAs)
{
    const CKivoMediaHelper helper;
    const String path = u"/music/a." + GetParam().extension;
    EXPECT_EQ(helper.IsMediaExtension(GetParam().extension), GetParam().isMedia);
    EXPECT_EQ(helper.IsVideoFile(path), GetParam().isVideo);
    const Beyond beyond(true);
    EXPECT_EQ(helper.IsMediaExtension(GetParam().extension), GetParam().isMediaBeyond);
    EXPECT_EQ(helper.IsVideoFile(path), GetParam().isVideoBeyond);
}

const ExtensionCase kExtensionCases[] = {
    {"Mp3",       u"mp3",  true,  false, true,  false},
    {"Mp3Upper",  u"MP3",  true,  false, true,  false},
    {"Wma",       u"wma",  true,  false, true,  false},
    {"Wmv",       u"wmv",  true,  true,  true,  true },
    {"Wav",       u"wav",  true,  false, true,  false},
    {"Asf",       u"Asf",  true,  true,  true,  true },
    {"Midi",      u"midi", true,  false, true,  false},
    {"Mid",       u"mid",  false, false, false, false},
    {"Mp2",       u"mp2",  false, false, false, false},
    {"Avi",       u"AVI",  true,  true,  true,  true },
    {"Mpg",       u"mpg",  true,  true,  true,  true },
    {"Mpeg",      u"mpeg", true,  true,  true,  true },
    {"Rm",        u"rm",   true,  true,  true,  true },
    {"Rmvb",      u"rmvb", true,  true,  true,  true },
    {"Ape",       u"ape",  true,  false, true,  false},
    {"Mp4",       u"mp4",  false, true,  false, true },
    {"Mov",       u"mov",  false, true,  false, true },
    {"M3u",       u"m3u",  false, false, false, false},
    {"Asx",       u"asx",  false, false, false, false},
    {"Flac",      u"flac", false, false, true,  false},
    {"FlacUpper", u"FLAC", false, false, true,  false},
    {"Mkv",       u"mkv",  false, false, true,  true },
    {"Ts",        u"ts",   false, false, true,  true },
    {"Empty",     u"",     false, false, false, false},
    {"WithADot",  u".mp3", false, false, false, false},
};

INSTANTIATE_TEST_SUITE_P(Extensions,
                         ExtensionTest,
                         testing::ValuesIn(kExtensionCases),
                         test::CaseName<ExtensionCase>);

TEST(Extensions, AVideoIsKnownByWhatFollowsTheLastDot)
{
    const CKivoMediaHelper helper;
    EXPECT_FALSE(helper.IsVideoFile(u""));
    EXPECT_FALSE(helper.IsVideoFile(u"/films/avi"));
    EXPECT_FALSE(helper.IsVideoFile(u"/films.avi/trailer"));
    EXPECT_FALSE(helper.IsVideoFile(u"/films/a.avi.mp3"));
    EXPECT_TRUE(helper.IsVideoFile(u"/films/a.mp3.avi"));
    EXPECT_TRUE(helper.IsVideoFile(u".avi"));
}

TEST(Extensions, NewerFormatsAreNumberedOnce)
{
    std::set<int> types;
    for (const NewerFormat& format : GetNewerFormats()) {
        EXPECT_GE(format.type, 100);
        EXPECT_TRUE(types.insert(format.type).second);
    }
}

class ListMediaFiles : public testing::Test {
protected:
    CStringArray List(const String& folder)
    {
        CStringArray paths = {u"of an earlier call"};
        CKivoMediaHelper().ListMediaFiles(folder, paths);
        return paths;
    }

    test::TempFolder folder_;
};

TEST_F(ListMediaFiles, GivesTheFilesOfAFolderBeforeThoseBelowIt)
{
    for (const char* name : {"b/d/deep.wav",
                             "b/x.mp3",
                             "c/y.WMA",
                             "z.mp3",
                             "a.MP3",
                             "note.txt",
                             "a.mid",
                             "film.mp4",
                             "dotless"})
        folder_.Write(name, "");
    const String base = folder_.GetPath();
    const CStringArray expected = {base + u"a.MP3",
                                   base + u"z.mp3",
                                   base + u"b/x.mp3",
                                   base + u"c/y.WMA",
                                   base + u"b/d/deep.wav"};
    EXPECT_EQ(List(base.substr(0, base.size() - 1)), expected);
}

TEST_F(ListMediaFiles, OfNothingIsEmpty)
{
    EXPECT_TRUE(List(u"").empty());
    EXPECT_TRUE(List(folder_.GetPath("missing")).empty());
    folder_.Write("a.mp3", "");
    EXPECT_TRUE(List(folder_.GetPath("a.mp3")).empty());
}

// The last dot of the whole path may lie in a folder's name.
TEST_F(ListMediaFiles, AFileWithoutADotIsNone)
{
    folder_.Write("x.mp3/track", "");
    EXPECT_TRUE(List(folder_.GetPath()).empty());
}

TEST_F(ListMediaFiles, LinksAndPipesLeadNowhereEndless)
{
    folder_.Write("a/a.mp3", "");
    std::filesystem::create_directory_symlink(folder_.GetNative(), folder_.GetNative() / "a/up");
    std::filesystem::create_directory_symlink(folder_.GetNative() / "a", folder_.GetNative() / "b");
    ASSERT_EQ(mkfifo((folder_.GetNative() / "pipe.mp3").c_str(), 0600), 0);
    EXPECT_EQ(List(folder_.GetPath()), CStringArray{folder_.GetPath("a/a.mp3")});
}

TEST_F(ListMediaFiles, EndsBetweenFoldersWhenAsked)
{
    folder_.Write("a.mp3", "");
    folder_.Write("b/b.mp3", "");
    folder_.Write("c/c.mp3", "");
    int asked = 0;
    CStringArray paths;
    CKivoMediaHelper().ListMediaFiles(folder_.GetPath(), paths, [&asked] { return ++asked < 3; });
    EXPECT_EQ(paths, (CStringArray{folder_.GetPath("a.mp3"), folder_.GetPath("b/b.mp3")}));
}

TEST_F(ListMediaFiles, TakesNewerFormatsBeyond)
{
    folder_.Write("a.flac", "");
    folder_.Write("b.opus", "");
    EXPECT_TRUE(List(folder_.GetPath()).empty());
    const Beyond beyond(true);
    EXPECT_EQ(List(folder_.GetPath()).size(), 2U);
}

} // namespace
} // namespace kivo::tunehive
