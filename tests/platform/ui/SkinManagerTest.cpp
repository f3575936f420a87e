#include "shell/contracts/ui/SkinManager.h"

#include "platform/ui/NullPeers.h"
#include "shell/contracts/common/Text.h"
#include "shell/contracts/ui/SkinButton.h"
#include "shell/contracts/ui/SkinForm.h"
#include "shell/contracts/ui/SkinLabel.h"
#include "shell/contracts/ui/SkinPanel.h"
#include "shell/contracts/ui/SkinSlider.h"
#include "shell/contracts/ui/SkinSplitter.h"
#include "shell/contracts/ui/SWColorEdit.h"

#include <gtest/gtest.h>
#include <tinyxml.h>

#include <limits>

namespace kivo::ui {
namespace {

class Skin : public testing::Test {
protected:
    ~Skin() override
    {
        skin_.Clear();
        skin_.SetDark(/*dark=*/false);
    }

    // A panel built from the one node that the file describes.
    std::unique_ptr<CSkinPanel> Build(const std::string& node)
    {
        EXPECT_EQ(skin_.IncludeBuildText("<build>" + node + "</build>"), 1);
        auto panel = std::make_unique<CSkinPanel>();
        panel->SetObjectID(u"Test");
        EXPECT_EQ(panel->BuildFromXML(skin_.GetBuildNode(u"KIVO Test")), 1);
        return panel;
    }

