#include "tests/platform/engine/Damage.h"

#include "tests/platform/engine/EngineRun.h"
#include "tests/support/TempFolder.h"
#include "tests/support/TestLoop.h"

#include <gtest/gtest.h>

#include <cstring>
#include <iterator>
#include <random>
#include <string>

namespace kivo::test {

namespace {

constexpr const char* kKinds[] = {"tone.mp3",
                                  "tone.ogg",
                                  "tone.opus",
                                  "tone.flac",
                                  "tone.wav",
                                  "tone.wma",
                                  "tone.m4a",
                                  "tone.mp4",
                                  "tone.avi",
                                  "tone.mpg",
                                  "tone.mkv",
                                  "cover.mp3"};
constexpr int kVariants = 200;
constexpr double kSpeed = 16;

// One process, one engine, as a listener's evening with a bad disk. Whatever is in a file, it comes
// to one defined end: played and ended, or not playable.
TEST(Damage, EveryVariantComesToADefinedEnd)
{
    const TempFolder folder;
    std::mt19937 random(20'061'124); // NOLINT(bugprone-random-generator-seed): the same each time
    EngineRun run(EngineRun::Silent(), kSpeed);
    run.Get().SetSurface(64, 48, /*visible=*/true);
    int played = 0;
    for (int i = 0; i < kVariants; ++i) {
        const std::string name = kKinds[static_cast<std::size_t>(i) % std::size(kKinds)];
        const std::string file = std::to_string(i) + name;
        SCOPED_TRACE(file);
        folder.Write(file, DamageBytes(ReadMedia(name), random));
        run.Clear();
        run.SetBytes((folder.GetNative() / file).string());
        ASSERT_TRUE(run.RunToState(8, 60'000)) << run.GetTrace();
        const std::string trace = run.GetTrace();
        EXPECT_TRUE(trace.starts_with("9 ")) << trace;
        EXPECT_EQ(trace.find('8'), trace.size() - 1) << trace;
        played += trace.find('3') != std::string::npos ? 1 : 0;
    }
    EXPECT_GT(played, kVariants / 4) << "Hardly anything was decoded: the damage is too coarse.";
}

// Buttons in any order and at any moment, over good and bad addresses: what is told at a start
// belongs together, and the last address reaches its proper end.
class RandomDriver {
public:
    explicit RandomDriver(unsigned seed)
        : random_(seed)
    {
        run_.onState = [this](int state) {
            if (state == 3)
                CheckStart();
        };
    }

    void Burst()
    {
        for (int i = 0; i < 8; ++i) {
            Step();
            RunFor(static_cast<int>(random_() % 60));
        }
        Set();
        EXPECT_TRUE(run_.RunToState(current_->state, 5'000))
            << current_->file << ": " << run_.GetTrace();
        run_.Get().Stop();
        run_.Clear();
    }

private:
    struct Item {
        const char* file;
        double length;
        bool hasPicture;
        int state;
    };
    static constexpr Item kItems[] = {
        {"long.mp3",     30,   false, 3 },
        {"long.mp4",     20,   true,  3 },
        {"red.mp4",      20,   true,  3 },
        {"slides.mp4",   12,   true,  3 },
        {"tone.flac",    0.6,  false, 8 },
        {"tone.mkv",     0.6,  true,  8 },
        {"nolength.mkv", 0.4,  true,  8 },
        {"tiny.wav",     0.02, false, 8 },
        {"cover.mp3",    0.6,  false, 8 },
        {"gone.mp3",     0,    false, 10},
    };

    void Set()
    {
        current_ = &kItems[random_() % std::size(kItems)];
        run_.SetFile(current_->file);
    }

    void Step()
    {
        static constexpr const char* kWords[] = {"stop", "pause", "play"};
        const auto choice = random_() % 6;
        if (choice < 2)
            Set();
        else if (choice == 2)
            run_.Get().SetPosition(static_cast<double>(random_() % 20));
        else
            run_.Do(kWords[choice - 3]);
    }

    void CheckStart()
    {
        ASSERT_NE(current_, nullptr);
        SCOPED_TRACE(current_->file);
        const String file = run_.Get().GetURL();
        EXPECT_TRUE(
            file.ends_with(String(current_->file, current_->file + std::strlen(current_->file))));
        EXPECT_NEAR(run_.Get().GetDuration(), current_->length, 0.2);
        EXPECT_EQ(run_.Get().GetImageWidth() > 0, current_->hasPicture);
        EXPECT_LT(current_->state, 10) << "A file that isn't there plays.";
    }

    std::mt19937 random_;
    const Item* current_ = nullptr;
    EngineRun run_;
};

TEST(Damage, ButtonsInAnyOrderKeepTheStatesTrue)
{
    RandomDriver driver(4'711);
    ResetLongestTurn();
    for (int i = 0; i < 20; ++i) {
        SCOPED_TRACE(i);
        driver.Burst();
        if (testing::Test::HasFailure())
            return;
    }
    EXPECT_LT(GetLongestTurn(), 100);
}

} // namespace

} // namespace kivo::test
