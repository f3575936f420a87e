#include "forms/MusicCabForm.h"

#include "platform/ui/NullPeers.h"
#include "shell/base/MusicServer.h"
#include "shell/contracts/base/Released.h"
#include "shell/contracts/ui/SkinManager.h"
#include "tests/support/FakeHost.h"

#include <gtest/gtest.h>

namespace kivo::tunehive {
namespace {

class Owner final : public IMusicCabOwner {
public:
    void StopPlayer() override { calls.emplace_back(u"stop"); }
    void AddTrack(const String& group,
                  const String& url,
                  const String& name,
                  int allowDuplicate,
                  String& sid) override
    {
        calls.push_back(u"add " + group + u" " + url + u" " + name +
                        (allowDuplicate != 0 ? u"" : u" once"));
        sid = u"s";
    }
    void PlayTrack(const String& group, const String& sid) override
    {
        calls.push_back(u"play " + group + u" " + sid);
    }
    int ShowAddURLForm(CWnd* /*parent*/, String& group, String& url, String& name) override
    {
        calls.push_back(u"ask " + url + u" " + name);
        group = u"mine";
        name += u"!";
        return confirms ? 1 : 0;
    }

    bool confirms = true;
    std::vector<String> calls;
};

struct LinkCase {
    const char* name;
    const char16_t* url;
    std::vector<String> calls;
};

class MusicLinkTest : public testing::TestWithParam<LinkCase> {
public:
    MusicLinkTest()
    {
        ui::CSkinManager::GetInstance()->IncludeBuildText(
            R"(<build><form id="MusicCabForm"><panel id="ClientArea" dock="fill"/></form></build>)");
    }
    ~MusicLinkTest() override { ui::CSkinManager::GetInstance()->Clear(); }

    static ui::CSkinWebBrowser& Browser(const CMusicCabForm& form)
    {
        return dynamic_cast<ui::CSkinWebBrowser&>(
            *form.FindControlRecusive(u"Kivo.Plugin.MusicCabForm.Navigator"));
    }

protected:
    test::FakeHost host_;
    Owner owner_;
};

TEST_P(MusicLinkTest, Runs)
{
    const Released<CMusicCabForm> form(new CMusicCabForm(&owner_));
    ASSERT_EQ(form->Create(nullptr), 1);
    ASSERT_TRUE(form->HasBrowser());
    EXPECT_EQ(Browser(*form).GetURL(), u"http://" + GetMusicServer() + u"/music/kivo_tj.jsp");
    EXPECT_TRUE(Browser(*form).OnNewWindow(GetParam().url)); // No window opens in the program.
    EXPECT_EQ(owner_.calls, GetParam().calls);
}

INSTANTIATE_TEST_SUITE_P(
    Cases,
    MusicLinkTest,
    testing::Values(
        LinkCase{
            "WithoutTheMarkerGoesOutside", u"http://x/page", {}
},
        LinkCase{"OnePlaysNow",
                 u"http://x/a.mp3?kivo=1&p=1&song=S&singer=T",
                 {u"stop", u"add playing http://x/a.mp3 S - T", u"play playing s"}},
        LinkCase{"ZeroAsksFirst",
                 u"http://x/a.mp3?kivo=1&p=0&song=S&singer=T",
                 {u"ask http://x/a.mp3 S - T", u"add mine http://x/a.mp3 S - T!"}},
        LinkCase{"TextsStayEncoded",
                 u"http://x/a?kivo=1&p=1&song=%E6%98%A5&singer=a%20b",
                 {u"stop", u"add playing http://x/a %E6%98%A5 - a%20b", u"play playing s"}},
        LinkCase{"AnotherActionDoesNothing", u"http://x/a?kivo=1&p=2&song=S&singer=T", {}},
        LinkCase{"TwoFieldsDoNothing", u"http://x/a?kivo=1&p=1&song=S", {}},
        LinkCase{"FourFieldsDoNothing", u"http://x/a?kivo=1&p=1&song=S&singer=T&x=y", {}},
        LinkCase{"AMarkerAtTheEndDoesNothing", u"http://x/a?kivo=1", {}},
        LinkCase{"AMarkerAtTheStartHasNoTrack",
                 u"kivo=1&p=1&song=S&singer=T",
                 {u"stop", u"add playing  S - T", u"play playing s"}}),
    [](const auto& row) { return std::string(row.param.name); });

TEST(MusicCabForm, WithoutAnOwnerOrABrowserItStaysQuiet)
{
    ui::CSkinManager::GetInstance()->IncludeBuildText(
        R"(<build><form id="MusicCabForm"><panel id="ClientArea" dock="fill"/></form></build>)");
    const Released<CMusicCabForm> form(new CMusicCabForm(nullptr));
    form->Create(nullptr);
    EXPECT_TRUE(MusicLinkTest::Browser(*form).OnNewWindow(u"http://x/?kivo=1&p=1&song=&singer="));

    ui::GetNullPeerFactory().SetBrowserMissing(true);
    const Released<CMusicCabForm> bare(new CMusicCabForm(nullptr));
    bare->Create(nullptr);
    EXPECT_FALSE(bare->HasBrowser());
    EXPECT_TRUE(bare->IsBuildFailed());
    ui::GetNullPeerFactory().SetBrowserMissing(false);
    ui::CSkinManager::GetInstance()->Clear();
}

TEST(MusicCabForm, ItsCloseButtonFreesIt)
{
    auto* form = new CMusicCabForm(nullptr);
    const LifeWatch life = form->Watch();
    EXPECT_EQ(form->OnSysButton(u"SysButtonHelp"), 0);
    EXPECT_EQ(form->OnSysButton(u"SysButtonClose"), 1);
    EXPECT_FALSE(life.IsAlive());
}

} // namespace
} // namespace kivo::tunehive
