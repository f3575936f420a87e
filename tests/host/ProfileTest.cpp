#include "host/Profile.h"

#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <memory>

namespace kivo::host {
namespace {

using test::TempFolder;

TEST(ProfileLock, OneProgramHasTheProfile)
{
    const TempFolder folder;
    const std::string profile = (folder.GetNative() / "a" / "b").native();
    auto first = std::make_unique<ProfileLock>(profile);
    EXPECT_EQ(first->GetState(), ProfileState::Ours);
    EXPECT_EQ(ProfileLock(profile).GetState(), ProfileState::InUse);
    EXPECT_EQ(ProfileLock(profile + "2").GetState(), ProfileState::Ours);
    first.reset();
    EXPECT_EQ(ProfileLock(profile).GetState(), ProfileState::Ours);
}

TEST(ProfileLock, ANewProfileIsForTheUserAlone)
{
    const TempFolder folder;
    const std::string profile = (folder.GetNative() / "p").native();
    const ProfileLock lock(profile);
    struct stat info {};
    ASSERT_EQ(stat(profile.c_str(), &info), 0);
    EXPECT_EQ(info.st_mode & 0777U, 0700U);
}

TEST(ProfileLock, WhatCannotBeAFolderIsTold)
{
    const TempFolder folder;
    folder.Write("file", "x");
    const ProfileLock lock((folder.GetNative() / "file" / "p").native());
    EXPECT_EQ(lock.GetState(), ProfileState::Failed);
    EXPECT_NE(lock.GetError(), "");
}

TEST(RestoreProfile, BringsBackOlderFormsTwoLevelsDown)
{
    const TempFolder folder;
    folder.Write("host.ini.older", "1");
    folder.Write("tunehive/config.xml.older", "2");
    folder.Write("tunehive/lib/a.mlib.older", "3");
    folder.Write("tunehive/mine.kvm.older", "old");
    folder.Write("tunehive/mine.kvm", "new");
    RestoreProfile(folder.GetNative().native());
    const std::vector<std::string> expected{
        "host.ini", "tunehive/config.xml", "tunehive/lib/a.mlib", "tunehive/mine.kvm"};
    EXPECT_EQ(folder.List(), expected);
    EXPECT_EQ(folder.Read("tunehive/mine.kvm"), "new");
}

} // namespace
} // namespace kivo::host