    CSkinManager& skin_ = *CSkinManager::GetInstance();
};

TEST_F(Skin, ColoursAreLookedUpByClassAndDesktop)
{
    ASSERT_EQ(skin_.IncludeSkinText(R"(<?xml version="1.0" encoding="UTF-8"?><Skin>
        <class name="mark" light="#A96900" dark="#F0B445"/>
        <CLASS Name="tunehive" background="mark"><colour value="573F34" light="#27231F"
            dark="#EFEAE3" weight="600"/><colour value="A38378" light="#111111"/></CLASS>
        <class name="Length"><colour value="A38378" light="#635A51" dark="#B8AEA2" size="0.92"/></class>
        <class name="odd" background="highlight" light="red"/></Skin>)"),
              1);
    struct Case {
        const char* name;
        StringView cell;
        COLORREF key;
        std::uint32_t light, dark;
        int weight;
        double size;
    };
    constexpr Case kCases[] = {
        {"OfTheList",          u"Text",   0x573F34, 0x27231F, 0xEFEAE3, 600, 0.0 },
        {"TheCellFirst",       u"Length", 0xA38378, 0x635A51, 0xB8AEA2, 0,   0.92},
        {"LightServesForDark", u"Text",   0xA38378, 0x111111, 0x111111, 0,   0.0 },
        {"UnmappedIsTheKey",   u"Text",   0x0000FF, 0xFF0000, 0xFF0000, 0,   0.0 },
    };
    for (const Case& row : kCases) {
        SCOPED_TRACE(row.name);
        for (const bool dark : {false, true}) {
            skin_.SetDark(dark);
            const SkinColour colour = skin_.GetColour({row.cell, u"tunehive"}, row.key);
            EXPECT_EQ(colour.rgb, dark ? row.dark : row.light);
            EXPECT_EQ(colour.weight, row.weight);
            EXPECT_DOUBLE_EQ(colour.size, row.size);
        }
    }
    EXPECT_EQ(skin_.GetBackground(u"tunehive").rgb, 0xF0B445U);
    EXPECT_EQ(skin_.GetBackground(u"odd").role, u"highlight");
    EXPECT_EQ(skin_.GetClassColour(u"odd").role, u"odd"); // "red" is no value.
    EXPECT_FALSE(skin_.GetBackground(u"none").isMapped);
}

TEST_F(Skin, PicturesAndIconsAreKnownByTheirNames)
{
    ASSERT_EQ(skin_.IncludeSkinText(R"(<skin><picture file="play.png" tint="text" mirror="1"
        states="normal hover  down"/><icon id="7003" picture="form_add.png"/></skin>)"),
              1);
    const SkinPicture picture = skin_.GetPicture(u"/opt/skin/play.png");
    EXPECT_EQ(picture.states, (std::vector<String>{u"normal", u"hover", u"down"}));
    EXPECT_EQ(picture.tint, u"text");
    EXPECT_TRUE(picture.isMirrored);
    EXPECT_EQ(picture.file, u"/opt/skin/play.png");
    EXPECT_EQ(skin_.GetPicture(u"other.png").tint, u"");
    EXPECT_EQ(skin_.GetIconPicture(7003), u"form_add.png");
    EXPECT_EQ(skin_.GetIconPicture(1), u"");
}

TEST_F(Skin, FilesThatCanNotBeReadAreRefusedWhole)
{
    std::string deep = "<build>";
    for (int level = 0; level < 100000; ++level)
        deep += "<panel>";
    const std::string kTexts[] = {
        "",
        "no xml at all",
        "<skin><class name=\"a\"",
        "<other/>",
        "<build><node key='x'>",
        deep,
        std::string(5U << 20, ' ') + "<build/>",
        "<!-- <skin/> -->",
    };
    for (const std::string& text : kTexts) {
        SCOPED_TRACE(text.substr(0, 30));
        EXPECT_EQ(skin_.IncludeSkinText(text), 0);
        EXPECT_EQ(skin_.IncludeBuildText(text), 0);
    }
    EXPECT_EQ(skin_.IncludeSkinFile(u"/nowhere/skin.xml"), 0);
    EXPECT_EQ(skin_.IncludeSkinBuildFile(u"/nowhere"), 0);
    EXPECT_EQ(skin_.GetBuildNode(u"x"), nullptr);
}

TEST_F(Skin, NodesAreFoundByTheWordsOfTheirKeyAndLaterFilesWin)
{
    skin_.IncludeBuildText(R"(<build><node key=" KIVO  Page" id="old"/></build>)");
    skin_.IncludeBuildText(R"(<build><form id="F"/><Node Key="KIVO Page" id="new"/></build>)");
    const TiXmlNode* node = skin_.GetBuildNode(u"KIVO Page ");
    ASSERT_NE(node, nullptr);
    EXPECT_STREQ(node->ToElement()->Attribute("id"), "new");
    EXPECT_EQ(skin_.GetBuildNode(u"kivo page"), nullptr);
    EXPECT_EQ(skin_.GetBuildNode(u"F"), nullptr);
    EXPECT_NE(skin_.GetFormNode(u"F"), nullptr);
    EXPECT_EQ(CSkinPanel().BuildFromXML(nullptr), 0); // No node: nothing is built.
}

TEST_F(Skin, ABuildMakesControlsWithBoundsFromTheStartOn)
{
    const auto panel = Build(R"(<node key="KIVO Test" dock="103" height="40" padding="1 2 3 4">
        <panel id="A" dock="top" gap="3"><button id="B" dock="left" text="Text" tip="Tip"
            picture="p.png" visible="0" min-width="90" margin="5 6"/></panel>
        <LABEL id="L" buddy="E" text="Name:" multiline="1" align="trailing" bounds="1 2 30 40"/>
        <edit id="E" skin="s"/><slider id="S" vertical="1" name="Loudness"/></node>)");
    EXPECT_EQ(panel->GetAnchorStyle(), anchor::kRight);
    EXPECT_EQ(panel->GetPadding(), (Rect{1, 2, 3, 4}));
    const auto* button = static_cast<CSkinButton*>(panel->FindControlRecusive(u"B"));
    ASSERT_NE(button, nullptr);
    EXPECT_EQ(button->GetText(), u"Text");
    EXPECT_EQ(button->GetAccessibleName(), u"Tip");
    EXPECT_EQ(button->GetMargin(), (Rect{5, 6, 5, 6}));
    EXPECT_FALSE(button->IsSetVisible());
    EXPECT_EQ(button->GetBoundsRect(), (Rect{0, 0, 90, 24})); // The minimum; the null peer's 24.
    EXPECT_NE(button->GetPeer(), nullptr);
    auto* label = static_cast<CSkinLabel*>(panel->FindControlRecusive(u"L"));
    EXPECT_EQ(label->GetBoundsRect(), (Rect{1, 2, 31, 42}));
    EXPECT_EQ(label->GetAlignmentHor(), align::kTrailing);
    EXPECT_EQ(panel->FindControlRecusive(u"E")->GetAccessibleName(), u"Name:");
    EXPECT_EQ(panel->FindControlRecusive(u"E")->GetPeer(), nullptr); // It comes with its Create.
    EXPECT_TRUE(static_cast<CSkinSlider*>(panel->FindControlRecusive(u"S"))->IsVertical());
    EXPECT_TRUE(skin_.TakeBuildFaults().empty());
}

TEST_F(Skin, WhatIsNotInTheVocabularyIsPassedOverAndNoted)
{
    const auto panel = Build(R"(<node key="KIVO Test" colour="red"><blink/><button id="B"
        vertical="1" width="99999999999"/><label id="L" buddy="X"/></node>)");
    EXPECT_EQ(panel->GetControls().size(), 2U);
    EXPECT_EQ(skin_.TakeBuildFaults(),
              (std::vector<String>{u"node Test: colour",
                                   u"blink: no such element",
                                   u"button B: vertical",
                                   u"label L: no such buddy"}));
    EXPECT_TRUE(skin_.TakeBuildFaults().empty());
}

// The files that are installed.
TEST_F(Skin, OurOwnFilesHoldNothingButTheVocabulary)
{
    const String data = common::utf8_to_CString(KIVO_DATA_DIR);
    ASSERT_EQ(skin_.IncludeSkinFile(data + u"skin.xml"), 1);
    ASSERT_EQ(skin_.IncludeSkinBuildFile(data + u"build.xml"), 1);
    for (const char16_t* id : {u"PlayerPanel", u"ToolPanel", u"PlayListPanel", u"LyricPanel"}) {
        CSkinPanel panel;
        EXPECT_EQ(
            panel.BuildFromXML(skin_.GetBuildNode(String(u"KIVO Plugins TuneHiveWindow ") + id)),
            1);
    }
    CSkinSplitter splitter(0, 0);
    splitter.Create(nullptr, u"KIVO Plugins TuneHiveWindow SplitterCtrl");
    EXPECT_EQ(splitter.GetPane(1)->GetMinimumSize().height, 164);
    for (const char16_t* id : {u"VolForm", u"AddFileForm", u"AddURLForm", u"MusicCabForm"}) {
        CSkinForm form;
        form.SetObjectID(id);
        EXPECT_EQ(form.Create(wndstyle::kPopup, u"F", u"", {}, nullptr, 0), 1);
        EXPECT_FALSE(form.GetControls().empty());
    }
    EXPECT_EQ(skin_.TakeBuildFaults(), std::vector<String>{});
}

} // namespace
} // namespace kivo::ui
