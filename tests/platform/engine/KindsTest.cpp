// What the engine tells of each kind of file.

#include "tests/platform/engine/EngineRun.h"
#include "tests/support/CaseName.h"
#include "tests/support/TestLoop.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <string>
#include <utility>

namespace kivo::test {

namespace {

struct KindCase {
    const char* file;
    const char* trace;
    double length = 0; // At the start. 0.4: the file doesn't say.
    int width = 0;
    int height = 0;
};

constexpr KindCase kKinds[] = {
    {"tone.mp3",  "9 3 8",         0.6},
    {"tone.ogg",           "9 3 8",                 0.6},
    {"tone.opus",        "9 3 8",       0.6},
    {"tone.flac","9 3 8",   0.6},
    {"tone.wav", "9 3 8",             0.6},
    {"tone.wma",           "9 3 8",                 0.6},
    {"tone.m4a",        "9 3 8",           0.6},
    {"tone.mp4","9 3 8",0.6, 64, 48},
    {"tone.avi",  "9 3 8",   0.6, 64, 48},
    {"tone.mpg",           "9 3 8",                 0.6, 64, 48},
    {"tone.mkv",        "9 3 8",                                0.6, 64, 48},
    {"tiny.wav",           "9 3 8",                 0.02},
    {"tiny.mp3",        "9 3 8",                   0.1},
    {"vbr.mp3",           "9 3 8",                 0.6}, // Without the head that says so.
    {"nolength.mkv",        "9 3 8",     0.4, 64, 48},
    {"nolength.h264",           "9 3 8",                 0.4, 64, 48},
    {"silent.mp4",        "9 3 8",0.6, 64, 48},
    {"anamorphic.mp4",           "9 3 8",                 0.6, 102, 58},
    {"cover.mp3",       "9 3 8",      0.6}, // Its picture doesn't move.
    {"cover.flac","9 3 8",0.6},
    {"cover.m4a",   "9 3 8", 0.6},
    {"empty.mp3",           "9 8"            },
    {"text.mp3",        "9 8"                },
    {"zeros.mp3",           "9 8"           },
    {"picture.mp3",        "9 8"    },
    {"hls",           "9 8"              }, // A folder.
    {"hls/list.m3u8",        "9 8"                               },
    {"not-there.mp3",           "9 10"          },
    {"tone.mp3/below-a-file.mp3",        "9 10"   },
};

class KindsTest : public testing::TestWithParam<KindCase> {};

TEST_P(KindsTest, TellsItsStatesItsLengthAndItsPicture)
{
    const KindCase& row = GetParam();
    EngineRun run;
    run.onState = [&](int state) {
        if (state != 3)
            return;
        EXPECT_NEAR(run.Get().GetDuration(), row.length, row.length == 0.4 ? 1e-9 : 0.15);
        EXPECT_EQ(run.Get().GetImageWidth() > 0, row.width > 0);
        EXPECT_EQ(run.Get().GetImageHeight() > 0, row.height > 0);
    };
    run.SetFile(row.file);
    const std::string trace = row.trace;
    if (row.width > 0) { // Its exact size comes with the first picture.
        EXPECT_TRUE(RunUntil([&] { return run.Get().GetImageWidth() == row.width; }, 5'000));
        EXPECT_EQ(run.Get().GetImageHeight(), row.height);
    }
    run.Do(trace.ends_with("10") ? "@10" : "@8");
    EXPECT_EQ(run.GetTrace(), trace);
}

INSTANTIATE_TEST_SUITE_P(Kinds, KindsTest, testing::ValuesIn(kKinds), [](const auto& row) {
    std::string name = row.param.file;
    std::replace_if(
        name.begin(), name.end(), [](char c) { return std::isalnum(c) == 0; }, '_');
    return name;
});

TEST(Kinds, TheItemTellsWhatItIs)
{
    EngineRun run;
    const auto get = [&](const char16_t* name) { return run.Get().GetItemInfo(name); };
    EXPECT_EQ(get(u"Title"), u"");
    run.Do("tone.mp3 @3");
    EXPECT_TRUE(RunUntil([&] { return get(u"Author") == u"Its Maker"; }, 500));
    for (const auto& [name, value] : {
             std::pair{u"Title",    u"A Tone"},
             {u"Album",    u"Tones" },
             {u"FileSize", u"5324"  },
             {u"FileType", u"mp3"   },
             {u"Station",  u""      },
             {u"title",    u""      }
    })
        EXPECT_EQ(get(name), value);
    EXPECT_EQ(get(u"SourceURL"), run.Get().GetURL());
    EXPECT_EQ(get(u"Duration").substr(0, 3), u"0.6");
}

TEST(Kinds, PositionsMoveAndAreWrittenAsTime)
{
    EngineRun run;
    run.Do("long.mp3 @3 seek=21");
    EXPECT_EQ(run.Get().GetPositionString(), u"0:21");
    EXPECT_EQ(run.Get().GetDurationString(), u"0:30");
    EXPECT_TRUE(RunUntil([&] { return run.Get().GetPosition() > 21.3; }, 3'000));
}

TEST(Volume, IsKeptBetweenEngines)
{
    MediaEngineVolume kept = {35, true};
    int stores = 0;
    MediaEngineSettings settings = EngineRun::Silent();
    settings.loadVolume = [&] { return kept; };
    settings.storeVolume = [&](const MediaEngineVolume& volume) {
        kept = volume;
        ++stores;
    };
    {
        EngineRun run(settings);
        EXPECT_EQ(run.Get().GetVolume(), 35);
        EXPECT_TRUE(run.Get().GetMute());
        run.Get().SetMute(/*on=*/false);
        for (const auto& [set, got] : {
                 std::pair{140, 100},
                 {-3,  0  },
                 {42,  42 }
        }) {
            run.Get().SetVolume(set);
            EXPECT_EQ(run.Get().GetVolume(), got);
        }
    }
    EXPECT_EQ(stores, 4);
    EXPECT_EQ(kept, (MediaEngineVolume{42, false}));
    EXPECT_EQ(EngineRun(settings).Get().GetVolume(), 42);
    EXPECT_EQ(EngineRun().Get().GetVolume(), 60);
}

} // namespace

} // namespace kivo::test
