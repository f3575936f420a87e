#include "host/PlayerKeys.h"
#include "tests/platform/web/WebDesk.h"
#include "tests/support/CaseName.h"
#include "tests/support/NotingRemote.h"

#include <gtest/gtest.h>
#include <QApplication>
#include <QPushButton>
#include <QTest>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <fstream>
#include <map>

namespace kivo::test {
namespace {

constexpr char16_t kOutside[] = u"http://outside.example/";

struct LinkCase {
    const char* name;
    const char* href;
    bool isConfirmed;
    const char16_t* calls;
    const char16_t* opened; // In the user's browser; empty: nothing.
};

constexpr char kPlay[] = "http://m.example/a.mp3?kivo=1&p=1&song=Snow&singer=Ada";
constexpr char16_t kPlayed[] =
    u"stop;add playing | http://m.example/a.mp3 | Snow - Ada;play playing s;";
constexpr char kAsk[] = "http://m.example/a.mp3?kivo=1&p=0&song=Snow&singer=Ada";
constexpr char16_t kAsked[] = u"ask http://m.example/a.mp3 | Snow - Ada;";
constexpr char16_t kAdded[] =
    u"ask http://m.example/a.mp3 | Snow - Ada;add mine | http://m.example/a.mp3 | Snow - Ada;";
constexpr char kCodes[] =
    "http://m.example/a%20b.mp3?id=7&kivo=1&p=1&song=%E6%98%A5%20x&singer=%3F";
constexpr char16_t kCoded[] =
    u"stop;add playing | http://m.example/a%20b.mp3?id=7 | %E6%98%A5%20x - %3F;play playing s;";
constexpr char kLive[] = "mms://m.example/live;kivo=1;p=1&song=S&singer=T";
constexpr char16_t kLived[] = u"stop;add playing | mms://m.example/live | S - T;play playing s;";
constexpr char kShop[] = "https://shop.example/a%20b?x=1#part";
constexpr char16_t kShown[] = u"https://shop.example/a%20b?x=1#part";
constexpr char kOther[] = "http://m.example/a?kivo=1&p=2&song=S&singer=T";
constexpr char kTwo[] = "http://m.example/a?kivo=1&p=1&song=S";
constexpr char kFour[] = "http://m.example/a?kivo=1&p=1&song=S&singer=T&x=y";
constexpr char kFile[] = "file:///tmp/a?kivo=1&p=1&song=S&singer=T";
constexpr char kScript[] = "javascript:'?kivo=1&p=1&song=S&singer=T'";
constexpr char kData[] = "data:text/html,x?kivo=1&p=1&song=S&singer=T";

constexpr LinkCase kLinkCases[] = {
    {"WithoutTheMarkerGoesOutside",    kShop,                       true,  u"",     kShown},
    {"OneStopsAddsAndPlays",           kPlay,                       true,  kPlayed, u""   },
    {"ZeroAsksAndAddsWhatItGivesBack", kAsk,                        true,  kAdded,  u""   },
    {"ZeroAddsNothingUnlessConfirmed", kAsk,                        false, kAsked,  u""   },
    {"TextsStayEncoded",               kCodes,                      true,  kCoded,  u""   },
    {"AnyCharacterSeparates",          kLive,                       true,  kLived,  u""   },
    {"AnotherActionDoesNothing",       kOther,                      true,  u"",     u""   },
    {"TwoFieldsDoNothing",             kTwo,                        true,  u"",     u""   },
    {"FourFieldsDoNothing",            kFour,                       true,  u"",     u""   },
    {"AMarkerAloneDoesNothing",        "http://m.example/a?kivo=1", true,  u"",     u""   },
    {"AFileIsNoLink",                  kFile,                       true,  u"",     u""   },
    {"AScriptIsNoLink",                kScript,                     true,  u"",     u""   },
    {"DataAreNoLink",                  kData,                       true,  u"",     u""   },
    {"AProgramIsNoLink",               "mailto:a@b.example",        true,  u"",     u""   },
};

class CabinetLinkTest : public testing::TestWithParam<LinkCase> {};

TEST_P(CabinetLinkTest, Leads)
{
    const LinkCase& row = GetParam();
    // The first click follows the link, the second one that goes outside: then all has been done.
    Cabinet cabinet(MakeLinkPage(row.href,
                                 "setTimeout(() => { if (link.done) return; link.done = true;"
                                 "link.href = 'http://outside.example/'; tell('next'); })"));
    cabinet.owner.ask = [&row] { return row.isConfirmed; };
    ASSERT_TRUE(cabinet.WaitForWord("ready"));
    cabinet.Click();
    ASSERT_TRUE(cabinet.WaitForWord("next"));
    cabinet.Click();
    std::vector<String>& opened = WebDesk::Get().opened;
    ASSERT_TRUE(WaitUntil([&opened] { return !opened.empty() && opened.back() == kOutside; }));
    opened.pop_back();
    EXPECT_EQ(cabinet.owner.calls, row.calls);
    EXPECT_EQ(opened.empty() ? String() : opened.front(), row.opened);
    EXPECT_LE(opened.size(), 1U);
}

INSTANTIATE_TEST_SUITE_P(Web, CabinetLinkTest, testing::ValuesIn(kLinkCases), CaseName<LinkCase>);

TEST(Cabinet, TheSameLinkTwiceAddsTwice)
{
    const Cabinet cabinet(MakeLinkPage(kPlay));
    ASSERT_TRUE(cabinet.WaitForWord("ready"));
    cabinet.Click();
    ASSERT_TRUE(WaitUntil([&] { return cabinet.owner.calls == kPlayed; }));
    cabinet.Click();
    EXPECT_TRUE(WaitUntil([&] { return cabinet.owner.calls == String(kPlayed) + kPlayed; }));
}

TEST(Cabinet, ALinkOfTheSameWindowIsFollowedInside)
{
    WebDesk::Get().server.ServeBytes("/inside", "inside", "text/html");
    const Cabinet cabinet(MakeLinkPage("/inside", "link.target = ''"));
    ASSERT_TRUE(cabinet.WaitForWord("ready"));
    cabinet.Click();
    EXPECT_TRUE(WaitUntil([] { return WebDesk::Get().server.CountRequests("/inside") > 0; }));
    EXPECT_TRUE(WebDesk::Get().opened.empty());
}

TEST(Cabinet, MayGoWhileItsPageLoads)
{
    HttpServer& server = WebDesk::Get().server;
    server.Serve("/slow", [](const HttpRequest&, const HttpAnswer& answer) {
        answer.Send("HTTP/1.1 200 OK\r\nContent-Type: text/html\r\n\r\n<p>begun");
        answer.Hang();
    });
    Cabinet slow("<script>location = '/slow'</script>");
    ASSERT_TRUE(WaitUntil([&server] { return server.CountRequests("/slow") > 0; }));
    slow.Close();
    EXPECT_FALSE(slow.IsOpen());
    const Cabinet next(MakeLinkPage(""));
    EXPECT_TRUE(next.WaitForWord("ready"));
}

// The processes of pages: they come from one that the browser starts, so they are our
// grandchildren.
std::vector<pid_t> FindPageProcesses()
{
    std::map<pid_t, pid_t> parents;
    for (const auto& entry : std::filesystem::directory_iterator("/proc")) {
        std::ifstream stat(entry.path() / "stat");
        pid_t pid = 0;
        pid_t parent = 0;
        std::string name;
        std::string state;
        if (stat >> pid >> name >> state >> parent)
            parents[pid] = parent;
    }
    std::vector<pid_t> found;
    for (const auto& [pid, parent] : parents) {
        const auto above = parents.find(parent);
        if (above != parents.end() && above->second == getpid())
            found.push_back(pid);
    }
    return found;
}

TEST(Cabinet, TakesAPageAlongThatNeverRests)
{
    Cabinet cabinet("<script>tell('begun').then(() => { for (;;); });</script>");
    ASSERT_TRUE(cabinet.WaitForWord("begun"));
    EXPECT_FALSE(FindPageProcesses().empty());
    cabinet.Close();
    EXPECT_TRUE(WaitUntil([] { return FindPageProcesses().empty(); }));
}

TEST(Cabinet, MayGoWhileItsLinkIsAsked)
{
    Cabinet cabinet(MakeLinkPage(kAsk));
    bool hasGone = false;
    cabinet.owner.ask = [&] {
        cabinet.Close();
        hasGone = true;
        return true;
    };
    ASSERT_TRUE(cabinet.WaitForWord("ready"));
    cabinet.Click();
    ASSERT_TRUE(WaitUntil([&hasGone] { return hasGone; }));
    EXPECT_FALSE(cabinet.IsOpen());
    EXPECT_EQ(cabinet.owner.calls, kAdded);
}

TEST(Cabinet, KeysInAFieldOfItsPageAreThePages)
{
    NotingRemote remote;
    const host::PlayerKeys keys([&remote] { return &remote; });
    const Cabinet cabinet("<input style='position:fixed;inset:0;z-index:1'"
                          " onkeydown='tell(event.code)'>" +
                          MakeLinkPage(""));
    ASSERT_TRUE(cabinet.WaitForWord("ready"));
    QTest::keyClick(cabinet.GetPage()->focusProxy(), Qt::Key_Left, Qt::ControlModifier);
    EXPECT_EQ(remote.calls, "previous ");
    cabinet.Click();
    ASSERT_TRUE(WaitUntil([&cabinet] {
        return cabinet.GetPage()->focusProxy()->inputMethodQuery(Qt::ImEnabled).toBool();
    }));
    remote.calls.clear();
    QTest::keyClick(cabinet.GetPage()->focusProxy(), Qt::Key_Left, Qt::ControlModifier);
    QTest::keyClick(cabinet.GetPage()->focusProxy(), Qt::Key_Space);
    EXPECT_TRUE(cabinet.WaitForWord("Space"));
    EXPECT_TRUE(cabinet.HasSaid("ArrowLeft"));
    EXPECT_EQ(remote.calls, "");
}

TEST(Cabinet, NothingStaysOfAPage)
{
    {
        const Cabinet first("<script>document.cookie = 'a=1; max-age=9999';"
                            "tell(document.cookie ? 'kept' : 'lost')</script>");
        ASSERT_TRUE(first.WaitForWord("kept"));
    }
    const Cabinet second("<script>tell(document.cookie ? 'kept' : 'lost')</script>");
    EXPECT_TRUE(second.WaitForWord("lost"));
}

TEST(Cabinet, APageThatDiesCanBeLoadedAgain)
{
    const Cabinet cabinet(MakeLinkPage(""));
    ASSERT_TRUE(cabinet.WaitForWord("ready"));
    const std::vector<pid_t> renderers = FindPageProcesses();
    ASSERT_FALSE(renderers.empty());
    for (const pid_t renderer : renderers)
        kill(renderer, SIGKILL);
    QPushButton* button = nullptr;
    ASSERT_TRUE(WaitUntil([&] {
        button = cabinet.GetPage()->parentWidget()->findChild<QPushButton*>();
        return button != nullptr && button->isVisible();
    }));
    EXPECT_EQ(button->text(), QStringLiteral("Load again"));
    HttpServer& server = WebDesk::Get().server;
    const std::size_t loads = server.CountRequests("/music/kivo_tj.jsp");
    button->click();
    EXPECT_TRUE(WaitUntil([&] { return server.CountRequests("/music/kivo_tj.jsp") > loads; }));
    EXPECT_TRUE(WaitUntil([&] { return cabinet.GetPage()->isVisible(); }));
}

} // namespace
} // namespace kivo::test
