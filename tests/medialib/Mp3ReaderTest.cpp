#include "medialib/KivoMediaHelper.h"
#include "medialib/MpegFrame.h"
#include "tests/medialib/LiteralSearch.h"
#include "tests/support/CaseName.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <random>
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
        MediaInfo info = {
            {kInfoUrl, u"of another file"}
        };
        EXPECT_TRUE(helper_.ReadMP3Info(folder_.GetPath("a.mp3"), info));
        return info;
    }

    test::TempFolder folder_;
    CKivoMediaHelper helper_;
};

TEST_F(Mp3Reader, ReadsConstantBitRateByTheBook)
{
    // 441 frames of 1152 samples: 11.52 seconds.
    std::string bytes;
    for (int i = 0; i < 441; ++i) {
        const bool padded = i % 49 != 0; // 417.96 bytes on average
        Header header;
        header.padding = padded ? 1 : 0;
        header.mode = 1;
        bytes += Frame(header, padded ? 418 : 417);
    }
    const MediaInfo info = Read(bytes);
    EXPECT_EQ(GetInfoText(info, kInfoLength), u"11");
    EXPECT_EQ(GetInfoText(info, kInfoBitrate), u"128");
    EXPECT_EQ(GetInfoText(info, kInfoMpegVersion), u"MPEGVER_1");
    EXPECT_EQ(GetInfoText(info, kInfoSampleRate), u"44100");
    EXPECT_EQ(GetInfoText(info, kInfoChannelMode), u"MP3CM_JOINT_STEREO");
    EXPECT_EQ(GetInfoText(info, kInfoEmphasis), u"MP3EM_NONE");
    EXPECT_EQ(GetInfoText(info, kInfoHasCrc), u"1");
    EXPECT_EQ(GetInfoText(info, kInfoIsCopy), u"0");
}

TEST_F(Mp3Reader, AveragesVariableBitRatesByFrames)
{
    Header slow;
    slow.bitRate = 1; // 32 kbit/s: 104 bytes
    Header fast;
    fast.bitRate = 14; // 320 kbit/s: 1044 bytes
    const MediaInfo info = Read(Repeat(Frame(slow, 104), 300) + Repeat(Frame(fast, 1044), 100));
    EXPECT_EQ(GetInfoText(info, kInfoBitrate), u"104"); // (300 * 32 + 100 * 320) / 400
    EXPECT_EQ(GetInfoText(info, kInfoLength), u"10");   // 300 * 26.0 ms + 100 * 26.1 ms
}

TEST_F(Mp3Reader, TheLastHeaderDecidesModeCopyrightAndEmphasis)
{
    Header first;
    first.protection = 0;
    first.mode = 0;
    Header last;
    last.mode = 3;
    last.copyright = 1;
    last.emphasis = 3;
    const MediaInfo info = Read(Frame(first, 417) + Frame(last, 417));
    EXPECT_EQ(GetInfoText(info, kInfoHasCrc), u"0");
    EXPECT_EQ(GetInfoText(info, kInfoChannelMode), u"MP3CM_SINGLE_CHANNEL");
    EXPECT_EQ(GetInfoText(info, kInfoIsCopy), u"1");
    EXPECT_EQ(GetInfoText(info, kInfoEmphasis), u"MP3EM_CCIT_J17");
}

TEST_F(Mp3Reader, TheFirstHeaderDecidesVersionAndLayer)
{
    Header mpeg2;
    mpeg2.version = 2;
    mpeg2.bitRate = 8; // 64 kbit/s at 22050 Hz: steps of 417 bytes
    Header mpeg1;
    const MediaInfo info = Read(Frame(mpeg2, 417) + Frame(mpeg1, 522));
    EXPECT_EQ(GetInfoText(info, kInfoMpegVersion), u"MPEGVER_2");
    EXPECT_EQ(GetInfoText(info, kInfoSampleRate), u"22050");
    EXPECT_EQ(GetInfoText(info, kInfoBitrate), u"72"); // 64 and 80: both of the MPEG 2 table
}

// Layer III of MPEG 2 has frames of half the size: each step takes two, and counts for both.
TEST_F(Mp3Reader, StepsOverEverySecondFrameOfMpeg2)
{
    Header header;
    header.version = 2;
    header.bitRate = 8; // 64 kbit/s at 22050 Hz: 208.98 bytes, 26.1 ms
    std::string bytes;
    for (int i = 0; i < 200; ++i)
        bytes += Frame(header, i % 2 == 0 ? 208 : 209);
    const MediaInfo info = Read(bytes);
    EXPECT_EQ(GetInfoText(info, kInfoLength), u"5"); // 100 * 52.1 ms
    EXPECT_EQ(GetInfoText(info, kInfoBitrate), u"64");
}

