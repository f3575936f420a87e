#include "shell/contracts/ui/Menu.h"

#include "platform/ui/NullPeers.h"

#include <gtest/gtest.h>

#include <functional>

namespace kivo::ui {
namespace {

class Chooser {
public:
    void OnChosen(IMenu* entry)
    {
        chosen.push_back(entry->GetID());
        if (then)
            then();
    }
    MenuDelegate Delegate() { return {this, &Chooser::OnChosen}; }

    // A menu of an entry 1, a disabled 2, a separator, and a sub-menu with 0xE000.
    IMenu* Make(const bool* gone = nullptr)
    {
        struct Watched : IMenu {
            ~Watched() override { *mark = true; }
            bool* mark = nullptr;
        };
        auto* menu = new Watched;
        menu->mark = gone != nullptr ? const_cast<bool*>(gone) : &ignored_;
        menu->AddMenu(u"one", 1, 0, 1, Delegate(), nullptr, u"");
        menu->AddMenu(u"two", 2, 1, 0, Delegate(), nullptr, u"");
        menu->AddMenu(u"", 0, 0, 0, MenuDelegate(), nullptr, u"");
        auto* move = new IMenu(u"move", -1, 0, 0, u"");
        move->AddMenu(u"to", 0xE000, 0, 0, Delegate(), nullptr, u"");
        menu->AddMenu(move);
        return menu;
    }

    std::vector<int> chosen;
    std::function<void()> then;

private:
    bool ignored_ = false;
};

class Menus : public testing::Test {
protected:
    ~Menus() override { GetNullPeerFactory().ClearScripts(); }
    static void Choose(int id)
    {
        GetNullPeerFactory().QueueMenu([id](IMenu& menu) { return menu.FindEntry(id); });
    }
    static void Pop(IMenu* menu) { IMenu::PopupMenu(nullptr, menu, -1, -1, 0, u""); }

    Chooser chooser_;
};

TEST_F(Menus, TheDelegateGetsTheEntryAndTheMenuIsFreedBehindIt)
{
    for (const int id : {1, 0xE000}) {
        bool gone = false;
        bool goneInside = true;
        chooser_.then = [&gone, &goneInside] { goneInside = gone; };
        Choose(id);
        Pop(chooser_.Make(&gone));
        EXPECT_EQ(chooser_.chosen.back(), id);
        EXPECT_FALSE(goneInside);
        EXPECT_TRUE(gone);
    }
}

TEST_F(Menus, NothingRunsForNoChoiceOrADisabledOne)
{
    bool gone = false;
    Choose(99);
    Pop(chooser_.Make(&gone));
    Choose(2);
    Pop(chooser_.Make());
    Pop(nullptr);
    Pop(new IMenu);
    EXPECT_TRUE(chooser_.chosen.empty());
    EXPECT_TRUE(gone);
}

TEST_F(Menus, AChoiceMayPopUpAnotherMenu)
{
    chooser_.then = [this] {
        chooser_.then = {};
        Pop(chooser_.Make());
    };
    Choose(1);
    Choose(0xE000);
    Pop(chooser_.Make());
    EXPECT_EQ(chooser_.chosen, (std::vector<int>{1, 0xE000}));
}

TEST_F(Menus, NamesAreOneShortLine)
{
    const String sixty(60, u'x');
    const String cut = sixty.substr(1) + u'\u2026';
    const String beforeThePair = sixty.substr(2);
    struct Case {
        const char* name;
        String text;
        String shown;
    };
    const Case kCases[] = {
        {"AsItIs",          u"Rock & Roll",                  u"Rock & Roll"           },
        {"OneLine",         u"a\r\nb\tc\u2028d",             u"a  b c d"              },
        {"SixtyFit",        sixty,                           sixty                    },
        {"MoreAreCut",      sixty + sixty,                   cut                      },
        {"NotThroughAPair", beforeThePair + u"\U0001F3B5yz", beforeThePair + u'\u2026'},
    };
    for (const Case& row : kCases) {
        SCOPED_TRACE(row.name);
        EXPECT_TRUE(IMenu(row.text, 1, 0, 0, u"").GetDisplayText() == row.shown);
    }
}

} // namespace
} // namespace kivo::ui
