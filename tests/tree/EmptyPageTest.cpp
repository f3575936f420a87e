#include "tree/EmptyPage.h"

#include "shell/contracts/ui/SkinManager.h"
#include "tests/tree/TreeFixture.h"

namespace kivo::tunehive {
namespace {

constexpr char kBuild[] = R"(<build>
  <node key="KIVO Plugins TuneHiveWindow EmptyPage">
    <photo id="EmptyPicture" dock="top" height="144"/>
    <label id="EmptyText" dock="top" height="54"/>
    <button id="EmptyFolderBtn" dock="top" height="32"/>
    <button id="EmptyFilesBtn" dock="top" height="28"/>
    <button id="EmptyURLBtn" dock="top" height="28"/>
  </node>
</build>)";

class EmptyPageTest : public TreeTest {
protected:
    void Open(bool beyond)
    {
        SetBeyond(beyond);
        ui::CSkinManager::GetInstance()->IncludeBuildText(kBuild);
        page_ = new CEmptyPage(*tree_);
        tree_->RegisterControl(page_);
        page_->SetAnchorStyle(ui::anchor::kFill);
        page_->Build();
        tree_->SetEmptyPage(page_);
    }
    ~EmptyPageTest() override { ui::CSkinManager::GetInstance()->Clear(); }

    CEmptyPage* page_ = nullptr; // The tree's.
};

TEST_F(EmptyPageTest, ComesAndGoesWithTheFirstTrack)
{
    Open(/*beyond=*/false);
    EXPECT_FALSE(page_->IsSetVisible());
    Open(/*beyond=*/true);
    EXPECT_TRUE(page_->IsSetVisible());
    tree_->NewGroup();
    EXPECT_TRUE(page_->IsSetVisible()) << "a group is no music";
    Add(u"mine", {u"http://radio.example/live"});
    EXPECT_FALSE(page_->IsSetVisible());
    EXPECT_TRUE(Group(u"mine").IsExpanded()) << "the first music shows";
    Add(u"playing", {u"http://radio.example/live"});
    EXPECT_FALSE(Group(u"playing").IsExpanded());
    tree_->ClearCategory(u"mine");
    tree_->ClearCategory(u"playing");
    EXPECT_TRUE(page_->IsSetVisible());
}

TEST_F(EmptyPageTest, BeginsBelowTheGroupsAndGivesWayBySteps)
{
    Open(/*beyond=*/true);
    const int rows = tree_->GetRowCount() * tree_->GetWantedSize().height;
    struct Room {
        int height;
        bool picture;
        bool sentence;
    };
    constexpr Room kRooms[] = {
        {400, true,  true },
        {300, false, true },
        {150, false, false},
    };
    for (const Room& room : kRooms) {
        SCOPED_TRACE(room.height);
        tree_->MoveWindow({0, 0, 340, rows + room.height});
        EXPECT_EQ(page_->GetBoundsRect().top, rows);
        EXPECT_EQ(page_->FindControlRecusive(u"EmptyPicture")->IsSetVisible(), room.picture);
        EXPECT_EQ(page_->FindControlRecusive(u"EmptyText")->IsSetVisible(), room.sentence);
    }
}

TEST_F(EmptyPageTest, EachRoadLeadsIntoMine)
{
    Open(/*beyond=*/true);
    pickers_.files = {u"/m/a.mp3"};
    ui::CSkinObject* files = page_->FindControlRecusive(u"EmptyFilesBtn");
    files->FireEvent(ui::kControlEvent, files);
    pickers_.url = u"http://radio.example/live";
    ui::CSkinObject* address = page_->FindControlRecusive(u"EmptyURLBtn");
    address->FireEvent(ui::kControlEvent, address);
    EXPECT_EQ(Paths(u"mine"), (std::vector<String>{u"/m/a.mp3", u"http://radio.example/live"}));
}

} // namespace
} // namespace kivo::tunehive
