#include "tests/platform/engine/EngineRun.h"
#include "tests/support/CaseName.h"
#include "tests/support/TestLoop.h"

#include <gtest/gtest.h>

#include <vector>

namespace kivo::test {

namespace {

struct FactsCase {
    const char* name;
    const char* file;
    double length;
    int width;
    int height;
};

constexpr FactsCase kFacts[] = {
    {"Mp3",          "tone.mp3",       0.6, 0,   0 },
    {"Ogg",          "tone.ogg",       0.6, 0,   0 },
    {"Opus",         "tone.opus",      0.6, 0,   0 },
    {"Flac",         "tone.flac",      0.6, 0,   0 },
    {"Wma",          "tone.wma",       0.6, 0,   0 },
    {"CoverMp3",     "cover.mp3",      0.6, 0,   0 },
    {"CoverFlac",    "cover.flac",     0.6, 0,   0 },
    {"CoverM4a",     "cover.m4a",      0.6, 0,   0 },
    {"VbrNoHeader",  "vbr.mp3",        0.6, 0,   0 },
    {"Mp4",          "tone.mp4",       0.6, 64,  48},
    {"Avi",          "tone.avi",       0.6, 64,  48},
    {"Anamorphic",   "anamorphic.mp4", 0.6, 102, 58},
    {"NoLengthMkv",  "nolength.mkv",   0.4, 64,  48},
    {"NoLengthH264", "nolength.h264",  0.4, 64,  48},
};

class FactsTest : public testing::TestWithParam<FactsCase> {};

TEST_P(FactsTest, LengthAndPictureAreKnownWhenItStarts)
{
    const FactsCase& row = GetParam();
    EngineRun run;
    double length = -1;
    int width = -1;
    run.onState = [&](int state) {
        if (state == 3) {
            length = run.Get().GetDuration();
            width = run.Get().GetImageWidth();
        }
    };
    run.SetFile(row.file);
    run.RunToState(3);
    EXPECT_NEAR(length, row.length, row.length == 0.4 ? 1e-9 : 0.15);
    EXPECT_EQ(width > 0, row.width > 0);
    EXPECT_TRUE(RunUntil([&] { return run.Get().GetImageWidth() == row.width; }, 500))
        << run.Get().GetImageWidth();
    EXPECT_EQ(run.Get().GetImageHeight(), row.height);
}

INSTANTIATE_TEST_SUITE_P(Facts, FactsTest, testing::ValuesIn(kFacts), CaseName<FactsCase>);

TEST(Facts, TheItemTellsWhatItIs)
{
    EngineRun run;
    EXPECT_EQ(run.Get().GetItemInfo(u"Title"), u"");
    run.SetFile("tone.mp3");
    run.RunToState(3);
    const auto get = [&](const char16_t* name) { return run.Get().GetItemInfo(name); };
    EXPECT_TRUE(RunUntil([&] { return get(u"Author") == u"Its Maker"; }, 500));
    EXPECT_EQ(get(u"Title"), u"A Tone");
    EXPECT_EQ(get(u"Album"), u"Tones");
    EXPECT_EQ(get(u"FileSize"), u"5324");
    EXPECT_EQ(get(u"FileType"), u"mp3");
    EXPECT_EQ(get(u"SourceURL"), run.Get().GetURL());
    EXPECT_EQ(get(u"Duration").substr(0, 3), u"0.6");
    EXPECT_EQ(get(u"Station"), u"");
    EXPECT_EQ(get(u"title"), u"");
}

TEST(Facts, VolumeIsKeptBetweenEngines)
{
    MediaEngineVolume kept = {35, true};
    std::vector<MediaEngineVolume> stored;
    MediaEngineSettings settings = EngineRun::Silent();
    settings.loadVolume = [&] { return kept; };
    settings.storeVolume = [&](const MediaEngineVolume& volume) {
        kept = volume;
        stored.push_back(volume);
    };
    {
        EngineRun run(settings);
        EXPECT_EQ(run.Get().GetVolume(), 35);
        EXPECT_TRUE(run.Get().GetMute());
        run.Get().SetVolume(140);
        run.Get().SetMute(/*on=*/false);
        EXPECT_EQ(run.Get().GetVolume(), 100);
        run.Get().SetVolume(-3);
        EXPECT_EQ(run.Get().GetVolume(), 0);
        run.Get().SetVolume(42);
    }
    EXPECT_EQ(stored.size(), 4U);
    EXPECT_EQ(kept, (MediaEngineVolume{42, false}));
    EXPECT_EQ(EngineRun(settings).Get().GetVolume(), 42);
    EXPECT_EQ(EngineRun().Get().GetVolume(), 60);
}

TEST(Facts, PositionsMoveAndAreWrittenAsTime)
{
    EngineRun run;
    run.SetFile("long.mp3");
    run.RunToState(3);
    run.Get().SetPosition(21);
    EXPECT_EQ(run.Get().GetPositionString(), u"0:21");
    EXPECT_EQ(run.Get().GetDurationString(), u"0:30");
    EXPECT_TRUE(RunUntil([&] { return run.Get().GetPosition() > 21.3; }, 3'000));
}

} // namespace

} // namespace kivo::test
