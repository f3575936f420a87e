#include "medialib/IMediaLibManager.h"
#include "mediares/GroupIds.h"
#include "mediares/IMediaResManager.h"
#include "mediares/MediaResGroup.h"
#include "shell/contracts/base/Released.h"
#include "shell/contracts/common/Text.h"
#include "tests/support/Child.h"
#include "tests/support/FakeHost.h"
#include "tests/support/TempFolder.h"
#include "tree/MediaTree.h"

#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <random>
#include <vector>

namespace kivo::tunehive {
namespace {

constexpr int kTracks = 150;
const String kGroups[] = {u"playing", u"mine", u"userb"};

// The page of a process that is going to be killed: all comes up in it.
class Page {
public:
    explicit Page(const String& folder)
    {
        GetMediaResManager()->Init(folder);
        GetMediaLibManager()->Initialize(folder + u"lib/");
        if (GetMediaResManager()->GetGroup(u"userb") == nullptr)
            GetMediaResManager()->CreateGroup(u"Mix");
        tree_.reset(new CMediaTree(nullptr));
        tree_->Create(nullptr);
        tree_->LoadTree();
    }

    // Fills each group anew with tracks that bear the number, and saves all.
    void SaveNumbered(int number)
    {
        for (const String& id : kGroups) {
            tree_->ClearCategory(id);
            tree_->AddPaths(id, CStringArray(kTracks, u"/" + common::ToText(number)));
        }
        tree_->SaveAllGroups();
    }

private:
    test::FakeHost host_;
    Released<CMediaTree> tree_;
};

// The number of the group's file, whose tracks all bear it; -1: they don't, or some are missing.
int ReadNumber(const String& folder, const String& id)
{
    const Released<IMediaResGroup> group(
        new MediaResGroup(id, folder + GroupFileName(id), nullptr));
    std::vector<String> sids;
    group->Load(sids);
    MediaInfo first;
    if (sids.size() == kTracks)
        group->GetItem(sids.front(), first);
    for (const String& sid : sids) {
        MediaInfo track;
        group->GetItem(sid, track);
        if (track != first)
            return -1;
    }
    const String path = GetInfoText(first, kItemPath);
    return path.empty() ? -1 : common::CString2Int(path.substr(1));
}

TEST(PageSafety, EachGroupIsOldOrNewAndWholeAtAHundredKills)
{
    constexpr int kKills = 100;
    constexpr int kStep = 1000; // More than runs before a kill.
    const test::TempFolder folder;
    std::mt19937 random(9);
    std::uniform_real_distribution<double> share(0.0, 1.0);
    std::map<String, int> numbers;
    for (int kill = 1; kill <= kKills; ++kill) {
        std::unique_ptr<Page> page; // Made in the other process alone.
        test::KillDuring(share(random), [&](int run) {
            if (page == nullptr)
                page = std::make_unique<Page>(folder.GetPath());
            page->SaveNumbered(kill * kStep + run);
        });
        for (const String& id : kGroups) {
            const int number = ReadNumber(folder.GetPath(), id);
            // Two runs had ended.
            ASSERT_GT(number, kill * kStep) << common::CString_to_utf8(id);
            ASSERT_LT(number, (kill + 1) * kStep);
        }
    }
    for (const std::string& name : folder.List())
        EXPECT_EQ(name.find(".broken"), std::string::npos) << name;
}

} // namespace
} // namespace kivo::tunehive
