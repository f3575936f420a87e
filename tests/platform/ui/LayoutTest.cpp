#include "platform/ui/Layout.h"

#include "shell/contracts/ui/SkinManager.h"
#include "shell/contracts/ui/SkinPanel.h"

#include <gtest/gtest.h>

namespace kivo::ui {
namespace {

using anchor::kBottom;
using anchor::kFill;
using anchor::kLeft;
using anchor::kNone;
using anchor::kRight;
using anchor::kTop;

struct Item {
    int style;
    Size size;
    Rect expected;
    Rect margin{};
};

struct PlaceCase {
    const char* name;
    Size area;
    int gap;
    std::vector<Item> items;
};

const PlaceCase kPlaceCases[] = {
    {"TopTakesTheFullWidth",        {100, 50}, 0, {{kTop, {10, 6}, {0, 0, 100, 6}}}                                                },
    {"RowCellsStandSideBySide",
     {200, 28},
     0,                                           {{kLeft, {12, 10}, {0, 0, 12, 28}},
      {kRight, {42, 10}, {158, 0, 200, 28}},
      {kFill, {0, 0}, {12, 0, 158, 28}}}                                                                                    },
    {"StyleDecidesBeforeOrder",
     {100, 50},
     0,                                           {{kFill, {1, 1}, {20, 10, 100, 50}},
      {kLeft, {20, 1}, {0, 10, 20, 50}},
      {kTop, {1, 10}, {0, 0, 100, 10}}}                                                                                     },
    {"EqualStylesKeepTheirOrder",
     {100, 50},
     0,                                           {{kRight, {10, 1}, {90, 0, 100, 50}}, {kRight, {20, 1}, {70, 0, 90, 50}}}        },
    {"TheGapFollowsEachStrip",
     {100, 50},
     4,                                           {{kLeft, {10, 1}, {0, 0, 10, 50}},
      {kLeft, {10, 1}, {14, 0, 24, 50}},
      {kFill, {0, 0}, {28, 0, 100, 50}}}                                                                                    },
    {"AMarginWidensTheStrip",
     {100, 50},
     0,                                           {{kTop, {10, 6}, {2, 3, 96, 9}, {2, 3, 4, 5}}, {kFill, {0, 0}, {0, 14, 100, 50}}}},
    {"WhatDoesNotFitIsCut",
     {100, 10},
     4,                                           {{kTop, {1, 8}, {0, 0, 100, 8}},
      {kTop, {1, 8}, {0, 10, 100, 10}},
      {kFill, {}, {0, 10, 100, 10}}}                                                                                        },
    {"AnEmptyAreaGivesEmptyPlaces", {0, 0},    3, {{kLeft, {5, 5}, {}}, {kFill, {}, {}}}                                           },
};

TEST(PlaceStrips, Table)
{
    for (const PlaceCase& row : kPlaceCases) {
        SCOPED_TRACE(row.name);
        std::vector<DockItem> items;
        for (const Item& item : row.items)
            items.push_back({item.style, item.size, item.margin, {}});
        PlaceStrips(items, {0, 0, row.area.width, row.area.height}, row.gap);
        for (std::size_t index = 0; index < items.size(); ++index)
            EXPECT_EQ(items[index].place, row.items[index].expected) << "item " << index;
    }
}

TEST(MeasureStrips, WhatItMeasuresIsJustEnough)
{
    std::vector<DockItem> items = {
        {kTop,    {30, 10}, {1, 1, 1, 1}, {}},
        {kBottom, {10, 8},  {},           {}},
        {kLeft,   {20, 5},  {},           {}},
        {kFill,   {15, 12}, {},           {}}
    };
    const Size need = MeasureStrips(items, /*gap=*/2);
    EXPECT_EQ(need, (Size{37, 36}));
    PlaceStrips(items, {0, 0, need.width, need.height}, /*gap=*/2);
    EXPECT_EQ(HeightOf(items[3].place), 12);
    EXPECT_EQ(WidthOf(items[3].place), 15);
}

class PanelLayout : public testing::Test {
protected:
    ~PanelLayout() override { CSkinManager::GetInstance()->SetRightToLeft(/*on=*/false); }

    CSkinPanel* Add(CSkinPanel& parent, int style, int width, int height)
    {
        auto* panel = new CSkinPanel;
        panel->SetBounds(0, 0, width, height);
        panel->SetAnchorStyle(style);
        parent.RegisterControl(panel);
        return panel;
    }

    CSkinPanel page_;
};

TEST_F(PanelLayout, AHiddenControlKeepsItsBoundsAndGivesItsStripAway)
{
    CSkinPanel* state = Add(page_, kBottom, 1, 22);
    const CSkinPanel* rest = Add(page_, kFill, 0, 0);
    page_.CalculateBounds({0, 0, 100, 80});
    EXPECT_EQ(rest->GetHeight(), 58);
    page_.CalculateBounds({0, 0, 100, 15});
    EXPECT_EQ(state->GetHeight(), 15);
    page_.CalculateBounds({0, 0, 100, 80}); // Squeezed once, whole again.
    EXPECT_EQ(state->GetHeight(), 22);
    state->SetVisible(0);
    page_.RePositionSubControls();
    EXPECT_EQ(rest->GetHeight(), 80);
    EXPECT_EQ(state->GetHeight(), 22);
}

TEST_F(PanelLayout, RightToLeftMirrorsOnceAtTheEnd)
{
    CSkinManager::GetInstance()->SetRightToLeft(/*on=*/true);
    const CSkinPanel* left = Add(page_, kLeft, 30, 1);
    const CSkinPanel* free = Add(page_, kNone, 10, 5);
    for (int pass = 0; pass < 2; ++pass) {
        page_.CalculateBounds({0, 0, 100, 20});
        EXPECT_EQ(left->GetBoundsRect(), (Rect{70, 0, 100, 20}));
        EXPECT_EQ(free->GetBoundsRect(), (Rect{90, 0, 100, 5}));
    }
}

TEST_F(PanelLayout, APanelWithoutASizeWantsWhatItsControlsNeed)
{
    CSkinPanel* strip = Add(page_, kTop, 0, 0);
    strip->SetPadding({2, 2, 2, 2});
    Add(*strip, kLeft, 20, 16);
    EXPECT_EQ(strip->GetWantedSize(), (Size{24, 20}));
    page_.CalculateBounds({0, 0, 100, 80});
    EXPECT_EQ(strip->GetBoundsRect(), (Rect{0, 0, 100, 20}));
    strip->SetMinimumSize({0, 33});
    page_.RePositionSubControls();
    EXPECT_EQ(strip->GetHeight(), 33);
}

} // namespace
} // namespace kivo::ui
