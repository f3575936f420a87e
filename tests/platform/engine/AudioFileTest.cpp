#include "tests/platform/engine/EngineRun.h"
#include "tests/support/TempFolder.h"
#include "tests/support/TestLoop.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <string>

namespace kivo::test {

namespace {

constexpr std::size_t kHeaderBytes = 44;

struct Wave {
    int channels = 0;
    int rate = 0;
    std::uint32_t dataBytes = 0;
    double seconds = 0;
    double loudness = 0; // Decibels below full scale.
};

template <class T>
T ReadAt(const std::string& bytes, std::size_t at)
{
    T number = 0;
    std::memcpy(&number, bytes.data() + at, sizeof number);
    return number;
}

Wave ReadWave(const std::string& bytes)
{
    Wave wave;
    if (bytes.size() < kHeaderBytes || !bytes.starts_with("RIFF") || bytes.substr(36, 4) != "data")
        return wave;
    wave.channels = ReadAt<std::uint16_t>(bytes, 22);
    wave.rate = static_cast<int>(ReadAt<std::uint32_t>(bytes, 24));
    wave.dataBytes = ReadAt<std::uint32_t>(bytes, 40);
    wave.seconds = static_cast<double>(wave.dataBytes) / 2 / wave.channels / wave.rate;
    double sum = 0;
    for (std::size_t at = kHeaderBytes; at + 2 <= bytes.size(); at += 2)
        sum += std::pow(ReadAt<std::int16_t>(bytes, at) / 32768.0, 2);
    wave.loudness = 10 * std::log10(sum / (wave.dataBytes / 2.0));
    return wave;
}

class AudioFileTest : public testing::Test {
public:
    AudioFileTest()
    {
        settings.audioFile = folder.GetPath("out.wav");
        settings.audioFileFailed = [this] { ++failures; };
        settings.loadVolume = [] { return MediaEngineVolume{5, true}; };
        settings.storeVolume = [](const MediaEngineVolume&) { ADD_FAILURE() << "Not for ears."; };
    }

    void Play(EngineRun& run, const std::string& file)
    {
        run.Clear();
        run.SetFile(file);
        EXPECT_TRUE(run.RunToState(8));
        EXPECT_EQ(run.GetTrace(), "9 3 8") << file;
    }

    const TempFolder folder;
    MediaEngineSettings settings;
    int failures = 0;
};

TEST_F(AudioFileTest, HoldsATrackAsLongAndAsLoudAsItIs)
{
    const auto start = std::chrono::steady_clock::now();
    {
        EngineRun run(settings);
        Play(run, "long.mp3");
        run.Get().SetVolume(10);
        EXPECT_FALSE(folder.Has("out.wav"));
    }
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(10));
    const std::string bytes = folder.Read("out.wav");
    const Wave wave = ReadWave(bytes);
    EXPECT_EQ(bytes.size(), kHeaderBytes + wave.dataBytes);
    EXPECT_EQ(wave.channels, 1);
    EXPECT_EQ(wave.rate, 44'100);
    EXPECT_NEAR(wave.seconds, 30, 0.05);
    // The sine that it was made from: an eighth of full scale.
    EXPECT_NEAR(wave.loudness, -21.1, 1);
    EXPECT_EQ(folder.List(), std::vector<std::string>{"out.wav"}) << "Nothing is left beside it.";
    EXPECT_EQ(failures, 0);
}

TEST_F(AudioFileTest, ManyTracksFollowEachOtherInTheFormatOfTheFirst)
{
    {
        EngineRun run(settings);
        for (const char* file : {"mono.wav", "tone.flac", "tone.opus", "tone.mp4", "tone.wma"})
            Play(run, file);
    }
    const Wave wave = ReadWave(folder.Read("out.wav"));
    EXPECT_EQ(wave.channels, 1);
    EXPECT_EQ(wave.rate, 22'050);
    EXPECT_NEAR(wave.seconds, 0.5 + 4 * 0.6, 0.2);
}

TEST_F(AudioFileTest, AVideoWithoutSoundPlaysAndAddsNothing)
{
    {
        EngineRun run(settings);
        Play(run, "silent.mp4");
        Play(run, "mono.wav");
    }
    EXPECT_NEAR(ReadWave(folder.Read("out.wav")).seconds, 0.5, 0.05);
}

TEST_F(AudioFileTest, WithoutATrackTheFileIsWholeAndEmpty)
{
    EngineRun(settings).End();
    const std::string bytes = folder.Read("out.wav");
    EXPECT_EQ(bytes.size(), kHeaderBytes);
    EXPECT_EQ(ReadWave(bytes).dataBytes, 0U);
}

TEST_F(AudioFileTest, AFileThatCannotBeWrittenIsTold)
{
    settings.audioFile = folder.GetPath("no-folder/out.wav");
    {
        EngineRun run(settings);
        Play(run, "tiny.wav");
        EXPECT_EQ(failures, 0);
    }
    EXPECT_EQ(failures, 1);
}

TEST_F(AudioFileTest, AnOlderTargetStandsUntilTheNewOneIsWhole)
{
    folder.Write("out.wav", "old");
    {
        EngineRun run(settings);
        Play(run, "tiny.wav");
        EXPECT_EQ(folder.Read("out.wav"), "old");
    }
    EXPECT_TRUE(folder.Read("out.wav").starts_with("RIFF"));
}

} // namespace

} // namespace kivo::test
