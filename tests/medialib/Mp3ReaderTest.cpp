#include "medialib/Id3v1.h"
#include "medialib/KivoMediaHelper.h"
#include "medialib/MediaInfoNames.h"
#include "medialib/MpegFrame.h"
#include "shell/contracts/common/Text.h"
#include "tests/medialib/LiteralSearch.h"
#include "tests/medialib/Record.h"
#include "tests/support/CaseName.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <random>
#include <sstream>
#include <string>
#include <vector>

namespace kivo::tunehive {
namespace {

// The fields of a header, in their order.
struct Header {
    unsigned version = 3;
    unsigned layerField = 1; // Layer III
    unsigned protection = 1;
    unsigned bitRate = 9;
    unsigned sampling = 0;
    unsigned padding = 0;
    unsigned mode = 0;
    unsigned copyright = 0;
    unsigned emphasis = 0;
};

std::string ToBytes(const Header& h)
{
    const std::uint32_t bits = 0xFFE00000U | h.version << 19 | h.layerField << 17 |
                               h.protection << 16 | h.bitRate << 12 | h.sampling << 10 |
                               h.padding << 9 | h.mode << 6 | h.copyright << 3 | h.emphasis;
    std::string bytes;
    for (int shift = 24; shift >= 0; shift -= 8)
        bytes += static_cast<char>(bits >> static_cast<unsigned>(shift) & 0xFFU);
    return bytes;
}

std::string Frame(const Header& header, std::size_t size)
{
    std::string bytes = ToBytes(header);
    bytes.resize(size, '\0');
    return bytes;
}

std::string Repeat(const std::string& bytes, int count)
{
    std::string all;
    for (int i = 0; i < count; ++i)
        all += bytes;
    return all;
}

class Mp3Reader : public testing::Test {
protected:
    MediaInfo Read(const std::string& bytes)
    {
        folder_.Write("a.mp3", bytes);
        MediaInfo info = Record(kInfoUrl, u"of another file");
        EXPECT_TRUE(helper_.ReadMP3Info(folder_.GetPath("a.mp3"), info));
        return info;
    }

