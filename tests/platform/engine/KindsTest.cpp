#include "tests/platform/engine/EngineRun.h"
#include "tests/support/CaseName.h"

#include <gtest/gtest.h>

namespace kivo::test {

namespace {

struct KindCase {
    const char* name;
    const char* file;
    const char* trace;
};

constexpr KindCase kKinds[] = {
    {"Mp3",           "tone.mp3",       "9 3 8"},
    {"Ogg",           "tone.ogg",       "9 3 8"},
    {"Opus",          "tone.opus",      "9 3 8"},
    {"Flac",          "tone.flac",      "9 3 8"},
    {"Wav",           "tone.wav",       "9 3 8"},
    {"Wma",           "tone.wma",       "9 3 8"},
    {"M4a",           "tone.m4a",       "9 3 8"},
    {"Mp4",           "tone.mp4",       "9 3 8"},
    {"Avi",           "tone.avi",       "9 3 8"},
    {"Mpg",           "tone.mpg",       "9 3 8"},
    {"Mkv",           "tone.mkv",       "9 3 8"},
    {"TinyWav",       "tiny.wav",       "9 3 8"},
    {"TinyMp3",       "tiny.mp3",       "9 3 8"},
    {"VbrNoHeader",   "vbr.mp3",        "9 3 8"},
    {"NoLengthMkv",   "nolength.mkv",   "9 3 8"},
    {"NoLengthH264",  "nolength.h264",  "9 3 8"},
    {"SilentVideo",   "silent.mp4",     "9 3 8"},
    {"Anamorphic",    "anamorphic.mp4", "9 3 8"},
    {"CoverMp3",      "cover.mp3",      "9 3 8"},
    {"CoverFlac",     "cover.flac",     "9 3 8"},
    {"CoverM4a",      "cover.m4a",      "9 3 8"},
    {"EmptyFile",     "empty.mp3",      "9 8"  },
    {"TextFile",      "text.mp3",       "9 8"  },
    {"Zeros",         "zeros.mp3",      "9 8"  },
    {"PictureAlone",  "picture.mp3",    "9 8"  },
    {"Folder",        "hls",            "9 8"  },
    {"Missing",       "not-there.mp3",  "9 10" },
    {"BelowAFile",    "tone.mp3/a.mp3", "9 10" },
    {"LocalPlaylist", "hls/list.m3u8",  "9 8"  },
};

class KindsTest : public testing::TestWithParam<KindCase> {};

TEST_P(KindsTest, GivesItsTrace)
{
    EngineRun run;
    run.SetFile(GetParam().file);
    const std::string trace = GetParam().trace;
    run.RunToState(trace.ends_with("10") ? 10 : 8);
    EXPECT_EQ(run.GetTrace(), trace);
}

INSTANTIATE_TEST_SUITE_P(Kinds, KindsTest, testing::ValuesIn(kKinds), CaseName<KindCase>);

} // namespace

} // namespace kivo::test
