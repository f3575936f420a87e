#include "tree/TreeMenus.h"

#include "shell/base/Settings.h"
#include "shell/contracts/common/Text.h"
#include "tests/tree/TreeFixture.h"

namespace kivo::tunehive {
namespace {

std::string DescribeEntry(const ui::IMenu& entry);

std::string DescribeEntries(const ui::IMenu& menu)
{
    std::string text;
    for (const auto& entry : menu.GetEntries())
        text += (text.empty() ? "" : " ") + DescribeEntry(*entry);
    return text;
}

std::string DescribeEntry(const ui::IMenu& entry)
{
    if (entry.IsSeparator())
        return "-";
    std::string text =
        entry.IsSubMenu() ? "[" + DescribeEntries(entry) + "]" : std::to_string(entry.GetID());
    if (!entry.GetKeys().empty())
        text += "=" + common::CString_to_utf8(entry.GetKeys());
    return text + (entry.IsDisabled() ? "!" : "") + (entry.IsChecked() ? "*" : "");
}

// A menu in one line: ids, "=" and the key that does the same, "-" a separator, "!" disabled, "*"
// checked, sub-menus in brackets. Frees the menu.
std::string Describe(ui::IMenu* menu)
{
    const Released<ui::IMenu> owned(menu);
    return DescribeEntries(*owned);
}

class TreeMenusTest : public TreeTest {
public:
    TreeMenusTest()
    {
        // The group "hot" is there when its file is.
        Stop();
        folder_.Write(
            "tunehive/hot.kvm",
            R"(<?xml version="1.0" encoding="utf-8"?><Items><Item path="/h" name=""/></Items>)");
        Start();
        user_ = NewGroup();
    }

protected:
    String user_;
};

TEST_F(TreeMenusTest, OfGroups)
{
    const std::pair<String, const char*> rows[] = {
        {u"hot",     "1 8!"                           },
        {u"playing", "[17 18 19] - 3 4 - 5"           },
        {u"mine",    "1 [17 18 19] - 3 - 5"           },
        {user_,      "1 [17 18 19] - 3 6=Del 7=F2 - 5"},
    };
    for (const auto& [id, expected] : rows)
        EXPECT_EQ(Describe(MakeGroupMenu({}, id)), expected);
}

TEST_F(TreeMenusTest, OfTracks)
{
    struct Case {
        String group;
        bool pauses;
        const char* expected;
    };
    const Case rows[] = {
        {u"playing", true,  "2=Space [57344 57345] [61440 61441] - 4 9=Del 10=F2 - 11" },
        {u"playing", false, "1=Return [57344 57345] [61440 61441] - 4 9=Del 10=F2 - 11"},
        {u"mine",    true,  "1=Return [57344 57345] [61440 61441] - 9=Del 10=F2 - 11"  },
        {user_,      false, "1=Return [57344 57345] [61440 61441] - 9=Del 10=F2 - 11"  },
        {u"hot",     false, "1=Return [57344! 57345! 57346!]! [61440 61441 61442] -"   },
        {u"gone",    false, ""                                                         },
    };
    for (const auto& [group, pauses, expected] : rows)
        EXPECT_EQ(Describe(MakeTrackMenu({}, group, pauses)), expected);
}

TEST_F(TreeMenusTest, TargetsAreTheEditableGroupsOfTheMenuBuiltLast)
{
    Describe(MakeTrackMenu({}, u"mine", /*offersPause=*/false));
    EXPECT_EQ(GroupFromCommand(kCommandMoveTo, kCommandMoveTo), u"playing");
    EXPECT_EQ(GroupFromCommand(kCommandCopyTo + 1, kCommandCopyTo), user_);
    EXPECT_EQ(GroupFromCommand(kCommandCopyTo + 2, kCommandCopyTo), u"");
    EXPECT_EQ(GroupFromCommand(kCommandMoveTo, kCommandCopyTo), u"");
    EXPECT_EQ(Describe(MakeMultiSelectMenu({})),
              "1 [57344 57345 57346] [61440 61441 61442] - 9=Del");
    EXPECT_EQ(GroupFromCommand(kCommandMoveTo + 1, kCommandMoveTo), u"mine");
}

TEST_F(TreeMenusTest, OfTheToolPanel)
{
    EXPECT_EQ(Describe(MakeAddMenu({})), "17 18 19 - 20");
    EXPECT_EQ(Describe(MakeDeleteMenu({}, /*hasGroup=*/0, /*canDeleteGroup=*/1)), "22 23 - 25!");
    EXPECT_EQ(Describe(MakeDeleteMenu({}, /*hasGroup=*/1, /*canDeleteGroup=*/1)), "22! 23 - 25");
    EXPECT_EQ(Describe(MakeDeleteMenu({}, /*hasGroup=*/1, /*canDeleteGroup=*/0)), "22! 23 - 25!");
    SetPlayMode(9); // Of a later version.
    EXPECT_EQ(Describe(MakeModeMenu({})), "12 13 14 15 16");
    SetPlayMode(2);
    EXPECT_EQ(Describe(MakeModeMenu({})), "12 13 14* 15 16");
}

} // namespace
} // namespace kivo::tunehive
