#include "tests/platform/engine/EngineRun.h"
#include "tests/platform/engine/SoundServer.h"
#include "tests/support/TestLoop.h"

#include <gtest/gtest.h>

#include <chrono>

namespace kivo::test {

namespace {

class SoundTest : public testing::Test {
public:
    void SetUp() override
    {
        if (!SoundServer::IsInstalled())
            GTEST_SKIP() << "PulseAudio isn't installed.";
        ASSERT_TRUE(server.Start());
    }

    SoundServer server;
    EngineRun run{MediaEngineSettings()};
};

TEST_F(SoundTest, SoundGoesToTheServer)
{
    run.Do("long.mp3 @3");
    EXPECT_TRUE(RunUntil([&] { return server.HasStream(); }, 3'000));
    run.Get().Stop();
    EXPECT_TRUE(RunUntil([&] { return !server.HasStream(); }, 3'000));
}

TEST_F(SoundTest, AServerThatStandsStillHoldsUpTheSongButNotTheProgram)
{
    run.Do("long.mp3 @3");
    RunFor(300);
    server.Freeze();
    ResetLongestTurn();
    EXPECT_TRUE(run.RunToState(6, 5'000)) << "A listener would count the song to its end.";
    run.Do("pause quiet play");
    run.Get().SetVolume(20);
    run.Do("seek=3 quiet");
    EXPECT_LT(GetLongestTurn(), 50);
    server.Thaw();
    EXPECT_TRUE(RunUntil([&] { return run.Get().GetPosition() > 3.2; }, 10'000));
    EXPECT_EQ(run.Get().GetPlayState(), 3);
    EXPECT_EQ(run.GetTrace(), "9 3 6 2 3");
}

TEST_F(SoundTest, AnEndWhileTheServerStandsStillIsGivenUpInTime)
{
    run.Do("long.mp3 @3");
    RunFor(200);
    server.Freeze();
    run.Do("pause quiet");
    const auto start = std::chrono::steady_clock::now();
    run.End();
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(2'200));
    server.Thaw();
}

TEST_F(SoundTest, ASongThatNeverMovesAgainIsGivenUp)
{
    run.Do("long.mp3 @3");
    server.Freeze();
    EXPECT_TRUE(run.RunToState(8, 10'000));
    EXPECT_EQ(run.GetTrace(), "9 3 6 8");
    server.Thaw();
}

TEST_F(SoundTest, AServerThatDiesAndComesBackIsFoundAgain)
{
    run.Do("long.mp3 @3");
    RunFor(300);
    server.Kill();
    const double before = run.Get().GetPosition();
    EXPECT_TRUE(RunUntil([&] { return run.Get().GetPosition() > before + 1; }, 5'000));
    EXPECT_EQ(run.GetTrace(), "9 3");
    ASSERT_TRUE(server.Start());
    EXPECT_TRUE(RunUntil([&] { return server.HasStream(); }, 5'000));
    EXPECT_EQ(run.GetTrace(), "9 3");
}

} // namespace

} // namespace kivo::test
