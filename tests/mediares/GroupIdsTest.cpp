#include "mediares/GroupIds.h"

#include "tests/mediares/GroupNames.h"

#include <gtest/gtest.h>

namespace kivo::tunehive {
namespace {

struct IdCase {
    const char16_t* id;
    const char16_t* suffix;
    int order;
    bool isFixed;
};

constexpr IdCase kIdCases[] = {
    {u"playing", u"",   0,  true },
    {u"mine",    u"",   1,  true },
    {u"usera",   u"a",  2,  false},
    {u"userab",  u"ab", 2,  false},
    {u"hot",     u"",   3,  true },
    {u"user",    u"",   -1, false},
    {u"userA",   u"",   -1, false},
    {u"user1",   u"",   -1, false},
    {u"Mine",    u"",   -1, false},
    {u"auser",   u"",   -1, false},
    {u"",        u"",   -1, false},
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
    const GroupNames language;
    EXPECT_EQ(GroupDefaultName(u"playing"), u"Playing");
    EXPECT_EQ(GroupDefaultName(u"user"), u"Group ");
    EXPECT_EQ(GroupDefaultName(u"userb"), u"");
    EXPECT_TRUE(IsDefaultGroupName(u"Hot"));
    EXPECT_FALSE(IsDefaultGroupName(u"hot"));
    EXPECT_FALSE(IsDefaultGroupName(u"Group "));
}

} // namespace
} // namespace kivo::tunehive