    test::TempFolder folder_;
    CKivoMediaHelper helper_;
};

struct WalkCase {
    const char* name;
    std::string bytes;
    const char* expected; // Attributes as they stand in a library file; others aren't looked at.
};

class Mp3WalkTest : public Mp3Reader, public testing::WithParamInterface<WalkCase> {};

TEST_P(Mp3WalkTest, Gives)
{
    const MediaInfo info = Read(GetParam().bytes);
    std::istringstream expected(GetParam().expected);
    for (std::string name, value; std::getline(expected, name, '=') && expected >> value;) {
        const auto key = FindInfoKey(name);
        ASSERT_TRUE(key.has_value()) << name;
        EXPECT_EQ(common::CString_to_utf8(GetInfoText(info, *key)), value) << name;
        expected.ignore();
    }
}

std::string OneFrame(unsigned version, unsigned layerField, unsigned bitRate)
{
    return Frame({.version = version, .layerField = layerField, .bitRate = bitRate}, 4);
}

const std::string kMpeg1LayerI = OneFrame(3, 3, 14);
const std::string kMpeg1LayerII = OneFrame(3, 2, 14);
const std::string kMpeg1LayerIII = OneFrame(3, 1, 14);
const std::string kMpeg2LayerI = OneFrame(2, 3, 14);
const std::string kMpeg2LayerII = OneFrame(2, 2, 14);
const std::string kMpeg25LayerIII = OneFrame(0, 1, 1);
const std::string kNoLayer = OneFrame(3, 0, 9);
const std::string kPlain = Frame({}, 417);              // 128 kbit/s, MPEG 1.
const std::string kSlow = Frame({.bitRate = 1}, 104);   // 32 kbit/s, 26.0 ms.
const std::string kFast = Frame({.bitRate = 14}, 1044); // 320 kbit/s, 26.1 ms.
const std::string kFree = Frame({.bitRate = 0}, 10);
const std::string kBad = Frame({.bitRate = 15}, 10);
const std::string kNoRate = Frame({.sampling = 3}, 417);
const std::string kNoVersion = Frame({.version = 1}, 417);
const std::string kFirst = Frame({.protection = 0}, 417);
const std::string kLast = Frame({.mode = 3, .copyright = 1, .emphasis = 3}, 417);
const std::string kMpeg2 = Frame({.version = 2, .bitRate = 8}, 417); // 64 kbit/s, 22050 Hz.
const std::string kGap(10'000, '\0');

// 441 frames of 417.96 bytes in the mean: 11.52 seconds.
const std::string kConstant =
    Repeat(Frame({.mode = 1}, 417) + Repeat(Frame({.padding = 1, .mode = 1}, 418), 48), 9);
const std::string kVariable = Repeat(kSlow, 300) + Repeat(kFast, 100);

// Frames of 208.98 bytes: each step takes two, and counts for both.
const std::string kMpeg2Pairs = Repeat(
    Frame({.version = 2, .bitRate = 8}, 208) + Frame({.version = 2, .bitRate = 8}, 209), 100);

// Where frames of 128 and 320 kbit/s stand in a file, the mean shows whether both were found.
const WalkCase kWalkCases[] = {
    {"ConstantRate",               kConstant,                      "length=11 bitrate=128 mepgv=MPEGVER_1 srate=44100 hascrc=1"},
    {"ConstantRateModes",          kConstant,                      "cmode=MP3CM_JOINT_STEREO emp=MP3EM_NONE iscopy=0"          },
    {"RatesAreAveragedByFrames",   kVariable,                      "bitrate=104 length=10"                                     },
    {"TheLastHeaderDecides",
     kFirst + kLast,
     "cmode=MP3CM_SINGLE_CHANNEL iscopy=1 emp=MP3EM_CCIT_J17"                                                                  },
    {"TheFirstDecidesProtection",  kFirst + kLast,                 "hascrc=0"                                                  },
    {"TheFirstDecidesTheTable",    kMpeg2 + kPlain,                "mepgv=MPEGVER_2 srate=22050 bitrate=72"                    },
    {"EverySecondFrameOfMpeg2",    kMpeg2Pairs,                    "length=5 bitrate=64"                                       },
    {"FramesWithoutARateCount",    kPlain + kFree + kBad + kPlain, "bitrate=64"                                                },
    {"NoSamplingRateKeepsTheLast", kPlain + kNoRate,               "srate=44100 bitrate=128"                                   },
    {"NoneAtFirstEndsTheWalk",     kNoRate + kVariable,            "length=0 bitrate=0 srate=0 mepgv=MPEGVER_1"                },
    {"NoVersionEndsTheWalk",       kNoVersion + kPlain,            "mepgv=MPEGVER_NA length=0"                                 },
    {"NoGap",                      kPlain + kFast,                 "bitrate=224"                                               },
    {"AGapOfAllThePositions",      kPlain + kGap + kFast,          "bitrate=224"                                               },
    {"AGapOfOneMore",              kPlain + kGap + '\0' + kFast,   "bitrate=128"                                               },
    {"Mpeg1LayerI",                kMpeg1LayerI,                   "bitrate=448"                                               },
    {"Mpeg1LayerII",               kMpeg1LayerII,                  "bitrate=384"                                               },
    {"Mpeg1LayerIII",              kMpeg1LayerIII,                 "bitrate=320"                                               },
    {"Mpeg2LayerI",                kMpeg2LayerI,                   "bitrate=256"                                               },
    {"Mpeg2LayerII",               kMpeg2LayerII,                  "bitrate=160"                                               },
    {"Mpeg25LayerIII",             kMpeg25LayerIII,                "bitrate=8 mepgv=MPEGVER_25 srate=11025"                    },
    {"NoLayer",                    kNoLayer,                       "bitrate=0 srate=44100"                                     },
};

INSTANTIATE_TEST_SUITE_P(Mp3Reader,
                         Mp3WalkTest,
                         testing::ValuesIn(kWalkCases),
                         test::CaseName<WalkCase>);

TEST_F(Mp3Reader, WithoutFramesAndTagFourteenKeysStandEmpty)
{
    MediaInfo expected;
    for (std::int32_t key = kInfoTitle; key <= kInfoYear; ++key)
        expected[key] = u"";
    for (const auto key : {kInfoLength, kInfoBitrate, kInfoHasCrc, kInfoIsCopy, kInfoSampleRate})
        expected[key] = u"0";
    EXPECT_EQ(Read(std::string(20'000, '\0')), expected);
    EXPECT_EQ(Read(""), expected);
    MediaInfo info = expected;
    EXPECT_FALSE(helper_.ReadMP3Info(folder_.GetPath("missing.mp3"), info));
    EXPECT_TRUE(info.empty());
}

std::string MakeTag(const std::string& title, const std::string& comment, int genre)
{
    std::string tag(kId3v1Size, '\0');
    tag.replace(0, 3, "TAG");
    tag.replace(3, title.size(), title);
    tag.replace(33, 8, " Artist ");
    tag.replace(63, 7, "\tAlbum ");
    tag.replace(93, 4, "98  ");
    tag.replace(97, comment.size(), comment);
    tag[127] = static_cast<char>(genre);
    return tag;
}

TEST_F(Mp3Reader, TrimsTitleArtistAndAlbumOfTheTagAlone)
{
    const std::string tag = MakeTag(" Title" + std::string(24, ' '), " Comment ", 17);
    const MediaInfo info = Read(Frame(Header(), 417) + tag);
    EXPECT_EQ(GetInfoText(info, kInfoTitle), u"Title");
    EXPECT_EQ(GetInfoText(info, kInfoArtist), u"Artist");
    EXPECT_EQ(GetInfoText(info, kInfoAlbum), u"Album");
    EXPECT_EQ(GetInfoText(info, kInfoYear), u"98  ");
    EXPECT_EQ(GetInfoText(info, kInfoComment), u" Comment ");
    EXPECT_EQ(GetInfoText(info, kInfoGenre), u"Rock");
}

TEST_F(Mp3Reader, ATrackNumberShortensTheComment)
{
    std::string tag = MakeTag(std::string(30, 'x'), std::string(30, 'c'), 148);
    EXPECT_EQ(GetInfoText(Read(tag), kInfoComment), String(30, u'c'));
    tag[125] = '\0';
    const MediaInfo info = Read(tag);
    EXPECT_EQ(GetInfoText(info, kInfoComment), String(28, u'c'));
    EXPECT_EQ(GetInfoText(info, kInfoTitle), String(30, u'x')) << "a field may fill its room";
    EXPECT_EQ(GetInfoText(info, kInfoGenre), u"");
}

TEST_F(Mp3Reader, ATagIsInTheUsersCodePage)
{
    const int before = common::GetLegacyCodePage();
    common::SetLegacyCodePage(936);
    EXPECT_EQ(GetInfoText(Read(MakeTag("\xD6\xD0\xCE\xC4", "", 0)), kInfoTitle), u"\u4E2D\u6587");
    common::SetLegacyCodePage(1251);
    EXPECT_EQ(GetInfoText(Read(MakeTag("\xCF\xE5\xF1", "", 0)), kInfoTitle), u"\u041F\u0435\u0441");
    common::SetLegacyCodePage(before);
}

TEST_F(Mp3Reader, OnlyTheLast128BytesAreATag)
{
    const std::string tag = MakeTag("T", "", 0);
    for (const std::string& bytes : {tag.substr(1), tag + "x", "tag" + tag.substr(3)})
        EXPECT_EQ(GetInfoText(Read(bytes), kInfoTitle), u"");
    EXPECT_EQ(GetInfoText(Read("x" + tag), kInfoTitle), u"T");
}

TEST(Id3v1, GenresHaveTheirNames)
{
    const std::pair<int, StringView> genres[] = {
        {0,   u"Blues"      },
        {67,  u"Psychadelic"},
        {78,  u"Rock & Roll"},
        {80,  u"Folk"       },
        {147, u"SynthPop"   },
        {148, u""           },
        {255, u""           },
    };
    for (const auto& [genre, name] : genres)
        EXPECT_EQ(GetGenreName(genre), name);
}

TEST(MpegFrame, LayerIRoundsBeforeItsFactor)
{
    const MpegStream stream = {.layer = 1};
    constexpr std::uint32_t kPadded = 1U << 9;
    EXPECT_EQ(GetFrameSize(stream, 0, 128, 44100), 136);
    EXPECT_EQ(GetFrameSize(stream, kPadded, 128, 44100), 140);
    EXPECT_EQ(GetFrameSize(stream, 0, -1, 8000), -4);
}

// Frames of all kinds, with junk and gaps between them; full of sync patterns where that is asked.
std::string MakeRandomFile(std::mt19937& random, std::size_t size, bool isJunk)
{
    std::string bytes;
    while (bytes.size() < size) {
        if (isJunk) {
            bytes += static_cast<char>(random() % 2 == 0 ? 0xFF : random() & 0xFFU);
            continue;
        }
        Header header;
        header.bitRate = random() % 16;
        header.sampling = random() % 4;
        header.padding = random() % 2;
        bytes += Frame(header, 4 + random() % 1500);
        if (random() % 10 == 0)
            bytes += std::string(random() % 10'100, '\x01');
    }
    bytes.resize(size);
    return bytes;
}

TEST(Mp3Walk, TheBufferedWalkEqualsTheLiteralOne)
{
    std::mt19937 random(20);
    std::vector<std::string> files = {
        "", "\xFF\xFB\x90", "\xFF\xFB\x90\x64", "\xFF\xFF\xFF\xFF\xFF"};
    for (const std::size_t size : {5'000U, 262'144U, 262'145U, 262'147U, 700'000U}) {
        files.push_back(MakeRandomFile(random, size, /*isJunk=*/true));
        files.push_back(MakeRandomFile(random, size, /*isJunk=*/false));
    }
    // Headers across the border of the window, and gaps that reach over it.
    for (int before = 0; before < 8; ++before)
        files.push_back(std::string(9'000, '\0') + std::string("\xFF\xFB\x90\x64", 4) +
                        Repeat(std::string(9'990, '\0') + std::string("\xFF\xFB\x04\x64", 4), 25) +
                        std::string(static_cast<std::size_t>(3'280 + before), '\0') +
                        std::string("\xFF\xFB\x90\x64", 4) + std::string(10'000, '\0') +
                        std::string("\xFF\xFB\x90\x65", 4));
    const test::TempFolder folder;
    std::size_t found = 0;
    for (const std::string& bytes : files) {
        SCOPED_TRACE(bytes.size());
        folder.Write("a", bytes);
        CBinaryFile file;
        ASSERT_TRUE(file.Open(folder.GetPath("a")));
        CFileWindow window(file);
        const CKivoMediaHelper helper;
        const auto buffered = WalkFrames([&](std::uint32_t& header, int skip) {
            return helper.FindFrameHeader(window, header, skip);
        });
        LiteralSearch literal(bytes);
        const auto expected =
            WalkFrames([&](std::uint32_t& header, int skip) { return literal.Find(header, skip); });
        EXPECT_EQ(buffered, expected);
        found += expected.size();
    }
    EXPECT_GT(found, 5'000U); // The files do hold something to find.
}

} // namespace
} // namespace kivo::tunehive
