#include "mediares/MediaResManager.h"

#include "medialib/IMediaLibManager.h"
#include "mediares/IMediaResGroup.h"
#include "tests/mediares/GroupNames.h"
#include "tests/support/FakeHost.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace kivo::tunehive {
namespace {

class MediaResManagerTest : public testing::Test {
protected:
    ~MediaResManagerTest() override
    {
        manager_.reset();
        DestroyMediaLibManager();
    }
    // A start with what the folder holds.
    void Start()
    {
        manager_ = std::make_unique<MediaResManager>();
        ASSERT_EQ(manager_->Init(folder_.GetPath()), 1);
    }
    [[nodiscard]] std::vector<String> GetSorted()
    {
        std::vector<String> ids;
        manager_->GetSortedGroupIDs(ids);
        return ids;
    }

    GroupNames language_;
    test::FakeHost host_;
    test::TempFolder folder_;
    std::unique_ptr<MediaResManager> manager_;
};

TEST_F(MediaResManagerTest, AFirstStartMakesTheTwoFixedGroups)
{
    Start();
    EXPECT_EQ(folder_.List(), (std::vector<std::string>{"mine.kvm", "playing.kvm"}));
    EXPECT_EQ(GetSorted(), (std::vector<String>{u"playing", u"mine"}));
    EXPECT_EQ(manager_->GetGroup(u"hot"), nullptr);
    EXPECT_EQ(manager_->GetGroup(u"mine")->GetName(), u"Mine");
}

TEST_F(MediaResManagerTest, ItStartsOnceAndMakesItsFolder)
{
    manager_ = std::make_unique<MediaResManager>();
    EXPECT_EQ(manager_->Init(folder_.GetPath() + u"below/"), 1);
    EXPECT_TRUE(folder_.Has("below/mine.kvm"));
    EXPECT_EQ(manager_->Init(folder_.GetPath() + u"other/"), 0);
    EXPECT_FALSE(folder_.Has("other"));
    EXPECT_EQ(manager_->Uninit(), 1);
    EXPECT_EQ(GetSorted(), std::vector<String>{});
    EXPECT_EQ(manager_->Uninit(), 1);
}

TEST_F(MediaResManagerTest, NewIdsGoOnFromTheHighestFile)
{
    Start();
    EXPECT_EQ(manager_->CreateGroup(u"One"), u"userb");
    EXPECT_EQ(manager_->CreateGroup(u"Two"), u"userc");
    for (const char* file : {"userz.kvm", "userab.kvm"})
        folder_.Write(file, "");
    // No files of groups, and no folder is one.
    for (const char* file : {"userB.kvm", "userzz1.kvm", "user.kvm", "Mine.kvm", "userzz.kvm/x"})
        folder_.Write(file, "");
    Start();
    EXPECT_EQ(manager_->CreateGroup(u"Three"), u"userac"); // "ab" outranks "z" by its length.
    EXPECT_EQ(GetSorted().size(), 7U);
}

TEST_F(MediaResManagerTest, GroupsSurviveARestartWithTheirNames)
{
    Start();
    manager_->CreateGroup(u"zebra");
    manager_->CreateGroup(u"Apple");
    manager_->CreateGroup(u"mango");
    folder_.Write("hot.kvm", "");
    Start();
    EXPECT_EQ(GetSorted(),
              (std::vector<String>{u"playing", u"mine", u"userc", u"userd", u"userb", u"hot"}));
    EXPECT_EQ(manager_->GetGroup(u"userc")->GetName(), u"Apple");
    std::set<String> ids = {u"kept"};
    manager_->GetGroupIDs(ids);
    EXPECT_EQ(
        ids,
        (std::set<String>{u"hot", u"kept", u"mine", u"playing", u"userb", u"userc", u"userd"}));
}

TEST_F(MediaResManagerTest, ARefusedNameMakesNothing)
{
    Start();
    manager_->CreateGroup(u"Mix");
    EXPECT_EQ(manager_->CreateGroup(u"Mix"), u"");
    EXPECT_EQ(manager_->CreateGroup(u"Mine"), u"");
    EXPECT_EQ(GetSorted().size(), 3U);
    EXPECT_EQ(manager_->CreateGroup(u"mix"), u"userc"); // A refusal has spent no SID.
    EXPECT_EQ(manager_->CompareGroups(u"userb", u"userc"), 0);
    EXPECT_EQ(manager_->CompareGroups(u"hot", u"userb"), 1);
    EXPECT_EQ(manager_->CompareGroups(u"else", u"playing"), -1);
    EXPECT_EQ(manager_->GetNewGroupName(), u"Group 1");
}

TEST_F(MediaResManagerTest, ASidIsSpentWhenTheNamesCantBeWritten)
{
    manager_ = std::make_unique<MediaResManager>();
    manager_->Init(folder_.GetPath() + u"no/folder/");
    EXPECT_EQ(manager_->CreateGroup(u"One"), u"");
    folder_.Write("no/folder/x", "");
    EXPECT_EQ(manager_->CreateGroup(u"One"), u""); // The name stayed, and is taken.
    EXPECT_EQ(manager_->CreateGroup(u"Two"), u"userc");
}

TEST_F(MediaResManagerTest, ARemovedGroupTakesItsFileAndNameAlong)
{
    Start();
    const String id = manager_->CreateGroup(u"Mix");
    folder_.Write("userb.kvm.older", "<Items/>");
    EXPECT_EQ(manager_->RemoveGroup(id), 1);
    EXPECT_EQ(manager_->GetGroup(id), nullptr);
    EXPECT_EQ(folder_.List(), (std::vector<std::string>{"ginfo.xml", "mine.kvm", "playing.kvm"}));
    EXPECT_EQ(manager_->RemoveGroup(id), 0);
    for (const char16_t* fixed : {u"mine", u"playing", u"hot"})
        EXPECT_EQ(manager_->RemoveGroup(fixed), 0);
    EXPECT_EQ(GetSorted().size(), 2U);
    EXPECT_EQ(manager_->CreateGroup(u"Mix"), u"userc");
}

TEST_F(MediaResManagerTest, OnlyUserGroupsAreRenamed)
{
    Start();
    const String id = manager_->CreateGroup(u"Mix");
    EXPECT_EQ(manager_->RenameGroup(id, u"New"), 1);
    EXPECT_EQ(manager_->GetGroup(id)->GetName(), u"New");
    EXPECT_EQ(manager_->RenameGroup(id, u"New"), 0); // Its own name counts as taken.
    EXPECT_EQ(manager_->RenameGroup(id, u"Hot"), 0);
    EXPECT_EQ(manager_->RenameGroup(u"mine", u"Else"), 0);
    EXPECT_EQ(manager_->RenameGroup(u"userz", u"Else"), 0);
}

TEST_F(MediaResManagerTest, AFileSetAsideByARunThatDiedIsThere)
{
    folder_.Write("userb.kvm.older", "<Items><Item path='/a'/></Items>");
    folder_.Write("ginfo.xml.older", "<Groups><Group id='userb' name='Mix'/></Groups>");
    folder_.Write("mine.kvm.older", "<Items><Item path='/older'/></Items>");
    folder_.Write("mine.kvm", "<?xml version=\"1.0\" encoding=\"utf-8\"?><Items/>");
    Start();
    ASSERT_NE(manager_->GetGroup(u"userb"), nullptr);
    EXPECT_EQ(manager_->GetGroup(u"userb")->GetName(), u"Mix");
    EXPECT_FALSE(folder_.Has("mine.kvm.older")); // Its successor stands.
    std::vector<String> sids;
    manager_->GetGroup(u"userb")->Load(sids);
    EXPECT_EQ(sids.size(), 1U);
}

TEST_F(MediaResManagerTest, TheOneManagerComesAndGoes)
{
    EXPECT_EQ(FindMediaResManager(), nullptr);
    DestroyMediaResManager();
    IMediaResManager* const manager = GetMediaResManager();
    EXPECT_EQ(GetMediaResManager(), manager);
    EXPECT_EQ(manager->Init(folder_.GetPath()), 1);
    DestroyMediaLibManager(); // The names are saved without it too, and none is made for that.
    DestroyMediaResManager();
    EXPECT_EQ(FindMediaResManager(), nullptr);
    EXPECT_EQ(FindMediaLibManager(), nullptr);
    EXPECT_TRUE(folder_.Has("ginfo.xml"));
}

} // namespace
} // namespace kivo::tunehive