TEST_F(Mp3Reader, FramesWithoutABitRateCountInTheDivisorAlone)
{
    Header free;
    free.bitRate = 0;
    Header bad;
    bad.bitRate = 15;
    const Header good;
    const MediaInfo info =
        Read(Frame(good, 417) + Frame(free, 10) + Frame(bad, 10) + Frame(good, 417));
    EXPECT_EQ(GetInfoText(info, kInfoBitrate), u"64"); // 256 / 4
}

TEST_F(Mp3Reader, AHeaderWithoutARateKeepsTheLastOne)
{
    Header none;
    none.sampling = 3;
    const MediaInfo info = Read(Frame(Header(), 417) + Frame(none, 417));
    EXPECT_EQ(GetInfoText(info, kInfoSampleRate), u"44100");
    EXPECT_EQ(GetInfoText(info, kInfoBitrate), u"128");
}

TEST_F(Mp3Reader, AFirstHeaderWithoutARateEndsTheWalk)
{
    Header none;
    none.sampling = 3;
    const MediaInfo info = Read(Frame(none, 417) + Repeat(Frame(Header(), 417), 200));
    EXPECT_EQ(GetInfoText(info, kInfoLength), u"0");
    EXPECT_EQ(GetInfoText(info, kInfoBitrate), u"0");
    EXPECT_EQ(GetInfoText(info, kInfoSampleRate), u"0");
    EXPECT_EQ(GetInfoText(info, kInfoMpegVersion), u"MPEGVER_1");
    EXPECT_EQ(GetInfoText(info, kInfoChannelMode), u"");
}

TEST_F(Mp3Reader, AVersionWithoutRatesEndsTheWalk)
{
    Header none;
    none.version = 1;
    const MediaInfo info = Read(Frame(none, 417) + Frame(Header(), 417));
    EXPECT_EQ(GetInfoText(info, kInfoMpegVersion), u"MPEGVER_NA");
    EXPECT_EQ(GetInfoText(info, kInfoLength), u"0");
}

