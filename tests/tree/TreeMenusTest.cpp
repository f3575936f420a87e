#include "tree/TreeMenus.h"

#include "shell/base/Settings.h"
#include "tests/tree/TreeFixture.h"

namespace kivo::tunehive {
namespace {

// A menu in one line: ids, "-" a separator, "!" disabled, "*" checked, sub-menus in brackets.
std::string Describe(const ui::IMenu& menu)
{
    std::string text;
    for (const auto& entry : menu.GetEntries()) {
        if (!text.empty())
            text += ' ';
        if (entry->IsSubMenu())
            text += "[" + Describe(*entry) + "]" + (entry->IsDisabled() ? "!" : "");
        else if (entry->IsSeparator())
            text += "-";
        else
            text += std::to_string(entry->GetID()) + (entry->IsDisabled() ? "!" : "") +
                    (entry->IsChecked() ? "*" : "");
    }
    return text;
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
        {u"hot",     "1 8!"                    },
        {u"playing", "[17 18 19] - 3 4 - 5"    },
        {u"mine",    "1 [17 18 19] - 3 - 5"    },
        {user_,      "1 [17 18 19] - 3 6 7 - 5"},
    };
    for (const auto& [id, expected] : rows) {
        const Released<ui::IMenu> menu(MakeGroupMenu(ui::MenuDelegate(), id));
        EXPECT_EQ(Describe(*menu), expected);
    }
}

TEST_F(TreeMenusTest, OfTracks)
{
    struct Case {
        String group;
        bool pauses;
        const char* expected;
    };
    const Case rows[] = {
        {u"playing", true,  "2 [57344 57345] [61440 61441] - 4 9 10 - 11"    },
        {u"playing", false, "1 [57344 57345] [61440 61441] - 4 9 10 - 11"    },
        {u"mine",    true,  "1 [57344 57345] [61440 61441] - 9 10 - 11"      },
        {user_,      false, "1 [57344 57345] [61440 61441] - 9 10 - 11"      },
        {u"hot",     false, "1 [57344! 57345! 57346!]! [61440 61441 61442] -"},
        {u"gone",    false, ""                                               },
    };
    for (const auto& [group, pauses, expected] : rows) {
        const Released<ui::IMenu> menu(MakeTrackMenu(ui::MenuDelegate(), group, pauses));
        EXPECT_EQ(Describe(*menu), expected);
    }
}

TEST_F(TreeMenusTest, NameTheKeysOfTheRow)
{
    struct Case {
        ui::IMenu* menu;
        int command;
        const char16_t* keys;
    };
    const Case rows[] = {
        {MakeTrackMenu({},        u"playing",       /*offersPause=*/false),                                 1, u"Return"},
        {MakeTrackMenu({},              u"playing",                              /*offersPause=*/true),                                                                     2, u"Space"},
        {MakeTrackMenu({},  u"mine",/*offersPause=*/false),9, u"Del"},
        {MakeTrackMenu({},        u"mine",                /*offersPause=*/false),                                                             10, u"F2"},
        {MakeTrackMenu({},                 u"mine",                                 /*offersPause=*/false),                                                                        11, u""},
        {MakeGroupMenu({}, user_),1,u""},
        {MakeGroupMenu({},        user_), 6, u"Del"},
        {MakeGroupMenu({},                    user_),                                    7,                                                                           u"F2"},
        {MakeMultiSelectMenu({}),                      9,                                    u"Del"                                                                                                     },
    };
    for (const auto& [menu, command, keys] : rows) {
        const Released<ui::IMenu> owned(menu);
        const ui::IMenu* const entry = menu->FindEntry(command);
        ASSERT_NE(entry, nullptr) << command;
        EXPECT_EQ(entry->GetKeys(), keys) << command;
    }
}

TEST_F(TreeMenusTest, TargetsAreTheEditableGroupsOfTheMenuBuiltLast)
{
    const Released<ui::IMenu> first(
        MakeTrackMenu(ui::MenuDelegate(), u"mine", /*offersPause=*/false));
    EXPECT_EQ(GroupFromCommand(kCommandMoveTo, kCommandMoveTo), u"playing");
    EXPECT_EQ(GroupFromCommand(kCommandCopyTo + 1, kCommandCopyTo), user_);
    EXPECT_EQ(GroupFromCommand(kCommandCopyTo + 2, kCommandCopyTo), u"");
    EXPECT_EQ(GroupFromCommand(kCommandMoveTo, kCommandCopyTo), u"");
    const Released<ui::IMenu> second(MakeMultiSelectMenu(ui::MenuDelegate()));
    EXPECT_EQ(GroupFromCommand(kCommandMoveTo + 1, kCommandMoveTo), u"mine");
    EXPECT_EQ(Describe(*second), "1 [57344 57345 57346] [61440 61441 61442] - 9");
}

TEST_F(TreeMenusTest, OfTheToolPanel)
{
    const Released<ui::IMenu> add(MakeAddMenu(ui::MenuDelegate()));
    EXPECT_EQ(Describe(*add), "17 18 19 - 20");
    struct Case {
        int hasGroup;
        int canDelete;
        const char* expected;
    };
    for (const auto& [hasGroup, canDelete, expected] : {
             Case{0, 1, "22 23 - 25!" },
             Case{1, 1, "22! 23 - 25" },
             Case{1, 0, "22! 23 - 25!"},
    }) {
        const Released<ui::IMenu> menu(MakeDeleteMenu(ui::MenuDelegate(), hasGroup, canDelete));
        EXPECT_EQ(Describe(*menu), expected);
    }
    SetPlayMode(3);
    const Released<ui::IMenu> mode(MakeModeMenu(ui::MenuDelegate()));
    EXPECT_EQ(Describe(*mode), "12 13 14 15* 16");
    SetPlayMode(9);
    const Released<ui::IMenu> none(MakeModeMenu(ui::MenuDelegate()));
    EXPECT_EQ(Describe(*none), "12 13 14 15 16");
    SetPlayMode(2);
}

} // namespace
} // namespace kivo::tunehive
