#include "mediares/MediaResGroup.h"

#include "mediares/GroupInfo.h"
#include "shell/contracts/base/Released.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <map>
#include <random>
#include <string>
#include <vector>

namespace kivo::tunehive {
namespace {

const std::string kHead = "<?xml version=\"1.0\" encoding=\"utf-8\" standalone=\"no\" ?>\n";

std::string ItemsText(const std::vector<std::string>& paths)
{
    std::string text = kHead + "<Items>";
    for (const std::string& path : paths)
        text += "<Item path=\"" + path + "\" name=\"\"/>";
    return text + "</Items>";
}

MediaInfo Track(const String& path)
{
    return {
        {kItemPath, path}
    };
}

class MediaResGroupTest : public testing::Test {
protected:
    Released<IMediaResGroup> MakeGroup(const String& id)
    {
        return Released<IMediaResGroup>(
            new MediaResGroup(id, folder_.GetPath() + id + u".kvm", &names_));
    }
    static String GetPath(IMediaResGroup& group, const String& sid)
    {
        MediaInfo item;
        group.GetItem(sid, item);
        return GetInfoText(item, 0);
    }
    static std::vector<String> Load(IMediaResGroup& group)
    {
        std::vector<String> sids;
        group.Load(sids);
        return sids;
    }
    static std::vector<String> LoadPaths(IMediaResGroup& group)
    {
        std::vector<String> paths;
        for (const String& sid : Load(group))
            paths.push_back(GetPath(group, sid));
        return paths;
    }
    static std::set<String> Find(IMediaResGroup& group, const String& path)
    {
        std::set<String> sids;
        group.FindItems(path, sids);
        return sids;
    }

