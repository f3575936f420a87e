#include "player/MediaSliderBar.h"

#include "shell/contracts/ui/Canvas.h"

#include <gtest/gtest.h>

#include <utility>
#include <vector>

namespace kivo::tunehive {

namespace {

// Notes what is drawn.
class Thumbs final : public ui::ICanvas {
public:
    void FillRect(const Rect& /*rect*/, ui::COLORREF /*colour*/) override {}
    void DrawChannel(const Rect& /*channel*/, int /*played*/) override {}
    [[nodiscard]] bool HasThumb(int /*hover*/) const override { return hasImages; }
    void DrawThumb(const Rect& thumb, int /*hover*/, bool ghost) override
    {
        (ghost ? ghosts : thumbs).push_back(thumb.left);
    }

    bool hasImages = true;
    std::vector<int> thumbs;
    std::vector<int> ghosts;
};

// The thumb has 200 to go, from 50 on; by how far along the channel the hand is.
class MediaSliderBarTest : public testing::Test {
public:
    MediaSliderBarTest()
    {
        bar.ListenEvent(ui::kControlEvent, {this, &MediaSliderBarTest::OnDrop});
        bar.Create(nullptr);
        bar.SetThumbSize({10, 14});
        bar.SetBounds(50, 20, 210, 6);
        bar.SetLocked(/*locked=*/false);
        bar.SetRange(0, 100);
        bar.SetPosition(0);
    }

    void OnDrop(ui::CSkinObject* /*sender*/, void* /*data*/) { drops.push_back(bar.GetPosition()); }
    void Press(int x) { bar.OnLButtonDown(1, {x, 3}); }
    void Move(int x) { bar.OnMouseMove(1, {x, 3}); }
    void Drop(int x) { bar.OnLButtonUp(0, {x, 3}); }
    Thumbs Draw()
    {
        Thumbs thumbs;
        bar.RenderSelf(thumbs);
        return thumbs;
    }

    CMediaSliderBar bar;
    std::vector<int> drops;
};

TEST_F(MediaSliderBarTest, TheHandDragsAGhostAndTheThumbStays)
{
    Press(5);
    Move(55);
    Move(105);
    EXPECT_EQ(bar.GetPosition(), 0);
    EXPECT_EQ(bar.GetGhostPosition(), 50);
    EXPECT_EQ(Draw().thumbs, std::vector<int>{50});
    EXPECT_EQ(Draw().ghosts, std::vector<int>{150});
    Thumbs bare;
    bare.hasImages = false;
    bar.RenderSelf(bare);
    EXPECT_TRUE(bare.ghosts.empty());
    EXPECT_TRUE(drops.empty());
    Drop(105);
    Drop(105); // Without a press it is none.
    EXPECT_EQ(drops, std::vector<int>{50});
    EXPECT_EQ(Draw().thumbs, std::vector<int>{150});
    EXPECT_TRUE(Draw().ghosts.empty());
}

TEST_F(MediaSliderBarTest, TheCounterMovesTheThumbUnderTheDrag)
{
    Press(5);
    Move(105);
    bar.SetPosition(7); // A second has passed.
    EXPECT_EQ(Draw().thumbs, std::vector<int>{64});
    EXPECT_EQ(Draw().ghosts, std::vector<int>{150});
    Drop(105);
    EXPECT_EQ(drops, std::vector<int>{50});
    bar.SetPosition(bar.GetPosition() + 1);
    EXPECT_EQ(bar.GetPosition(), 51);
}

TEST_F(MediaSliderBarTest, PastAnEndTheGhostWaitsForTheHand)
{
    struct Step {
        int hand;
        int ghost;
    };
    Press(5);
    for (const Step& step : {
             Step{105,  50 },
             Step{900,  100}, // At the end, the hand 695 beyond.
             Step{800,  100},
             Step{206,  100},
             Step{105,  50 }, // Back inside.
             Step{-300, 0  },
             Step{-10,  0  },
             Step{25,   10 },
    }) {
        Move(step.hand);
        EXPECT_EQ(bar.GetGhostPosition(), step.ghost) << step.hand;
    }
}

TEST_F(MediaSliderBarTest, AnUprightOneGrowsUpwards)
{
    bar.SetVertical(1);
    bar.SetBounds(20, 50, 6, 214); // The thumb has 200 to go.
    bar.OnLButtonDown(1, {3, 205});
    for (const auto& [hand, ghost] : {
             std::pair{105,  50 },
             {5,    100},
             {-300, 100},
             {105,  50 },
             {205,  0  },
             {900,  0  }
    }) {
        bar.OnMouseMove(1, {3, hand});
        EXPECT_EQ(bar.GetGhostPosition(), ghost) << hand;
    }
    bar.OnMouseMove(1, {3, 55});
    bar.OnLButtonUp(0, {3, 55});
    EXPECT_EQ(drops, std::vector<int>{75});
}

TEST_F(MediaSliderBarTest, AClickOnTheChannelSeeksThere)
{
    Press(105);
    Drop(105);
    EXPECT_EQ(drops, std::vector<int>{50});
}

TEST_F(MediaSliderBarTest, LockedOrDisabledItTakesNoDrag)
{
    EXPECT_TRUE(CMediaSliderBar().IsLocked());
    for (const bool isLocked : {true, false}) {
        SCOPED_TRACE(isLocked);
        bar.SetLocked(isLocked);
        bar.SetEnabled(isLocked ? 1 : 0);
        Press(105);
        Move(155);
        Drop(155);
        bar.OnWheel(120);
        bar.OnKeyDown(ui::SliderKey::Last);
        EXPECT_FALSE(bar.IsDragging());
        EXPECT_EQ(bar.GetPosition(), 0);
    }
    EXPECT_TRUE(drops.empty());
}

TEST_F(MediaSliderBarTest, ALockEndsTheDragUnderWay)
{
    Press(5);
    Move(105);
    bar.SetLocked(/*locked=*/true); // The track has ended.
    bar.SetLocked(/*locked=*/false);
    EXPECT_FALSE(bar.IsDragging());
    Drop(105);
    EXPECT_TRUE(drops.empty());
    EXPECT_EQ(bar.GetPosition(), 0);
}

TEST_F(MediaSliderBarTest, TheThumbLightsUpUnderThePointer)
{
    Move(5);
    EXPECT_EQ(bar.GetHoverIndex(), 1);
    Move(50);
    EXPECT_EQ(bar.GetHoverIndex(), 0);
}

} // namespace

} // namespace kivo::tunehive
