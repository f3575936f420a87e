// What joining tracks could break: the ends that the core doesn't tell by itself.

#include "tests/platform/engine/EngineRun.h"
#include "tests/support/TestLoop.h"

#include <gtest/gtest.h>

namespace kivo::test {

namespace {

// Takes the next of a list inside each end, as a player does.
class List {
public:
    List(EngineRun& run, std::vector<std::string> files)
        : run_(run)
        , files_(std::move(files))
    {
        run_.onState = [this](int state) {
            if (state != 8)
                return;
            ++ends_;
            run_.Get().Stop();
        };
    }

    void Play()
    {
        run_.SetFile(files_.front());
        for (std::size_t i = 1; i <= files_.size(); ++i) {
            ASSERT_TRUE(RunUntil([&] { return ends_ == i; }, 5'000)) << run_.GetTrace();
            if (i < files_.size())
                run_.SetFile(files_[i]);
        }
    }

private:
    EngineRun& run_;
    std::vector<std::string> files_;
    std::size_t ends_ = 0;
};

TEST(Gapless, ManyKindsOneAfterAnother)
{
    EngineRun run;
    List list(run,
              {"tone.wav",
               "mono.wav",
               "tone.mp4",
               "tone.mp3",
               "text.mp3",
               "tone.ogg",
               "silent.mp4",
               "tiny.wav",
               "nolength.mkv",
               "tone.flac"});
    list.Play();
    EXPECT_EQ(run.GetTrace(), "9 3 8 9 3 8 9 3 8 9 3 8 9 8 9 3 8 9 3 8 9 3 8 9 3 8 9 3 8");
}

TEST(Gapless, ASeekToTheEndWhilePausedEndsAfterTheResume)
{
    EngineRun run;
    run.SetFile("long.mp3");
    run.RunToState(3);
    run.Get().Pause();
    run.RunToState(2);
    for (const double seconds : {29.7, 60.0, 29.8}) {
        run.Get().SetPosition(seconds);
        RunFor(200);
    }
    run.Get().Play();
    EXPECT_TRUE(run.RunToState(8, 4'000));
    EXPECT_EQ(run.GetTrace(), "9 3 2 3 8");
}

TEST(Gapless, AfterAnEndTheSameTrackPlaysAgain)
{
    EngineRun run;
    run.SetFile("tone.wav");
    run.RunToState(8);
    run.Get().Play();
    EXPECT_TRUE(run.RunToState(3, 4'000));
    EXPECT_TRUE(run.RunToState(8, 4'000));
    EXPECT_EQ(run.GetTrace(), "9 3 8 9 3 8");
}

TEST(Gapless, AUsersStopInTheTailIsAtOnceAndTheNextStartsClean)
{
    EngineRun run;
    run.SetFile("tone.wav");
    run.RunToState(8);
    run.Get().Stop();
    run.SetFile("tone.flac");
    EXPECT_TRUE(run.RunToState(3, 4'000));
    EXPECT_TRUE(run.RunToState(8, 4'000));
    EXPECT_EQ(run.GetTrace(), "9 3 8 9 3 8");
}

TEST(Gapless, AStopInMidTrackAndAnotherAddressNeverJoin)
{
    EngineRun run;
    run.SetFile("long.mp3");
    run.RunToState(3);
    run.SetFile("long.mp4");
    run.RunToState(3);
    EXPECT_TRUE(RunUntil([&] { return run.Get().GetPosition() > 0.3; }, 3'000));
    EXPECT_EQ(run.Get().GetImageWidth(), 320);
    run.Get().Stop();
    run.RunToState(1);
    EXPECT_EQ(run.GetTrace(), "9 3 1 9 3 1");
}

} // namespace

} // namespace kivo::test
