#include "tree/ToolPanel.h"

#include "medialib/AddFolderThread.h"
#include "platform/base/PostQueue.h"
#include "platform/ui/NullPeers.h"
#include "shell/base/Settings.h"
#include "shell/contracts/ui/SkinManager.h"
#include "tests/tree/TreeFixture.h"
#include "tree/MediaTreePanel.h"
#include "tree/TreeMenus.h"

#include <memory>

namespace kivo::tunehive {
namespace {

constexpr char kBuild[] = R"(<build>
  <node key="KIVO Plugins TuneHiveWindow ToolPanel">
    <button id="AddBtn"/><button id="DelBtn"/><button id="ModeBtn"/><button id="SetBtn"/>
  </node>
  <node key="KIVO Plugins TuneHiveWindow PlayListPanel"/>
</build>)";

using Ids = std::vector<int>;

// The strip of buttons over the tree of a panel, both built from a file.
class ToolPanelTest : public TreeTest {
protected:
    ToolPanelTest()
    {
        user_ = GetMediaResManager()->CreateGroup(u"Mix");
        Build(/*beyond=*/false);
    }
    ~ToolPanelTest() override
    {
        static_cast<void>(tree_.release()); // The panel's.
        treePanel_.reset();
        tree_.reset(std::make_unique<CMediaTree>(&pickers_).release());
        ui::GetNullPeerFactory().ClearScripts();
        ui::CSkinManager::GetInstance()->Clear();
        SetPlayMode(2);
    }

    void Build(bool beyond)
    {
        SetBeyond(beyond);
        if (treePanel_)
            static_cast<void>(tree_.release());
        panel_ = std::make_unique<CToolPanel>(&pickers_);
        treePanel_ = std::make_unique<CMediaTreePanel>(&pickers_);
        ui::CSkinManager::GetInstance()->Clear();
        ui::CSkinManager::GetInstance()->IncludeBuildText(kBuild);
        panel_->Build(nullptr);
        treePanel_->Build(nullptr);
        tree_.reset(treePanel_->GetTree());
        panel_->SetTreePanel(treePanel_.get());
    }
    // Presses the button, if it is there, and gives the entries of its menu that can be chosen;
    // chooses `command`. Empty: no menu opened.
    Ids PressAndChoose(const char16_t* id, int command = 0)
    {
        Ids enabled;
        checked_.clear();
        ui::GetNullPeerFactory().ClearScripts();
        ui::GetNullPeerFactory().QueueMenu([&](ui::IMenu& menu) {
            for (const auto& entry : menu.GetEntries()) {
                if (!entry->IsSeparator() && !entry->IsDisabled())
                    enabled.push_back(entry->GetID());
                if (entry->IsChecked())
                    checked_.push_back(entry->GetID());
            }
            return menu.FindEntry(command);
        });
        if (ui::CSkinObject* const button = panel_->FindControlRecusive(id))
            button->FireEvent(ui::kControlEvent, button);
        return enabled;
    }
    [[nodiscard]] bool IsEnabled(const char16_t* id) const
    {
        return panel_->FindControlRecusive(id)->IsEnabled();
    }