TEST_F(Mp3Reader, WithoutFramesAndTagFourteenKeysStandEmpty)
{
    const MediaInfo expected = {
        {kInfoTitle,       u"" },
        {kInfoArtist,      u"" },
        {kInfoAlbum,       u"" },
        {kInfoGenre,       u"" },
        {kInfoLength,      u"0"},
        {kInfoBitrate,     u"0"},
        {kInfoComment,     u"" },
        {kInfoChannelMode, u"" },
        {kInfoEmphasis,    u"" },
        {kInfoHasCrc,      u"0"},
        {kInfoIsCopy,      u"0"},
        {kInfoMpegVersion, u"" },
        {kInfoSampleRate,  u"0"},
        {kInfoYear,        u"" },
    };
    EXPECT_EQ(Read(std::string(20'000, '\0')), expected);
    EXPECT_EQ(Read(""), expected);
}

TEST_F(Mp3Reader, TrimsTitleArtistAndAlbumAlone)
{
    std::string tag(128, '\0');
    tag.replace(0, 3, "TAG");
    tag.replace(3, 30, std::string(" Title") + std::string(24, ' '));
    tag.replace(33, 8, " Artist ");
    tag.replace(63, 7, "\tAlbum ");
    tag.replace(93, 4, "98  ");
    tag.replace(97, 9, " Comment ");
    tag[127] = 17;
    const MediaInfo info = Read(Frame(Header(), 417) + tag);
    EXPECT_EQ(GetInfoText(info, kInfoTitle), u"Title");
    EXPECT_EQ(GetInfoText(info, kInfoArtist), u"Artist");
    EXPECT_EQ(GetInfoText(info, kInfoAlbum), u"Album");
    EXPECT_EQ(GetInfoText(info, kInfoYear), u"98  ");
    EXPECT_EQ(GetInfoText(info, kInfoComment), u" Comment ");
    EXPECT_EQ(GetInfoText(info, kInfoGenre), u"Rock");
}

TEST_F(Mp3Reader, AFileThatCannotBeOpenedLeavesAnEmptyRecord)
{
    MediaInfo info = {
        {kInfoTitle, u"of another file"}
    };
    EXPECT_FALSE(helper_.ReadMP3Info(folder_.GetPath("missing.mp3"), info));
    EXPECT_TRUE(info.empty());
}

struct GapCase {
    const char* name;
    std::size_t gap; // Bytes in front of the second frame.
    StringView bitrate;
};

class Mp3GapTest : public testing::TestWithParam<GapCase> {};

// The frames have 128 and 320 kbit/s: their average shows whether the second was found.
TEST_P(Mp3GapTest, EndsTheWalkWhereItIsTooLong)
{
    Header second;
    second.bitRate = 14;
    const test::TempFolder folder;
    folder.Write("a.mp3",
                 Frame(Header(), 417) + std::string(GetParam().gap, '\0') + Frame(second, 1044));
    MediaInfo info;
    CKivoMediaHelper().ReadMP3Info(folder.GetPath("a.mp3"), info);
    EXPECT_EQ(GetInfoText(info, kInfoBitrate), GetParam().bitrate);
}

constexpr GapCase kGapCases[] = {
    {"NoGap",                 0,      u"224"},
    {"TheLastOfThePositions", 10'000, u"224"},
    {"OneBehindThem",         10'001, u"128"},
};

INSTANTIATE_TEST_SUITE_P(Mp3Reader,
                         Mp3GapTest,
                         testing::ValuesIn(kGapCases),
                         test::CaseName<GapCase>);

TEST(MpegFrame, BitRatesFollowVersionAndLayer)
{
    struct Row {
        const char* name;
        unsigned version;
        unsigned layerField;
        unsigned index;
        int rate;
    };
    constexpr Row kRows[] = {
        {"1 I",        3, 3, 14, 448},
        {"1 II",       3, 2, 14, 384},
        {"1 III",      3, 1, 14, 320},
        {"1 III low",  3, 1, 1,  32 },
        {"2 I",        2, 3, 14, 256},
        {"2 I low",    2, 3, 1,  32 },
        {"2 II",       2, 2, 14, 160},
        {"2.5 III",    0, 1, 1,  8  },
        {"free",       3, 1, 0,  0  },
        {"bad",        3, 1, 15, -1 },
        {"no layer",   3, 0, 9,  0  },
        {"no version", 1, 1, 9,  80 },
    };
    for (const Row& row : kRows) {
        SCOPED_TRACE(row.name);
        std::uint32_t header = 0xFFE00000U | row.version << 19 | row.layerField << 17;
        header |= row.index << 12;
        EXPECT_EQ(GetBitRate(DecodeStream(header), header), row.rate);
    }
}

TEST(MpegFrame, LayerIRoundsBeforeItsFactor)
{
    MpegStream stream;
    stream.layer = 1;
    constexpr std::uint32_t kPadded = 1U << 9;
    EXPECT_EQ(GetFrameSize(stream, 0, 128, 44100), 136);
    EXPECT_EQ(GetFrameSize(stream, kPadded, 128, 44100), 140);
    EXPECT_EQ(GetFrameSize(stream, 0, -1, 8000), -4);
}

std::string RandomBytes(std::mt19937& random, std::size_t size, unsigned syncShare)
{
    std::string bytes(size, '\0');
    for (char& byte : bytes)
        byte = static_cast<char>(random() % 100 < syncShare ? 0xFF : random() & 0xFFU);
    return bytes;
}

std::string RandomFrames(std::mt19937& random, std::size_t size)
{
    std::string bytes;
    while (bytes.size() < size) {
        Header header;
        header.bitRate = random() % 16;
        header.sampling = random() % 4;
        header.padding = random() % 2;
        bytes += Frame(header, 4 + random() % 1500);
        if (random() % 10 == 0)
            bytes += std::string(random() % 10'100, '\x01');
    }
    return bytes;
}

TEST(Mp3Walk, TheBufferedWalkEqualsTheLiteralOne)
{
    std::mt19937 random(20);
    std::vector<std::string> files = {
        "", "\xFF\xFB\x90", "\xFF\xFB\x90\x64", "\xFF\xFF\xFF\xFF\xFF"};
    for (const std::size_t size : {5'000U, 262'144U, 262'145U, 262'147U, 700'000U}) {
        files.push_back(RandomBytes(random, size, 0));
        files.push_back(RandomBytes(random, size, 50));
        files.push_back(RandomFrames(random, size));
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