    test::TempFolder folder_;
    CGroupInfo names_;
    Released<IMediaResGroup> mine_ = MakeGroup(u"mine");
};

TEST_F(MediaResGroupTest, SidsCountFromA)
{
    for (int i = 1; i < 27; ++i)
        EXPECT_EQ(mine_->AddItem(Track(u"/p")).size(), 1U);
    EXPECT_EQ(mine_->AddItem(Track(u"/p")), u"aa");
    EXPECT_EQ(GetPath(*mine_, u"a"), u"/p");
}

TEST_F(MediaResGroupTest, ARecordWithoutAPathIsRefused)
{
    MediaInfo record;
    EXPECT_EQ(mine_->AddItem(record), u"");
    record[kItemName] = u"name";
    EXPECT_EQ(mine_->AddItem(record), u"");
    record[kItemPath] = u"";
    EXPECT_EQ(mine_->AddItem(record), u"");
    record[kItemPath] = u"/p";
    EXPECT_EQ(mine_->AddItem(record), u"a"); // The refused ones have spent no SID.
}

TEST_F(MediaResGroupTest, RecordsComeBackAsTheyWereSet)
{
    std::vector<MediaInfo> records(5, Track(u"/p"));
    records[1][kItemName] = u"";
    records[2][kItemName] = u"name";
    records[3][4] = u"12";
    records[4] = {
        {-1,        u"x"   },
        {kItemPath, u"/中"}
    };
    for (const MediaInfo& record : records) {
        const String sid = mine_->AddItem(record);
        MediaInfo item = Track(u"old");
        EXPECT_EQ(mine_->GetItem(sid, item), 1);
        EXPECT_EQ(item, record);
        for (const MediaInfo& other : records) {
            EXPECT_EQ(mine_->SetItem(sid, other), 1);
            EXPECT_EQ(mine_->GetItem(sid, item), 1);
            EXPECT_EQ(item, other);
        }
    }
}

TEST_F(MediaResGroupTest, AnUnknownSidTouchesNothing)
{
    mine_->AddItem(Track(u"/p"));
    for (const char16_t* sid : {u"b", u"", u"A", u"zzzzzzzzzzzzzzz"}) {
        MediaInfo item = Track(u"old");
        EXPECT_EQ(mine_->GetItem(sid, item), 0);
        EXPECT_EQ(mine_->SetItem(sid, item), 0);
        mine_->RemoveItem(sid);
        mine_->GetItemMediaInfo(sid, item);
        EXPECT_EQ(item, Track(u"old"));
    }
    EXPECT_EQ(GetPath(*mine_, u"a"), u"/p");
}

TEST_F(MediaResGroupTest, APathMayStandUnderSeveralSids)
{
    for (const char16_t* path : {u"/p", u"/q", u"/p"})
        mine_->AddItem(Track(path));
    EXPECT_EQ(Find(*mine_, u"/p"), (std::set<String>{u"a", u"c"}));
    EXPECT_EQ(Find(*mine_, u"/P"), std::set<String>{});
    std::set<String> sids = {u"kept"};
    mine_->FindItems(u"/q", sids);
    EXPECT_EQ(sids, (std::set<String>{u"b", u"kept"}));
    mine_->Clear();
    EXPECT_EQ(Find(*mine_, u"/q"), std::set<String>{});
    EXPECT_EQ(mine_->AddItem(Track(u"/q")), u"d");
}

TEST_F(MediaResGroupTest, TheIndexFollowsEachStepOfARandomRun)
{
    std::map<String, String> model; // SID to path
    std::mt19937 random(5);
    for (int step = 0; step < 5000; ++step) {
        const String path = u"/" + String(1, static_cast<char16_t>(u'a' + random() % 7));
        if (random() % 2 == 0) {
            model[mine_->AddItem(Track(path))] = path;
        } else if (!model.empty()) {
            auto victim = model.begin();
            std::advance(victim, random() % model.size());
            mine_->RemoveItem(victim->first);
            model.erase(victim);
        }
        std::set<String> expected;
        for (const auto& [sid, itsPath] : model)
            if (itsPath == path)
                expected.insert(sid);
        ASSERT_EQ(Find(*mine_, path), expected);
    }
    for (const auto& [sid, path] : model)
        ASSERT_EQ(GetPath(*mine_, sid), path);
}

TEST_F(MediaResGroupTest, TheOrderOfASaveIsTheOrderOfTheNextLoad)
{
    const String a = mine_->AddItem(Track(u"/a"));
    const String b = mine_->AddItem(Track(u"/b"));
    const String c = mine_->AddItem(Track(u"/c"));
    mine_->Save({c, a, u"unknown", b});
    EXPECT_EQ(LoadPaths(*mine_), (std::vector<String>{u"/c", u"/a", u"/b"}));
    EXPECT_EQ(GetPath(*mine_, a), u""); // New SIDs: a load goes on counting.

    const std::vector<String> sids = Load(*mine_);
    mine_->Save({sids[0], sids[0]}); // Twice in the list, twice in the file; the others not.
    EXPECT_EQ(LoadPaths(*mine_), (std::vector<String>{u"/c", u"/c"}));
    mine_->Save({});
    EXPECT_EQ(LoadPaths(*mine_), std::vector<String>{});
}

TEST_F(MediaResGroupTest, ALoadAppendsToTheListAndDropsItemsWithoutAPath)
{
    folder_.Write("mine.kvm", ItemsText({"/a", "", "/b"}));
    std::vector<String> sids = {u"before"};
    mine_->Load(sids);
    EXPECT_EQ(sids, (std::vector<String>{u"before", u"a", u"b"}));
    mine_->Save({u"a", u"b"});
    EXPECT_EQ(LoadPaths(*MakeGroup(u"mine")), (std::vector<String>{u"/a", u"/b"}));
}

TEST_F(MediaResGroupTest, HotIsFilledFromItsFileAndNeverChanged)
{
    const std::string older = "<Items><Item path='/a'/></Items>";
    folder_.Write("hot.kvm", older);
    const Released<IMediaResGroup> hot = MakeGroup(u"hot");
    EXPECT_EQ(hot->IsEditable(), 0);
    EXPECT_EQ(LoadPaths(*hot), std::vector<String>{u"/a"});
    EXPECT_EQ(hot->AddItem(Track(u"/b")), u"");
    hot->RemoveItem(u"a");
    hot->Clear();
    EXPECT_EQ(GetPath(*hot, u"a"), u"/a");
    EXPECT_EQ(hot->SetItem(u"a", Track(u"/a")), 1);
    hot->Save({u"a", u"a"});
    EXPECT_EQ(folder_.List(), std::vector<std::string>{"hot.kvm"});
    EXPECT_EQ(folder_.Read("hot.kvm"), older);
}

TEST_F(MediaResGroupTest, AFileThatGaveNothingIsKeptBeforeTheSave)
{
    const std::string texts[] = {
        "<Items><Item path='/a'/>", "<Other/>", kHead + "<Other/>", "no XML"};
    for (const std::string& text : texts) {
        SCOPED_TRACE(text);
        const test::TempFolder folder;
        folder.Write("f", text);
        const Released<IMediaResGroup> group(
            new MediaResGroup(u"mine", folder.GetPath("f"), nullptr));
        EXPECT_TRUE(Load(*group).empty());
        EXPECT_EQ(folder.Read("f"), text);
        EXPECT_EQ(group->AddItem(Track(u"/new")), u"a") << "the broken file has spent no SID";
        group->Save({u"a"});
        EXPECT_EQ(folder.Read("f.broken-1"), text);
        group->Save({}); // From here on the file is an ordinary one.
        EXPECT_EQ(folder.List(), (std::vector<std::string>{"f", "f.broken-1"}));
    }
}

TEST_F(MediaResGroupTest, AnEmptyFileIsAnOrdinaryOne)
{
    folder_.Write("mine.kvm", "");
    EXPECT_TRUE(Load(*mine_).empty());
    mine_->Save({});
    EXPECT_EQ(folder_.List(), std::vector<std::string>{"mine.kvm"});
    EXPECT_EQ(folder_.Read("mine.kvm"), kHead + "<Items />\n");
}

TEST_F(MediaResGroupTest, AnOlderFileIsAsideUntilTheSave)
{
    folder_.Write("mine.kvm", "<Items><Item path='/\xD6\xD0'/></Items>");
    const std::vector<String> sids = Load(*mine_);
    EXPECT_EQ(folder_.List(), std::vector<std::string>{"mine.kvm.older"});
    mine_->Save(sids);
    EXPECT_EQ(folder_.List(), std::vector<std::string>{"mine.kvm"});
    EXPECT_EQ(LoadPaths(*mine_), std::vector<String>{u"/中"});
}

TEST_F(MediaResGroupTest, WithoutNamesAGroupHasNone)
{
    const Released<IMediaResGroup> group(new MediaResGroup(u"userb", u"/f", nullptr));
    EXPECT_EQ(group->GetName(), u"");
    EXPECT_EQ(group->GetID(), u"userb");
    EXPECT_EQ(group->IsUserGroup(), 1);
    EXPECT_EQ(mine_->IsUserGroup(), 0);
}

} // namespace
} // namespace kivo::tunehive
