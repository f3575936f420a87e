#include "mediares/GroupIds.h"

#include "shell/contracts/common/Language.h"

#include <gtest/gtest.h>

namespace kivo::tunehive {
namespace {

struct IdCase {
    const char16_t* id;
    bool isFixed;
    const char16_t* suffix;
    int order;
};

constexpr IdCase kIdCases[] = {
    {u"playing", true,  u"",   0 },
    {u"mine",    true,  u"",   1 },
    {u"usera",   false, u"a",  2 },
    {u"userab",  false, u"ab", 2 },
    {u"hot",     true,  u"",   3 },
    {u"user",    false, u"",   -1},
    {u"userA",   false, u"",   -1},
    {u"user1",   false, u"",   -1},
    {u"Mine",    false, u"",   -1},
    {u"auser",   false, u"",   -1},
    {u"",        false, u"",   -1},
};

TEST(GroupIds, SayWhatAGroupIs)
{
    for (const IdCase& row : kIdCases) {
        EXPECT_EQ(IsFixedGroupID(row.id), row.isFixed);
        EXPECT_EQ(UserGroupSuffix(row.id), row.suffix);
        EXPECT_EQ(IsUserGroupID(row.id), !String(row.suffix).empty());
        EXPECT_EQ(GroupDisplayOrder(row.id), row.order);
        // A group file is one whose id says that it is a group.
        const bool isGroup = row.order >= 0;
        EXPECT_EQ(GroupIdFromFileName(GroupFileName(row.id)), isGroup ? String(row.id) : String());
    }
}

TEST(GroupIds, TheExtensionIsExact)
{
    for (const char16_t* name : {u"mine", u"mine.KVM", u"mine.kvm.older", u".kvm", u"kvm", u""})
        EXPECT_EQ(GroupIdFromFileName(name), u"");
}

TEST(GroupIds, DefaultNamesComeInTheUsersLanguage)
{
    auto* const language = common::CMutiLanSupport::GetInstance();
    language->AddText(u"STRID_TUNEHIVE_NOWPLAYING", u"Playing");
    language->AddText(u"STRID_TUNEHIVE_MYMEDIA", u"Mine");
    language->AddText(u"STRID_TUNEHIVE_HOT", u"Hot");
    language->AddText(u"STRID_TUNEHIVE_NEW", u"Group ");
    EXPECT_EQ(GroupDefaultName(u"playing"), u"Playing");
    EXPECT_EQ(GroupDefaultName(u"user"), u"Group ");
    EXPECT_EQ(GroupDefaultName(u"userb"), u"");
    EXPECT_TRUE(IsDefaultGroupName(u"Hot"));
    EXPECT_FALSE(IsDefaultGroupName(u"hot"));
    EXPECT_FALSE(IsDefaultGroupName(u"Group "));
    language->Clear();
}

} // namespace
} // namespace kivo::tunehive
