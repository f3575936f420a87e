#include "platform/base/DesktopHooks.h"
#include "shell/contracts/common/AppPath.h"
#include "shell/contracts/common/Language.h"
#include "shell/contracts/framework/FileDialog.h"
#include "shell/contracts/framework/Hooks.h"
#include "shell/contracts/framework/Paths.h"
#include "tests/platform/base/ScratchFolder.h"

#include <gtest/gtest.h>

#include <functional>
#include <vector>

namespace kivo {
namespace {

using test::ScratchFolder;
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
        {u"http://[::1]:80/",         true },
        {u"file:///etc/passwd",       false},
        {u"javascript:alert(1)",      false},
        {u"mms://a.example/",         false},
        {u"ftp://a.example/",         false},
        {u"http:/a.example",          false},
        {u"http://",                  false},
        {u"http:///etc/passwd",       false},
        {u"http://?a",                false},
        {u" http://a.example",        false},
        {u"http://a.example/ --flag", false},
        {u"http://a.example/\n",      false},
        {u"http://a.example/\x9F",    false},
        {u"http://a\\b",              false},
        {u"http://a.example/\xD800",  false},
        {u"",                         false},
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

TEST_F(Desktop, ShowsFoldersThatAreThere)
{
    const ScratchFolder folder;
    folder.Write("file", "");
    Texts shown;
    DesktopHooks hooks;
    hooks.showFolder = [&shown](const String& path) { shown.push_back(path); };
    SetDesktopHooks(hooks);
    ShellExecuteW(u"explore", folder.Path());
    ShellExecuteW(u"open", folder.Path());
    ShellExecuteW(u"explore", folder.Path("file"));
    ShellExecuteW(u"explore", folder.Path("missing"));
    EXPECT_EQ(shown, Texts{folder.Path()});
}

TEST_F(Desktop, PickersPassOnWhatTheyAreAsked)
{
    CWnd parent;
    DesktopHooks hooks;
    hooks.chooseFiles = [&](CWnd* over, const String& filter, const String& directory) {
        EXPECT_EQ(over, &parent);
        EXPECT_EQ(filter, u"Music|*.mp3||");
        return directory.empty() ? CStringArray{} : CStringArray{u"/b", u"/a"};
    };
    hooks.chooseFolder = [&](CWnd* over, const String& title) {
        EXPECT_EQ(over, &parent);
        return title + u"/chosen";
    };
    SetDesktopHooks(hooks);
    CFileDialog dialog(&parent, u"Music|*.mp3||");
    EXPECT_FALSE(dialog.DoModal());
    dialog.SetInitialDirectory(u"/music");
    EXPECT_TRUE(dialog.DoModal());
    EXPECT_EQ(dialog.GetPaths(), (CStringArray{u"/b", u"/a"}));
    EXPECT_EQ(SHBrowseForFolderW(&parent, u"Folder"), u"Folder/chosen");
}

TEST_F(Desktop, WithoutOneNothingHappensAndNothingIsChosen)
{
    const ScratchFolder folder;
    ShellExecuteW(u"explore", folder.Path());
    common::SafeOpenWeb(u"http://a", 3);
    CFileDialog dialog(nullptr, u"");
    EXPECT_FALSE(dialog.DoModal());
    EXPECT_EQ(SHBrowseForFolderW(nullptr, u""), u"");
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
    EXPECT_EQ(RunHooks(WH_KEYBOARD, 27, -5), 9);
    EXPECT_EQ(hookLog.calls, (Calls{1, 2}));
    EXPECT_EQ(RunHooks(WH_MOUSE, 27, -5), 0);

    // A hook that removes itself still passes on; one that another removed isn't asked.
    hookLog.inFirst = [&] { EXPECT_EQ(UnhookWindowsHookEx(first), 1); };
    EXPECT_EQ(RunHooks(WH_KEYBOARD, 27, -5), 9);
    EXPECT_EQ(hookLog.calls, (Calls{1, 2, 1, 2}));
    EXPECT_EQ(UnhookWindowsHookEx(first), 0);
    const HookHandle third = SetWindowsHookExW(WH_KEYBOARD, FirstHook);
    EXPECT_GT(third, first);
    hookLog.inFirst = [&] { EXPECT_EQ(UnhookWindowsHookEx(second), 1); };
    EXPECT_EQ(RunHooks(WH_KEYBOARD, 27, -5), 0);
    EXPECT_EQ(hookLog.calls, (Calls{1, 2, 1, 2, 1}));
    EXPECT_EQ(UnhookWindowsHookEx(third), 1);
    EXPECT_EQ(RunHooks(WH_KEYBOARD, 27, -5), 0);
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

TEST(InputHooks, OfOtherKindsThereAreNone)
{
    EXPECT_EQ(SetWindowsHookExW(3, FirstHook), 0U);
    EXPECT_EQ(SetWindowsHookExW(WH_MOUSE, nullptr), 0U);
    EXPECT_EQ(UnhookWindowsHookEx(0), 0);
    EXPECT_EQ(CallNextHookEx(0, 0, 0, 0), 0);
}

TEST(Language, TextsComeFromTheTablesOrAreTheirIds)
{
    const ScratchFolder folder;
    folder.Write("a.ini",
                 "\xEF\xBB\xBF; texts\r\n[Section]\r\nSTRID_A=Play\r\n STRID_B = two\\nlines \r\n"
                 "no text\r\n=no id\r\nSTRID_C=a=b\r\nSTRID_D=\r\n;STRID_E=hidden\r\nSTRID_F=最后");
    folder.Write("b.ini", "STRID_A=Wiedergabe\n");
    common::CMutiLanSupport texts;
    ASSERT_TRUE(texts.AddTable(folder.Path("a.ini")));
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
        {u"strid_a",   u"strid_a"     },
        {u"[Section]", u"[Section]"   },
        {u"",          u""            },
    };
    for (const Row& row : kRows)
        EXPECT_EQ(texts.GetStringViaID(row.id), row.text) << testing::PrintToString(row.id);
    EXPECT_TRUE(texts.AddTable(folder.Path("b.ini")));
    EXPECT_FALSE(texts.AddTable(folder.Path("missing.ini")));
    EXPECT_EQ(texts.GetStringViaID(u"STRID_A"), u"Wiedergabe"); // Later tables win.
    EXPECT_EQ(texts.GetStringViaID(u"STRID_C"), u"a=b");
    texts.AddText(u" STRID_X ", u"x");
    EXPECT_EQ(texts.GetStringViaID(u"STRID_X"), u"x");
    texts.Clear();
    EXPECT_EQ(texts.GetStringViaID(u"STRID_A"), u"STRID_A");
    EXPECT_EQ(texts.GetLangSetting(), u"en");
    texts.SetLangSetting(u"zh_CN");
    EXPECT_EQ(texts.GetLangSetting(), u"zh_CN");
    EXPECT_EQ(common::CMutiLanSupport::GetInstance(), common::CMutiLanSupport::GetInstance());
}

} // namespace
} // namespace kivo
