// The silence between two tracks, recorded from the sound server that hears them.

#include "tests/platform/engine/SoundServer.h"
#include "tests/player/PanelRun.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <vector>

namespace kivo::test {

namespace {

// The silences between the first sound and the last, longest first, in milliseconds. The tone has
// a level far above the threshold and no quiet longer than a part of a millisecond.
std::vector<double> FindSilences(const std::vector<std::int16_t>& samples)
{
    constexpr int kQuiet = 150;
    constexpr double kShortest = 2;
    std::vector<double> silences;
    std::size_t lastLoud = samples.size();
    for (std::size_t i = 0; i < samples.size(); ++i) {
        if (std::abs(samples[i]) < kQuiet)
            continue;
        if (lastLoud < i) {
            const double length =
                1000.0 * static_cast<double>(i - lastLoud - 1) / SoundServer::kRecordedRate;
            if (length >= kShortest)
                silences.push_back(length);
        }
        lastLoud = i;
    }
    std::sort(silences.rbegin(), silences.rend());
    return silences;
}

// From the first sound to the last, in seconds.
double GetLength(const std::vector<std::int16_t>& samples)
{
    constexpr int kQuiet = 150;
    const auto isLoud = [](std::int16_t sample) { return std::abs(sample) >= kQuiet; };
    const auto first = std::find_if(samples.begin(), samples.end(), isLoud);
    const auto last = std::find_if(samples.rbegin(), samples.rend(), isLoud).base();
    return static_cast<double>(last - first) / SoundServer::kRecordedRate;
}

class GapTest : public testing::Test {
public:
    void SetUp() override
    {
        if (!SoundServer::IsInstalled())
            GTEST_SKIP() << "PulseAudio isn't installed.";
        ASSERT_TRUE(server.Start());
    }

    // One steady tone, cut into tracks of several kinds.
    [[nodiscard]] std::string MakeTrack(const std::string& name) const
    {
        std::string path = folder.GetNative() / name;
        const std::string command = "ffmpeg -nostdin -loglevel error -y -f lavfi -i "
                                    "sine=frequency=441:sample_rate=44100:duration=1.5 -ac 2 '" +
                                    path + "'";
        EXPECT_EQ(std::system(command.c_str()), 0); // NOLINT(concurrency-mt-unsafe): one thread
        return path;
    }

    [[nodiscard]] std::vector<double> PlayAndListen(MediaEngineSettings settings)
    {
        settings.loadVolume = [] { return MediaEngineVolume{100, /*mute=*/false}; };
        PanelRun run(settings);
        for (const char* name : {"a.wav", "b.flac", "c.wav", "d.ogg"})
            run.Add(MakeTrack(name));
        server.StartRecording();
        run.RunFor(500);
        run.Press(u"PlayBtn");
        EXPECT_TRUE(run.RunToStarts(4));
        EXPECT_TRUE(run.RunToRest(2'500));
        EXPECT_EQ(run.GetTrace(), "9 3 8 9 3 8 9 3 8 9 3 8");
        const std::vector<std::int16_t> samples = server.StopRecording();
        length = GetLength(samples);
        return FindSilences(samples);
    }

    double length = 0; // Of what was heard.
    SoundServer server;
    TempFolder folder;
};

TEST_F(GapTest, GaplessThereIsNone)
{
    MediaEngineSettings settings;
    settings.gapless = true;
    const std::vector<double> silences = PlayAndListen(settings);
    std::printf("figure track_gap_gapless %.1f ms\n", silences.empty() ? 0.0 : silences.front());
    EXPECT_TRUE(silences.empty()) << silences.size() << " up to " << silences.front();
    EXPECT_NEAR(length, 6, 0.02) << "Nothing is cut off, nor the tail of the last.";
}

TEST_F(GapTest, BetweenTwoTracksNobodyHearsASilence)
{
    const std::vector<double> silences = PlayAndListen({});
    ASSERT_EQ(silences.size(), 3U);
    std::printf("figure track_gap %.1f ms\n", silences[1]);
    // A machine with other work lengthens some; what is ours is in all of them.
    EXPECT_LE(silences.back(), 30) << "The longest: " << silences.front();
}

} // namespace

} // namespace kivo::test