    Ids checked_; // Of the menu that opened last.
    String user_; // A group of the user's.
    std::unique_ptr<CToolPanel> panel_;
    std::unique_ptr<CMediaTreePanel> treePanel_;
};

// A button that is missing ends the search: those behind it never act.
TEST_F(ToolPanelTest, AMissingButtonLeavesTheLaterOnesDead)
{
    const std::pair<const char*, bool> rows[] = {
        {R"(<button id="DelBtn"/><button id="ModeBtn"/><button id="SetBtn"/>)", false},
        {R"(<button id="AddBtn"/><button id="ModeBtn"/><button id="SetBtn"/>)", false},
        {R"(<button id="AddBtn"/><button id="DelBtn"/><button id="ModeBtn"/>)", true },
    };
    for (const auto& [buttons, opens] : rows) {
        SCOPED_TRACE(buttons);
        ui::CSkinManager::GetInstance()->Clear();
        ui::CSkinManager::GetInstance()->IncludeBuildText(
            std::string(R"(<build><node key="KIVO Plugins TuneHiveWindow ToolPanel">)") + buttons +
            "</node></build>");
        panel_ = std::make_unique<CToolPanel>(&pickers_);
        panel_->Build(nullptr);
        panel_->FireEvent(ui::kControlEvent, nullptr); // From nobody.
        EXPECT_EQ(!PressAndChoose(u"ModeBtn").empty(), opens);
    }
}

TEST_F(ToolPanelTest, TheDeleteMenuFitsTheSelection)
{
    Add(u"mine", {u"http://x/1", u"http://x/2"});
    Add(u"playing", {u"http://x/3"});
    struct Case {
        const char* name;
        std::vector<ui::CSkinListItem*> selected;
        Ids enabled;
    };
    const Case rows[] = {
        {"nothing",        {},                                      {}      },
        {"several tracks", {&Row(u"mine", 0), &Row(u"mine", 1)},    {22, 23}},
        {"of two groups",  {&Row(u"mine", 0), &Row(u"playing", 0)}, {22, 23}},
        {"several groups", {&Group(user_), &Group(u"mine")},        {22, 23}},
        {"one track",      {&Row(u"mine", 0)},                      {22, 23}},
        {"a user's group", {&Group(user_)},                         {23, 25}},
        {"playing",        {&Group(u"playing")},                    {23}    },
        {"mine",           {&Group(u"mine")},                       {23}    },
    };
    for (const auto& [name, selected, enabled] : rows) {
        SCOPED_TRACE(name);
        Select(selected);
        EXPECT_EQ(PressAndChoose(u"DelBtn"), enabled);
    }
}

TEST_F(ToolPanelTest, DeletesWhatIsSelected)
{
    Add(u"mine", {u"http://x/1", u"http://x/1", u"http://x/2"});
    Select({&Row(u"mine", 0)});
    PressAndChoose(u"DelBtn", kCommandDeleteDuplicates);
    EXPECT_EQ(Paths(u"mine"), (std::vector<String>{u"http://x/1", u"http://x/2"}));
    Select({&Row(u"mine", 1)});
    PressAndChoose(u"DelBtn", kCommandDeleteTracks);
    EXPECT_EQ(Paths(u"mine"), std::vector<String>{u"http://x/1"});
    Select({&Group(user_)});
    host_.boxAnswers = {0, 1};
    PressAndChoose(u"DelBtn", kCommandDeleteGroups);
    EXPECT_NE(tree_->FindCategory(user_), nullptr) << "the answer was no";
    PressAndChoose(u"DelBtn", kCommandDeleteGroups);
    EXPECT_EQ(tree_->FindCategory(user_), nullptr);
}

TEST_F(ToolPanelTest, AModeIsSetAndCheckedTheNextTime)
{
    for (const int mode : {4, 0, 3, 1, 2}) {
        EXPECT_EQ(PressAndChoose(u"ModeBtn", 12 + mode), (Ids{12, 13, 14, 15, 16}));
        EXPECT_EQ(GetPlayMode(), mode);
        PressAndChoose(u"ModeBtn");
        EXPECT_EQ(checked_, Ids{12 + mode});
    }
}

TEST_F(ToolPanelTest, TheAddMenuAsksForTheGroupThenForWhatToAdd)
{
    pickers_.group = user_;
    pickers_.files = {u"/x/1", u"/x/1"};
    EXPECT_EQ(PressAndChoose(u"AddBtn", kCommandAddFiles), (Ids{17, 18, 19, 20}));
    pickers_.url = u"http://x/3";
    pickers_.name = u"three";
    PressAndChoose(u"AddBtn", kCommandAddURL);
    EXPECT_EQ(Paths(user_), (std::vector<String>{u"/x/1", u"/x/1", u"http://x/3"}));
    EXPECT_EQ(Row(user_, 2).GetCellText(u"text"), u"three");
    const std::size_t groups = GroupIds().size();
    PressAndChoose(u"AddBtn", kCommandAddGroup);
    EXPECT_EQ(GroupIds().size(), groups + 1);
}

TEST_F(ToolPanelTest, ACancelledDialogAddsNothing)
{
    struct Case {
        const char* name;
        int command;
        String group;
        CStringArray files;
        String folder;
    };
    const Case rows[] = {
        {"no group for files",    kCommandAddFiles,  u"",     {u"/x/1"}, u""  },
        {"no files",              kCommandAddFiles,  u"mine", {},        u""  },
        {"no group for a folder", kCommandAddFolder, u"",     {},        u"/x"},
        {"no folder",             kCommandAddFolder, u"mine", {},        u""  },
        {"no address",            kCommandAddURL,    u"mine", {},        u""  },
    };
    for (const auto& [name, command, group, files, folder] : rows) {
        SCOPED_TRACE(name);
        pickers_.group = group;
        pickers_.files = files;
        pickers_.folder = folder;
        PressAndChoose(u"AddBtn", command);
        EXPECT_EQ(CAddFolderThread::GetRunningCount(), 0);
        EXPECT_EQ(Paths(u"mine").size(), 0U);
    }
}

TEST_F(ToolPanelTest, AFolderIsImportedIntoTheGroup)
{
    folder_.Write("music/a.mp3", "");
    folder_.Write("music/b.mp3", "");
    pickers_.group = user_;
    pickers_.folder = folder_.GetPath("music");
    PressAndChoose(u"AddBtn", kCommandAddFolder);
    EXPECT_GT(CAddFolderThread::GetRunningCount(), 0);
    GetMediaLibManager()->StopWork(60'000);
    PostQueue::Get().RunPending();
}

TEST_F(ToolPanelTest, ButtonsTellWhetherTheyDoSomething)
{
    EXPECT_TRUE(IsEnabled(u"DelBtn")) << "as it stands without";
    EXPECT_FALSE(panel_->FindControlRecusive(u"SetBtn")->IsSetVisible()) << "nothing listens to it";
    Build(/*beyond=*/true);
    Add(u"mine", {u"http://x/1", u"http://x/2"});
    EXPECT_FALSE(IsEnabled(u"DelBtn"));
    Select({&Row(u"mine", 0), &Row(u"mine", 1)});
    EXPECT_TRUE(IsEnabled(u"DelBtn"));
    Row(u"mine", 0).SetSelected(0);
    EXPECT_TRUE(IsEnabled(u"DelBtn"));
    tree_->DeleteSelectedTracks(); // A row that goes takes its selection along.
    EXPECT_FALSE(IsEnabled(u"DelBtn"));
    panel_.reset();
    Select({&Group(user_)}); // Nobody listens any more.
}

} // namespace
} // namespace kivo::tunehive
