#include "mediares/IMediaResGroup.h"
#include "mediares/MediaResGroup.h"
#include "shell/base/Settings.h"
#include "shell/contracts/base/Released.h"
#include "shell/contracts/common/Text.h"
#include "shell/contracts/framework/Files.h"
#include "tests/support/Child.h"
#include "tests/support/FakeHost.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace kivo::tunehive {
namespace {

// A group whose file holds `count` tracks that all bear the number in their path.
void SaveNumbered(const String& path, int number, int count)
{
    const Released<IMediaResGroup> group(new MediaResGroup(u"mine", path, nullptr));
    std::vector<String> sids;
    sids.reserve(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i)
        sids.push_back(group->AddItem({
            {0, u"/" + common::ToText(number)}
        }));
    group->Save(sids);
}

TEST(SaveSafety, GroupAndSettingsAreOldOrNewAndWholeAtEachKill)
{
    constexpr int kKills = 25;
    constexpr int kTracks = 200;
    const test::TempFolder folder;
    test::FakeHost host;
    host.directory = folder.GetPath();
    const String path = folder.GetPath("mine.kvm");
    const auto save = [&path](int number) {
        ReadConfig();
        SetPlayMode(number % 5);
        SetRememberedVolume(number % 5);
        WriteConfig();
        SaveNumbered(path, number, kTracks);
    };
    save(0);
    for (int kill = 0; kill < kKills; ++kill) {
        test::KillAfter(kill % 5, save);
        const Released<IMediaResGroup> group(new MediaResGroup(u"mine", path, nullptr));
        std::vector<String> sids;
        group->Load(sids);
        ASSERT_EQ(sids.size(), std::size_t{kTracks});
        MediaInfo first;
        MediaInfo last;
        group->GetItem(sids.front(), first);
        group->GetItem(sids.back(), last);
        ASSERT_EQ(first, last);
        SetPlayMode(-1);
        SetRememberedVolume(-2);
        ReadConfig();
        ASSERT_EQ(GetPlayMode(), GetRememberedVolume());
    }
}

TEST(SaveSafety, AFolderThatCantBeWrittenLosesNothingAndIsTold)
{
    const test::TempFolder folder;
    test::FakeHost host;
    host.directory = folder.GetPath();
    ReadConfig();
    WriteConfig();
    SaveNumbered(folder.GetPath("tunehive/mine.kvm"), 1, 3);
    folder.Write("tunehive/broken.kvm", "broken");
    const std::vector<std::string> files = folder.List();
    const std::string config = folder.Read("tunehive/config.xml");
    const std::string group = folder.Read("tunehive/mine.kvm");
    namespace fs = std::filesystem;
    constexpr fs::perms kReadOnly = fs::perms(0555);
    fs::permissions(folder.GetNative(), kReadOnly);
    fs::permissions(folder.GetNative() / "tunehive", kReadOnly);

    static_cast<void>(TakeFailedWrites()); // What other tests left.
    const int told = test::RunAsOrdinaryUser([&folder] {
        ReadConfig();
        SetRememberedVolume(99);
        WriteConfig();
        SaveNumbered(folder.GetPath("tunehive/mine.kvm"), 2, 4);
        const Released<IMediaResGroup> broken(
            new MediaResGroup(u"mine", folder.GetPath("tunehive/broken.kvm"), nullptr));
        std::vector<String> sids;
        broken->Load(sids);
        broken->Save(sids);
        return static_cast<int>(TakeFailedWrites().size());
    });
    fs::permissions(folder.GetNative(), fs::perms(0755));
    fs::permissions(folder.GetNative() / "tunehive", fs::perms(0755));
    EXPECT_EQ(told, 3);
    EXPECT_EQ(folder.List(), files);
    EXPECT_EQ(folder.Read("tunehive/config.xml"), config);
    EXPECT_EQ(folder.Read("tunehive/mine.kvm"), group);
}

} // namespace
} // namespace kivo::tunehive
