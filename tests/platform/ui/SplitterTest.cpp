#include "shell/contracts/ui/SkinManager.h"
#include "shell/contracts/ui/SkinSplitter.h"

#include <gtest/gtest.h>

namespace kivo::ui {
namespace {

constexpr char kBuild[] = R"(<build><node key="KIVO Split">
  <panel id="Upper" min-height="84"/><panel id="Lower" min-height="164"/></node></build>)";

class Splitter : public testing::Test {
protected:
    Splitter()
    {
        CSkinManager::GetInstance()->IncludeBuildText(kBuild);
        EXPECT_EQ(splitter_.Create(nullptr, u"KIVO  Split"), 1);
        splitter_.SetFixedPane(1);
    }
    ~Splitter() override { CSkinManager::GetInstance()->Clear(); }

    void Resize(int height) { splitter_.CalculateBounds({0, 0, 200, height}); }
    void Show(int upper, int bar, int lower)
    {
        splitter_.SetPaneVisible(0, upper);
        splitter_.SetBarVisible(bar);
        splitter_.SetPaneVisible(1, lower);
        splitter_.RePositionSubControls();
    }
    [[nodiscard]] int Upper() const { return splitter_.GetPane(0)->GetHeight(); }
    [[nodiscard]] int Lower() const { return splitter_.GetPane(1)->GetHeight(); }

    CSkinSplitter splitter_{0, 0};
};

TEST_F(Splitter, TheFixedPaneKeepsItsSizeWhereItFits)
{
    struct Case {
        const char* name;
        int wanted;
        int height;
        int upper;
        int lower;
    };
    constexpr Case kCases[] = {
        {"KeepsItsSize",          200, 600, 395, 200},
        {"NeverUnderItsMinimum",  10,  600, 431, 164},
        {"ShrinksBeforeTheOther", 400, 300, 84,  211},
        {"TheOtherGoesLastOfAll", 400, 80,  75,  0  },
        {"TheBarAloneMayStand",   400, 3,   0,   0  },
    };
    for (const Case& row : kCases) {
        SCOPED_TRACE(row.name);
        Resize(row.height);
        splitter_.SetFixedPaneSize(row.wanted);
        EXPECT_EQ(Upper(), row.upper);
        EXPECT_EQ(Lower(), row.lower);
        // The wanted size is kept for a larger window.
        Resize(1000);
        EXPECT_EQ(Lower(), std::max(row.wanted, 164));
    }
}

TEST_F(Splitter, WhatIsHiddenGivesItsRoomToTheOther)
{
    struct Case {
        const char* name;
        int showUpper, showBar, showLower;
        int upper, lower, bar;
    };
    constexpr Case kCases[] = {
        {"Both",        1, 1, 1, 431, 164, 5},
        {"NoBar",       1, 0, 1, 436, 164, 0},
        {"UpperAlone",  1, 0, 0, 600, 164, 0},
        {"NoLonelyBar", 1, 1, 0, 600, 164, 0},
        {"LowerAlone",  0, 1, 1, 600, 600, 0},
    };
    Resize(600);
    for (const Case& row : kCases) {
        SCOPED_TRACE(row.name);
        Show(row.showUpper, row.showBar, row.showLower);
        EXPECT_EQ(Upper(), row.upper);
        EXPECT_EQ(Lower(), row.lower);
        EXPECT_EQ(HeightOf(splitter_.GetBarRect()), row.bar);
    }
}

TEST_F(Splitter, TheBarMovesBetweenTheMinimaAndItsPlaceIsTheWantedSize)
{
    struct Case {
        const char* name;
        int delta;
        int lower;
    };
    constexpr Case kCases[] = {
        {"Up",           -50,  250},
        {"DownToTheMin", 500,  164},
        {"UpToTheMin",   -999, 511},
    };
    for (const Case& row : kCases) {
        SCOPED_TRACE(row.name);
        Resize(600);
        splitter_.SetFixedPaneSize(200);
        splitter_.OnBarDragBegin();
        splitter_.OnBarDragged(row.delta / 2);
        splitter_.OnBarDragged(row.delta);
        EXPECT_EQ(Lower(), row.lower);
        EXPECT_EQ(splitter_.GetFixedPaneSize(), row.lower);
    }
    splitter_.SetFixedPaneSize(200);
    splitter_.OnBarKey(-16);
    EXPECT_EQ(Lower(), 216);
    Show(1, 0, 1);
    splitter_.OnBarKey(-16); // It doesn't show.
    EXPECT_EQ(Lower(), 216);
}

TEST_F(Splitter, FixingTheOtherPaneTakesItsPresentSize)
{
    Resize(600);
    splitter_.SetFixedPane(0);
    EXPECT_EQ(splitter_.GetFixedPaneSize(), 431);
    Resize(700);
    EXPECT_EQ(Upper(), 431);
    EXPECT_EQ(Lower(), 264);
}

TEST_F(Splitter, WithoutADescriptionItStillHasTwoPanes)
{
    CSkinSplitter bare(0, 0);
    EXPECT_EQ(bare.GetPane(0), nullptr);
    EXPECT_EQ(bare.Create(nullptr, u"nowhere"), 1);
    EXPECT_NE(bare.GetPane(0), nullptr);
    EXPECT_NE(bare.GetPane(1), nullptr);
    EXPECT_EQ(bare.GetPane(2), nullptr);
}

} // namespace
} // namespace kivo::ui
