#include "shell/contracts/base/Beyond.h"
#include "shell/contracts/base/Released.h"
#include "shell/contracts/common/Text.h"
#include "tests/platform/attributes/MediaFiles.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <iterator>

namespace kivo::attributes {
namespace {

constexpr std::int64_t kUnitsPerSecond = 10'000'000;

struct Expected {
    const char* name; // The test's name.
    const char* file;
    const char16_t* title; // Null: the file gives no header. Empty: no such attribute.
    const char16_t* author = u"";
    const char16_t* comment = u"";
    int seconds = 4; // 0: no length.
};

void PrintTo(const Expected& expected, std::ostream* out)
{
    *out << expected.file;
}

class AttributesTest : public testing::TestWithParam<Expected> {
public:
    static void SetUpTestSuite() { PrepareMediaFiles(); }
    void SetUp() override { SetBeyond(true); }
    void TearDown() override { SetBeyond(false); }
};

TEST_P(AttributesTest, Reads)
{
    const Expected& expected = GetParam();
    const Released<IWMMetadataEditor> editor(WMCreateEditor());
    ASSERT_NE(editor, nullptr) << "the module is missing";
    const HRESULT opened = editor->Open(FilePath(expected.file));
    IWMHeaderInfo3* header = editor->QueryHeaderInfo();
    ASSERT_EQ(header != nullptr, expected.title != nullptr);
    ASSERT_EQ(Failed(opened), header == nullptr);
    if (header == nullptr)
        return;
    EXPECT_EQ(TextOf(header, u"Title").value_or(u""), expected.title);
    EXPECT_EQ(TextOf(header, u"Author").value_or(u""), expected.author);
    EXPECT_EQ(TextOf(header, u"Description").value_or(u""), expected.comment);
    const auto duration = NumberOf(header, u"Duration");
    ASSERT_EQ(duration.has_value(), expected.seconds > 0);
    EXPECT_NEAR(static_cast<double>(duration.value_or(0)) / kUnitsPerSecond, expected.seconds, 0.6);
}

constexpr const char16_t* kTitle = u"Tïtle 春";
constexpr const char16_t* kArtist = u"Ärtist";
constexpr const char16_t* kComment = u"Cömment";

INSTANTIATE_TEST_SUITE_P(
    Files,
    AttributesTest,
    testing::Values(
        Expected{"Mp3", "plain.mp3", kTitle, kArtist, kComment},
        Expected{"Wma", "plain.wma", kTitle, kArtist, kComment},
        Expected{"Wav", "plain.wav", kTitle, kArtist, kComment},
        Expected{"Flac", "plain.flac", kTitle, kArtist, kComment},
        Expected{"Ogg", "plain.ogg", kTitle, kArtist, kComment},
        Expected{"Opus", "plain.opus", kTitle, kArtist, kComment},
        Expected{"M4a", "plain.m4a", kTitle, kArtist, kComment},
        Expected{"WavPack", "plain.wv", kTitle, kArtist, kComment},
        Expected{"Aiff", "plain.aiff", kTitle, kArtist},
        Expected{"Mp4", "video.mp4", kTitle, kArtist, kComment},
        Expected{"FragmentedMp4ByTheSecondReader", "fragmented.mp4", kTitle, kArtist, kComment},
        Expected{"Avi", "video.avi", kTitle, kArtist, kComment},
        Expected{"Mkv", "video.mkv", kTitle, kArtist, kComment},
        Expected{"Wmv", "video.wmv", kTitle, kArtist, kComment},
        Expected{"MpgHasALengthAlone", "video.mpg", u""},
        Expected{"AWmaUnderAnMp3sName", "wma_named.mp3", kTitle, kArtist, kComment},
        Expected{"AnMp3UnderAWmasName", "mp3_named.wma", kTitle, kArtist, kComment},
        Expected{"GbkInId3v1", "gbk_id3v1.mp3", u"春江花月夜", u"春江花月夜", u"古筝独奏曲"},
        Expected{"GbkInALatin1Frame", "gbk_id3v2.mp3", u"春江花月夜"},
        Expected{"Utf8InId3v1", "utf8_id3v1.mp3", u"春江"},
        Expected{"GbkInRiffInfo", "gbk_info.wav", u"春江花"},
        Expected{"AMachinesCommentIsPassedOver", "machine_comment.mp3", u"", u"", u"by hand"},
        Expected{"AMachinesCommentAloneIsNone", "only_machine_comment.mp3", u"t"},
        Expected{"ATagInFrontOfAWave", "tag_before_wave.mp3", kTitle, kArtist, kComment},
        Expected{"TheId3ChunkComesBeforeInfo", "id3_and_info.wav", u"from id3", kArtist, kComment},
        Expected{"StreamedSizesByTheSecondReader", "streamed_sizes.wav", u""},
        Expected{"AVariableRateIsWalked", "variable.mp3", u"", u"", u"", 8},
        Expected{"MidiIsNotRead", "song.midi", nullptr},
        Expected{"TextIsNoMusic", "text.mp3", nullptr},
        Expected{"AnEmptyFile", "empty.mp3", nullptr},
        Expected{"APipe", "pipe.mp3", nullptr},
        Expected{"AMissingFile", "missing.mp3", nullptr},
        Expected{"AFolder", ".", nullptr}),
    [](const auto& row) { return row.param.name; });

// By the maps of a process of its own, in which no other test has read anything.
void ReadAndEnd(const char* file)
{
    PrepareMediaFiles();
    const Released<IWMMetadataEditor> editor(WMCreateEditor());
    editor->Open(FilePath(file));
    std::ifstream maps("/proc/self/maps");
    const std::string all{std::istreambuf_iterator<char>(maps), {}};
    const bool hasTagLib = all.find("libtag") != std::string::npos;
    const bool hasAvformat = all.find("libavformat") != std::string::npos;
    // NOLINTNEXTLINE(concurrency-mt-unsafe): the child of a test, with one thread
    std::exit(editor->QueryHeaderInfo() == nullptr ? 9
                                                   : (hasTagLib ? 1 : 0) + (hasAvformat ? 2 : 0));
}

TEST(AttributeModules, LibavformatIsLoadedForTheFirstFileThatNeedsIt)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(ReadAndEnd("plain.mp3"), testing::ExitedWithCode(1), "");
    EXPECT_EXIT(ReadAndEnd("video.avi"), testing::ExitedWithCode(3), "");
}

TEST(AttributeTexts, OfNoDeclaredCodingAreReadAsTheUsersLanguageHasThem)
{
    struct Row {
        const char* language;
        int codePage;
        const char16_t* text;
    };
    constexpr Row kRows[] = {
        {"zh_CN", 936,  u"春江花月夜"},
        {"zh_TW", 950,  u"春江花月夜"},
        {"ja_JP", 932,  u"さくらの歌"},
        {"ko_KR", 949,  u"아리랑"      },
        {"ru_RU", 1251, u"Калинка" },
    };
    PrepareMediaFiles();
    for (const Row& row : kRows) {
        SCOPED_TRACE(row.language);
        common::SetLegacyCodePage(row.codePage);
        const Released<IWMMetadataEditor> editor(WMCreateEditor());
        editor->Open(FilePath("legacy_v1_" + std::to_string(row.codePage) + ".mp3"));
        EXPECT_EQ(TextOf(editor->QueryHeaderInfo(), u"Title"), row.text);
        EXPECT_EQ(TextOf(editor->QueryHeaderInfo(), u"Description"), row.text);
        editor->Open(FilePath("legacy_v2_" + std::to_string(row.codePage) + ".mp3"));
        EXPECT_EQ(TextOf(editor->QueryHeaderInfo(), u"Title"), row.text);
    }
    PrepareMediaFiles();
}

TEST(AttributeRates, AreBitsPerSecond)
{
    PrepareMediaFiles();
    const Released<IWMMetadataEditor> editor(WMCreateEditor());
    editor->Open(FilePath("bare.mp3"));
    EXPECT_EQ(NumberOf(editor->QueryHeaderInfo(), u"Bitrate"), 128'000);
    editor->Open(FilePath("plain.wav"));
    EXPECT_EQ(NumberOf(editor->QueryHeaderInfo(), u"Bitrate"), 706'000); // TagLib rounds to kbit/s.

    editor->Open(FilePath("hollow.mp3"));
    EXPECT_EQ(NumberOf(editor->QueryHeaderInfo(), u"Bitrate"), INT32_MAX) << "no number wraps";

    // Of a video the whole file counts: 4 seconds of it.
    for (const char* file : {"video.mp4", "video_moov_first.mp4"}) {
        SCOPED_TRACE(file);
        editor->Open(FilePath(file));
        EXPECT_GT(NumberOf(editor->QueryHeaderInfo(), u"Bitrate").value_or(0), 150'000);
    }
}

TEST(AttributeHeader, KnowsNoOtherNamesAndStreams)
{
    PrepareMediaFiles();
    const Released<IWMMetadataEditor> editor(WMCreateEditor());
    editor->Open(FilePath("plain.mp3"));
    IWMHeaderInfo3* header = editor->QueryHeaderInfo();
    ASSERT_NE(header, nullptr);
    std::uint16_t length = 0;
    EXPECT_EQ(header->GetAttributeByName(0, u"Rating", nullptr, &length), ASF_E_NOTFOUND);
    EXPECT_TRUE(Failed(header->GetAttributeByName(1, u"Title", nullptr, &length)));
    EXPECT_EQ(TextOf(header, u"WM/AlbumTitle"), u"Albüm");
    EXPECT_EQ(TextOf(header, u"WM/Genre"), u"Rock");
}

TEST(AttributeHeader, OfAnEarlierFileIsGoneAfterAFailedOpen)
{
    PrepareMediaFiles();
    const Released<IWMMetadataEditor> editor(WMCreateEditor());
    editor->Open(FilePath("plain.mp3"));
    editor->Open(FilePath("missing.mp3"));
    EXPECT_EQ(editor->QueryHeaderInfo(), nullptr);
}

} // namespace
} // namespace kivo::attributes
