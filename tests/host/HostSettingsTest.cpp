#include "host/HostSettings.h"

#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

namespace kivo::host {
namespace {

class HostSettingsTest : public testing::Test {
protected:
    [[nodiscard]] HostSettings Open() const
    {
        return HostSettings((folder_.GetNative() / "host.ini").native());
    }

    test::TempFolder folder_;
};

TEST_F(HostSettingsTest, ASecondRunReadsWhatTheFirstWrote)
{
    HostSettings first = Open();
    EXPECT_TRUE(first.Set("name", "back\\slash\nand = line"));
    EXPECT_TRUE(first.SetNumber("volume", -5));
    EXPECT_FALSE(first.SetNumber("volume", -5));
    EXPECT_TRUE(first.Save());

    const HostSettings second = Open();
    EXPECT_EQ(second.Get("name", ""), "back\\slash\nand = line");
    EXPECT_EQ(second.GetNumber("volume", 60), -5);
    EXPECT_EQ(second.GetNumber("missing", 60), 60);
}

TEST_F(HostSettingsTest, WritesNothingWhenNothingChanged)
{
    folder_.Write("host.ini", "odd line\nlater.key=1\n");
    HostSettings settings = Open();
    EXPECT_TRUE(settings.Save());
    EXPECT_EQ(folder_.Read("host.ini"), "odd line\nlater.key=1\n");
    settings.SetNumber("volume", 7);
    EXPECT_TRUE(settings.Save());
    EXPECT_EQ(folder_.Read("host.ini"), "later.key=1\nvolume=7\n");
}

TEST_F(HostSettingsTest, WhatCannotBeReadIsKeptAside)
{
    const std::string large(2U << 20U, 'x');
    folder_.Write("host.ini", large);
    HostSettings settings = Open();
    settings.SetNumber("volume", 7);
    EXPECT_TRUE(settings.Save());
    EXPECT_EQ(folder_.Read("host.ini"), "volume=7\n");
    EXPECT_EQ(folder_.Read("host.ini.broken-1"), large);
}

TEST_F(HostSettingsTest, AFailedSaveIsTriedAgain)
{
    HostSettings settings((folder_.GetNative() / "sub" / "host.ini").native());
    settings.SetNumber("volume", 7);
    EXPECT_FALSE(settings.Save());
    folder_.Write("sub/other", "");
    EXPECT_TRUE(settings.Save());
    EXPECT_EQ(folder_.Read("sub/host.ini"), "volume=7\n");
}

} // namespace
} // namespace kivo::host
