#include "platform/base/DesktopHooks.h"
#include "shell/contracts/common/AppPath.h"
#include "shell/contracts/common/Language.h"
#include "shell/contracts/framework/FileDialog.h"
#include "shell/contracts/framework/Hooks.h"
#include "shell/contracts/framework/Paths.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <functional>
#include <vector>

namespace kivo {
namespace {

using test::TempFolder;
using Texts = std::vector<String>;

class Desktop : public testing::Test {
protected:
    ~Desktop() override { SetDesktopHooks({}); }
};

TEST_F(Desktop, IsGivenAddressesOfTheWebAlone)
{
    struct Row {
        const char16_t* url;
        bool opens;
    };
    constexpr Row kRows[] = {
        {u"http://a.example/b?c=d#e", true },
        {u"HTTPS://a.example",        true },
        {u"http://你好.example/",   true },
        {u"file:///etc/passwd",       false},
        {u"mms://a.example/",         false},
        {u"http:/a.example",          false},
        {u"http:///etc/passwd",       false},
        {u" http://a.example",        false},
        {u"http://a.example/ --flag", false},
        {u"http://a.example/\x9F",    false},
        {u"http://a\\b",              false},
        {u"http://a.example/\xD800",  false},
    };
    Texts opened;
    DesktopHooks hooks;
    hooks.openWeb = [&opened](const String& url) { opened.push_back(url); };
    SetDesktopHooks(hooks);
    for (const Row& row : kRows) {
        SCOPED_TRACE(testing::PrintToString(row.url));
        opened.clear();
        common::SafeOpenWeb(row.url, 3);
        EXPECT_EQ(opened, row.opens ? Texts{row.url} : Texts{});
    }
    opened.clear();
    common::SafeOpenWeb(u"http://a/" + String(9000, u'x'), 3);
    EXPECT_EQ(opened, Texts{});
}

TEST_F(Desktop, IsAskedForFilesAndFoldersAndShownThem)
{
    const TempFolder folder;
    folder.Write("file", "");
    for (const bool hasDesktop : {false, true}) {
        SCOPED_TRACE(hasDesktop);
        Texts shown;
        CWnd parent;
        DesktopHooks hooks;
        hooks.showFolder = [&shown](const String& path) { shown.push_back(path); };
        hooks.chooseFiles = [&](CWnd* over, const String& filter, const String& directory) {
            EXPECT_EQ(over, &parent);
            EXPECT_EQ(filter, u"Music|*.mp3||");
            return directory.empty() ? CStringArray{} : CStringArray{u"/b", u"/a"};
        };
        hooks.chooseFolder = [&](CWnd* over, const String& title) {
            EXPECT_EQ(over, &parent);
            return title + u"/chosen";
        };
        SetDesktopHooks(hasDesktop ? hooks : DesktopHooks());
        CFileDialog dialog(&parent, u"Music|*.mp3||");
        EXPECT_FALSE(dialog.DoModal());
        dialog.SetInitialDirectory(u"/music");
        EXPECT_EQ(dialog.DoModal(), hasDesktop);
        EXPECT_EQ(dialog.GetPaths(), hasDesktop ? (CStringArray{u"/b", u"/a"}) : CStringArray{});
        EXPECT_EQ(SHBrowseForFolderW(&parent, u"Folder"), hasDesktop ? u"Folder/chosen" : u"");
        ShellExecuteW(u"explore", folder.GetPath());
        ShellExecuteW(u"open", folder.GetPath());
        ShellExecuteW(u"explore", folder.GetPath("file"));
        ShellExecuteW(u"explore", folder.GetPath("missing"));
        EXPECT_EQ(shown, hasDesktop ? Texts{folder.GetPath()} : Texts{});
        common::SafeOpenWeb(u"http://a", 3); // Nobody opens it.
    }
}

using Calls = std::vector<int>;

struct HookLog {
    Calls calls;
    std::function<void()> inFirst;
    LPARAM answer = 0;
};
HookLog hookLog;

LPARAM FirstHook(int code, WPARAM wParam, LPARAM lParam)
{
    hookLog.calls.push_back(1);
    if (hookLog.inFirst)
        hookLog.inFirst();
    return CallNextHookEx(0, code, wParam, lParam);
}

LPARAM SecondHook(int code, WPARAM wParam, LPARAM lParam)
{
    hookLog.calls.push_back(2);
    EXPECT_EQ(code, 0);
    EXPECT_EQ(wParam, 27U);
    EXPECT_EQ(lParam, -5);
    return hookLog.answer;
}

TEST(InputHooks, AreAskedFromTheNewestOnAndPassOn)
{
    hookLog = {};
    hookLog.answer = 9;
    const HookHandle second = SetWindowsHookExW(WH_KEYBOARD, SecondHook);
    const HookHandle first = SetWindowsHookExW(WH_KEYBOARD, FirstHook);
    EXPECT_EQ(RunHooks(WH_MOUSE, 27, -5), 0);
    // A hook that removes itself still passes on; one that another removed isn't asked.
    hookLog.inFirst = [&] { EXPECT_EQ(UnhookWindowsHookEx(first), 1); };
    EXPECT_EQ(RunHooks(WH_KEYBOARD, 27, -5), 9);
    EXPECT_EQ(hookLog.calls, (Calls{1, 2}));
    EXPECT_EQ(UnhookWindowsHookEx(first), 0);
    const HookHandle third = SetWindowsHookExW(WH_KEYBOARD, FirstHook);
    EXPECT_GT(third, first);
    hookLog.inFirst = [&] { EXPECT_EQ(UnhookWindowsHookEx(second), 1); };
    EXPECT_EQ(RunHooks(WH_KEYBOARD, 27, -5), 0);
    EXPECT_EQ(hookLog.calls, (Calls{1, 2, 1}));
    EXPECT_EQ(UnhookWindowsHookEx(third), 1);
    EXPECT_EQ(SetWindowsHookExW(3, FirstHook), 0U); // There is no such kind.
    EXPECT_EQ(SetWindowsHookExW(WH_MOUSE, nullptr), 0U);
    EXPECT_EQ(CallNextHookEx(0, 0, 0, 0), 0);
}

TEST(InputHooks, APassInsideAPassLeavesTheOuterInItsPlace)
{
    hookLog = {};
    const HookHandle second = SetWindowsHookExW(WH_KEYBOARD, SecondHook);
    const HookHandle first = SetWindowsHookExW(WH_KEYBOARD, FirstHook);
    hookLog.inFirst = [] {
        hookLog.inFirst = {};
        RunHooks(WH_KEYBOARD, 27, -5);
    };
    RunHooks(WH_KEYBOARD, 27, -5);
    EXPECT_EQ(hookLog.calls, (Calls{1, 1, 2, 2}));
    EXPECT_EQ(UnhookWindowsHookEx(first), 1);
    EXPECT_EQ(UnhookWindowsHookEx(second), 1);
}

TEST(Language, TextsComeFromTheTablesOrAreTheirIds)
{
    const TempFolder folder;
    folder.Write("a.ini",
                 "\xEF\xBB\xBF; texts\r\n[Section]\r\nSTRID_A=Play\r\n STRID_B = two\\nlines \r\n"
                 "no text\r\n=no id\r\nSTRID_C=a=b\r\nSTRID_D=\r\n;STRID_E=hidden\r\nSTRID_F=最后");
    folder.Write("b.ini", "STRID_A=Wiedergabe\n");
    common::CMutiLanSupport texts;
    ASSERT_TRUE(texts.AddTable(folder.GetPath("a.ini")));
    struct Row {
        const char16_t* id;
        const char16_t* text;
    };
    constexpr Row kRows[] = {
        {u"STRID_A",   u"Play"        },
        {u"STRID_A ",  u"Play"        }, // Ids are looked up without blanks at their ends.
        {u"STRID_B",   u" two\nlines "},
        {u"STRID_C",   u"a=b"         },
        {u"STRID_D",   u""            },
        {u"STRID_E",   u"STRID_E"     },
        {u"STRID_F",   u"最后"      },
        {u"[Section]", u"[Section]"   },
    };
    for (const Row& row : kRows)
        EXPECT_EQ(texts.GetStringViaID(row.id), row.text) << testing::PrintToString(row.id);
    EXPECT_TRUE(texts.AddTable(folder.GetPath("b.ini")));
    EXPECT_FALSE(texts.AddTable(folder.GetPath("missing.ini")));
    EXPECT_EQ(texts.GetStringViaID(u"STRID_A"), u"Wiedergabe"); // Later tables win.
    texts.AddText(u" STRID_X ", u"x");
    EXPECT_EQ(texts.GetStringViaID(u"STRID_X"), u"x");
    texts.Clear();
    EXPECT_EQ(texts.GetStringViaID(u"STRID_A"), u"STRID_A");
}

} // namespace
} // namespace kivo
