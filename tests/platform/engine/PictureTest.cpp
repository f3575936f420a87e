#include "tests/platform/engine/EngineRun.h"
#include "tests/support/TestLoop.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <utility>

namespace kivo::test {

namespace {

struct Pixel {
    int blue = -1;
    int green = -1;
    int red = -1;

    [[nodiscard]] bool IsRed() const { return red > 200 && green < 60 && blue < 60; }
    [[nodiscard]] bool IsBlack() const { return red >= 0 && red + green + blue < 30; }
};

class PictureTest : public testing::Test {
public:
    PictureTest() { run.Get().SetFrameListener(Delegate<>(this, &PictureTest::OnFrame)); }

    void OnFrame() { ++frames; }

    // The pixel in the middle of the height; {} without a picture.
    Pixel Paint(double x = 0.5)
    {
        Pixel pixel;
        size = {0, 0};
        run.Get().PaintFrame([&](const VideoFrame& frame) {
            size = {frame.width, frame.height};
            const auto column = static_cast<int>(x * (frame.width - 1));
            const std::uint8_t* const at =
                frame.bits + frame.height / 2 * frame.stride + 4 * column;
            pixel = {at[0], at[1], at[2]};
        });
        return pixel;
    }

    bool ShowRed(int width, int height)
    {
        run.Get().SetSurface(width, height, /*visible=*/true);
        run.SetFile("red.mp4");
        return RunToFrame();
    }

    bool RunToFrame(int milliseconds = 3'000) const
    {
        const int before = frames;
        return RunUntil([&] { return frames > before; }, milliseconds);
    }

    EngineRun run;
    int frames = 0;
    std::array<int, 2> size = {0, 0};
};

TEST_F(PictureTest, AVideoFillsTheSurfaceAndKeepsItsShape)
{
    EXPECT_FALSE(Paint().IsRed());
    ASSERT_TRUE(ShowRed(160, 120));
    EXPECT_TRUE(Paint().IsRed());
    EXPECT_EQ(size, (std::array<int, 2>{160, 120}));
    run.Get().SetSurface(400, 60, /*visible=*/true);
    ASSERT_TRUE(RunUntil([&] { return Paint().IsRed() && size[0] == 400; }, 3'000));
    EXPECT_TRUE(Paint(0.0).IsBlack());
    EXPECT_TRUE(Paint(1.0).IsBlack());
}

TEST_F(PictureTest, ListenersAreCalledOnceUntilThePictureIsPainted)
{
    ASSERT_TRUE(ShowRed(64, 48));
    RunFor(300);
    EXPECT_EQ(frames, 1);
    Paint();
    EXPECT_TRUE(RunToFrame());
}

TEST_F(PictureTest, HiddenItPlaysOnAndIsThereAgainWhenShown)
{
    ASSERT_TRUE(ShowRed(64, 48));
    run.Get().SetSurface(64, 48, /*visible=*/false);
    const double before = run.Get().GetPosition();
    RunFor(600);
    EXPECT_GT(run.Get().GetPosition(), before + 0.4);
    Paint();
    run.Get().SetSurface(64, 48, /*visible=*/true);
    EXPECT_TRUE(RunToFrame());
    EXPECT_TRUE(Paint().IsRed());
    EXPECT_EQ(run.GetTrace(), "9 3");
}

TEST_F(PictureTest, WhilePausedItIsDrawnAtItsFirstShowingAndAtEachSize)
{
    run.Do("red.mp4 @3 pause @2 quiet");
    for (const auto& [width, height] : {
             std::pair{64,  48 },
             {300, 200}
    }) {
        run.Get().SetSurface(width, height, /*visible=*/true);
        ASSERT_TRUE(RunToFrame());
        EXPECT_TRUE(Paint().IsRed());
        EXPECT_EQ(size, (std::array<int, 2>{width, height}));
        RunFor(100);
        Paint();
    }
}

TEST_F(PictureTest, NothingOfTheOldPictureIsLeft)
{
    ASSERT_TRUE(ShowRed(64, 48));
    ASSERT_TRUE(Paint().IsRed());
    run.Do("stop");
    EXPECT_FALSE(run.Get().PaintFrame([](const VideoFrame&) {}));
    run.Do("play");
    ASSERT_TRUE(RunToFrame());
    run.SetFile("long.mp4");
    bool isMixed = false;
    RunUntil(
        [&] {
            // The new one is colourful, but nowhere red from side to side.
            isMixed = isMixed || (Paint(0.1).IsRed() && Paint().IsRed() && Paint(0.9).IsRed());
            return run.Get().GetPosition() > 0.3;
        },
        5'000);
    EXPECT_FALSE(isMixed);
    EXPECT_EQ(size[0], 64) << "The new one is there.";
    run.Do("tone.mp3 @3");
    EXPECT_FALSE(run.Get().PaintFrame([](const VideoFrame&) {}));
}

TEST_F(PictureTest, ASurfaceOfAnySizeIsBorne)
{
    run.Do("red.mp4 @3");
    for (const auto& [width, height] : {
             std::pair{0,   0  },
             {1,   1  },
             {-5,  10 },
             {3,   700},
             {700, 3  },
             {0,   50 }
    }) {
        run.Get().SetSurface(width, height, /*visible=*/true);
        RunFor(60);
        Paint();
    }
    EXPECT_EQ(run.GetTrace(), "9 3");
}

TEST_F(PictureTest, TheEngineMayEndWhileItDraws)
{
    run.Get().SetSurface(320, 240, /*visible=*/true);
    run.SetFile("long.mp4");
    ASSERT_TRUE(RunToFrame());
    ResetLongestTurn();
    run.End();
    RunFor(50);
}

} // namespace

} // namespace kivo::test
