#include "tests/end_to_end/Desktop.h"

#include <gtest/gtest.h>

#include <csignal>
#include <filesystem>

namespace kivo::test {
namespace {

namespace fs = std::filesystem;

class FirstDay : public testing::Test {
protected:
    void SetUp() override
    {
        if (!desktop_.IsUp())
            GTEST_SKIP() << "Xvfb, openbox or xdotool isn't installed";
    }

    void Stop()
    {
        desktop_.Signal(SIGTERM);
        EXPECT_EQ(desktop_.WaitForEnd(), 0);
    }

    // The frame's, above the window.
    void DoubleClickTitle()
    {
        const Seen window = desktop_.Find("window", "kivo");
        desktop_.Do("mousemove --sync " + std::to_string(window.x + 90) + " " +
                    std::to_string(window.y - 8) + " click --repeat 2 --delay 60 1");
    }

    Desktop desktop_;
};

void ExpectSamePlace(const Seen& one, const Seen& other)
{
    EXPECT_EQ(one.x, other.x);
    EXPECT_EQ(one.y, other.y);
    EXPECT_EQ(one.width, other.width);
    EXPECT_EQ(one.height, other.height);
}

TEST_F(FirstDay, TheWindowComesBackAsItWas)
{
    desktop_.Start();
    desktop_.Do("getactivewindow windowsize --sync 420 760 windowmove --sync 300 120");
    desktop_.Click("control", "Show or hide the picture");
    const Seen bar = desktop_.Find("control", "Height of the picture");
    desktop_.Drag(bar, bar.x + 60, bar.y - 80);
    EXPECT_TRUE(WaitUntil(
        [&] { return desktop_.Find("control", "Height of the picture").y <= bar.y - 70; }));
    desktop_.Click("control", "Volume");
    desktop_.Find("control", "Volume");
    desktop_.Press("Up Up Up Up");
    desktop_.Press("Escape");
    const Seen window = desktop_.Find("window", "kivo");
    const Seen pane = desktop_.Find("control", "Picture");
    Stop();

    desktop_.Start();
    ExpectSamePlace(desktop_.Find("window", "kivo"), window);
    desktop_.Click("control", "Show or hide the picture");
    ExpectSamePlace(desktop_.Find("control", "Picture"), pane);

    // Its own size and place survive a day on which it filled the screen.
    DoubleClickTitle();
    const auto isLarge = [this] { return desktop_.Find("window", "kivo").width > 1200; };
    EXPECT_TRUE(WaitUntil(isLarge));
    Stop();
    desktop_.Start();
    EXPECT_TRUE(WaitUntil(isLarge));
    DoubleClickTitle();
    EXPECT_TRUE(WaitUntil([&] { return !isLarge(); }));
    ExpectSamePlace(desktop_.Find("window", "kivo"), window);
}

} // namespace
} // namespace kivo::test
