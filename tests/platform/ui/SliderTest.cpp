#include "shell/contracts/ui/SkinSlider.h"

#include <gtest/gtest.h>

#include <limits>

namespace kivo::ui {
namespace {

constexpr int kMost = std::numeric_limits<int>::max();

class CountedSlider : public CSkinSlider {
public:
    CountedSlider()
    {
        ListenEvent(kControlEvent, EventDelegate(this, &CountedSlider::OnMoved));
        Create(nullptr);
        SetThumbSize({10, 14});
        SetBounds(50, 20, 210, 6); // The thumb has 200 to go.
    }
    using CSkinSlider::PositionAt;
    using CSkinSlider::SetLiveEvents;
    using CSkinSlider::ThumbAt;

    [[nodiscard]] bool IsLocked() const override { return locked; }
    void OnMoved(CSkinObject* /*sender*/, void* /*data*/) { heard.push_back(GetPosition()); }

    // In its own area, by how far along the channel.
    void Press(int x) { OnLButtonDown(1, {x, 3}); }
    void Move(int x) { OnMouseMove(1, {x, 3}); }
    void Drop(int x) { OnLButtonUp(0, {x, 3}); }

    std::vector<int> heard;
    bool locked = false;
};

TEST(SliderArithmetic, ThumbAndPosition)
{
    struct Case {
        const char* name;
        int minimum, maximum, position;
        int start; // Of the thumb, in the parent.
    };
    constexpr Case kCases[] = {
        {"AtTheStart",       0,      100,   0,     50 },
        {"InTheMiddle",      0,      100,   50,    150},
        {"AtTheEnd",         0,      100,   100,   250},
        {"BelowZero",        -10,    10,    0,     150},
        {"ALargeRange",      0,      kMost, kMost, 250},
        {"ALargerOne",       -kMost, kMost, 0,     150},
        {"ARangeOfNothing",  7,      7,     7,     50 },
        {"BackwardsIsEmpty", 5,      1,     5,     50 },
    };
    for (const Case& row : kCases) {
        SCOPED_TRACE(row.name);
        CountedSlider slider;
        slider.SetRange(row.minimum, row.maximum);
        slider.SetPosition(row.position);
        EXPECT_EQ(slider.GetThumbRect().left, row.start);
        EXPECT_EQ(slider.GetThumbRect().top, 16); // Centred on the channel.
        EXPECT_EQ(slider.PositionAt(row.start), row.position);
    }
}

TEST(SliderArithmetic, OfAChannelTooShortAndAnUprightOne)
{
    CountedSlider slider;
    slider.SetBounds(0, 0, 10, 6); // No longer than the thumb.
    slider.SetRange(3, 9);
    slider.SetPosition(9);
    EXPECT_EQ(slider.GetThumbRect().left, 0);
    EXPECT_EQ(slider.PositionAt(5), 3);

    slider.SetVertical(1);
    slider.SetBounds(0, 100, 6, 114);
    slider.SetRange(0, 100);
    slider.SetPosition(100);
    EXPECT_EQ(slider.GetThumbRect().top, 100);
    slider.SetPosition(0);
    EXPECT_EQ(slider.GetThumbRect().top, 200);
    EXPECT_EQ(slider.PositionAt(150), 50);
    slider.OnKeyDown(SliderKey::StepForward);
    EXPECT_EQ(slider.GetPosition(), 2);
}

TEST(SliderDrag, TheThumbFollowsTheHandAndTellsEachStep)
{
    struct Case {
        const char* name;
        int press;
        bool live;
        std::vector<int> heard;
    };
    const Case kCases[] = {
        {"TheThumb",            5,   true,  {10, 50}    },
        {"BesideItJumpsFirst",  185, true,  {90, 10, 50}},
        {"SilentWhereSoWanted", 5,   false, {}          },
    };
    for (const Case& row : kCases) {
        SCOPED_TRACE(row.name);
        CountedSlider slider;
        slider.SetLiveEvents(row.live);
        slider.Press(row.press);
        slider.Move(25);
        slider.Move(25);
        slider.Move(105);
        slider.Drop(105);
        EXPECT_EQ(slider.heard, row.heard);
        EXPECT_FALSE(slider.IsDragging());
        slider.Move(150);
        EXPECT_EQ(slider.GetPosition(), 50);
    }
}

TEST(SliderDrag, CancellingTakesTheWayBack)
{
    CountedSlider slider;
    slider.SetPosition(20);
    slider.Press(105);
    slider.CancelDrag();
    EXPECT_EQ(slider.GetPosition(), 20);
    EXPECT_EQ(slider.heard, (std::vector<int>{50, 20}));

    // A silent one has been counted on meanwhile; only the jump goes.
    CountedSlider counted;
    counted.SetLiveEvents(/*live=*/false);
    counted.SetPosition(20);
    counted.Press(105);
    counted.SetPosition(counted.GetPosition() + 1);
    counted.CancelDrag();
    counted.CancelDrag();
    EXPECT_EQ(counted.GetPosition(), 21);
    EXPECT_TRUE(counted.heard.empty());
}

TEST(SliderInput, NothingMovesWhileLockedOrDisabled)
{
    for (const bool locked : {true, false}) {
        CountedSlider slider;
        slider.locked = locked;
        slider.SetEnabled(locked ? 1 : 0);
        slider.Press(105);
        slider.Drop(105);
        slider.OnKeyDown(SliderKey::Last);
        slider.OnWheel(240);
        EXPECT_EQ(slider.GetPosition(), 0);
        EXPECT_TRUE(slider.heard.empty());
    }
}

TEST(SliderInput, KeysAndWheelFireOnceEachThatMoves)
{
    CountedSlider slider;
    slider.OnKeyDown(SliderKey::StepBack); // At the start already.
    slider.OnKeyDown(SliderKey::PageForward);
    slider.OnKeyDown(SliderKey::StepForward);
    slider.OnKeyDown(SliderKey::Last);
    slider.OnKeyDown(SliderKey::PageBack);
    slider.OnKeyDown(SliderKey::StepBack);
    slider.OnKeyDown(SliderKey::First);
    EXPECT_EQ(slider.heard, (std::vector<int>{10, 12, 100, 90, 88, 0}));
    slider.heard.clear();
    slider.OnWheel(80);
    slider.OnWheel(80); // 160 in all: one step, 40 kept.
    slider.OnWheel(80);
    slider.OnWheel(-240);
    EXPECT_EQ(slider.heard, (std::vector<int>{2, 4, 0}));
    slider.SetRange(-kMost, kMost);
    slider.OnKeyDown(SliderKey::Last);
    EXPECT_EQ(slider.GetPosition(), kMost);
}

} // namespace
} // namespace kivo::ui
