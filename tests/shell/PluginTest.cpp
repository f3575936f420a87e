#include "medialib/IMediaLibManager.h"
#include "mediares/IMediaResManager.h"
#include "player/MediaPlayerManager.h"
#include "shell/base/Settings.h"
#include "shell/contracts/base/IPluginWindowLayout.h"
#include "shell/contracts/common/AppPath.h"
#include "shell/contracts/common/Language.h"
#include "shell/contracts/ui/SkinManager.h"
#include "shell/Plugin_TuneHiveApp.h"
#include "shell/TuneHiveWindow.h"
#include "tests/support/FakeHost.h"
#include "tests/support/ScriptedControl.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <string>
#include <vector>

namespace kivo::tunehive {
namespace {

const std::string kConfig =
    "<?xml version=\"1.0\" encoding=\"utf-8\" standalone=\"no\" ?>\n<TuneHive>\n"
    "    <PlayMode mode=\"4\" />\n    <OpenPath path=\"/music\" />\n    <Volume vol=\"11\" />\n"
    "</TuneHive>\n";

class Layout final : public IPluginWindowLayout {
public:
    void AddPluginPage(IPluginWindow* /*window*/) override {}
    void RemovePluginPage(IPluginWindow* /*window*/) override {}
    int IsPluginPageShown(IPluginWindow* /*window*/) override { return 0; }
    void ShowPluginPage(IPluginWindow* window) override { shown.push_back(window); }
    void UpdatePluginPage(IPluginWindow* /*window*/) override {}

    std::vector<IPluginWindow*> shown;
};

class PluginTest : public testing::Test {
protected:
    PluginTest()
    {
        host_.directory = folder_.GetPath();
        common::SetAppPath(u"/app/");
        common::CMutiLanSupport::GetInstance()->SetLangSetting(u"de");
        SetPlayMode(2);
        SetOpenPath({});
        SetRememberedVolume(60);
        ui::CSkinManager::GetInstance()->IncludeSkinBuildFile(u"" KIVO_DATA_DIR "/build.xml");
        plugin_ = std::make_unique<CPlugin_TuneHiveApp>();
    }
    ~PluginTest() override
    {
        plugin_->OnUnLoad();
        plugin_.reset();
        ui::CSkinManager::GetInstance()->Clear();
        common::CMutiLanSupport::GetInstance()->SetLangSetting(u"en");
    }
    static void ExpectNothingStands()
    {
        EXPECT_EQ(FindMediaResManager(), nullptr);
        EXPECT_EQ(FindMediaLibManager(), nullptr);
        EXPECT_EQ(CMediaPlayerManager::FindInstance(), nullptr);
    }

    test::TempFolder folder_;
    test::FakeHost host_;
    test::ScriptedControl control_;
    Layout layout_;
    std::unique_ptr<CPlugin_TuneHiveApp> plugin_;
};

TEST_F(PluginTest, SaysWhatItIsBeforeItIsLoaded)
{
    EXPECT_EQ(plugin_->GetPluginId(), 8006U);
    EXPECT_EQ(std::strlen(plugin_->GetPluginKey()), 128U);
    EXPECT_EQ(plugin_->GetSkinFile(), u"/app/plugin/tunehive/skin.xml");
    EXPECT_EQ(plugin_->GetBuildFile(), u"/app/plugin/tunehive/build.xml");
    EXPECT_EQ(plugin_->GetStringTableFile(), u"/app/plugin/tunehive/lang/de/stringid.ini");
    EXPECT_EQ(plugin_->GetIconFile(), u"/app/plugin/tunehive/skin/tunehive.png");
    EXPECT_EQ(plugin_->GetDisplayName(), u"");
    EXPECT_EQ(plugin_->IsLoaded(), 0);
    EXPECT_EQ(plugin_->OnRemove(), 1);
    EXPECT_EQ(plugin_->PreTranslateMessage(nullptr), 0);
    IPlugin& asHostSeesIt = *plugin_;
    EXPECT_EQ(asHostSeesIt.GetHostWord1(), 1);
    EXPECT_EQ(asHostSeesIt.GetHostWord2(), 0);
    EXPECT_EQ(asHostSeesIt.GetHostWord3(), 1);
    EXPECT_EQ(asHostSeesIt.GetHostWord4(), 0);
    EXPECT_EQ(plugin_->GetStateSignIconPath(u"video"), u"/app/plugin/tunehive/skin/icon_video.png");
    for (const char16_t* other : {u"music", u"Video", u""})
        EXPECT_EQ(plugin_->GetStateSignIconPath(other),
                  u"/app/plugin/tunehive/skin/icon_music.png");
    EXPECT_EQ(plugin_->InitInstance(), 1); // Needs the host and tells it where it is.
    EXPECT_EQ(host_.instances.size(), 1U);
    EXPECT_EQ(plugin_->ExitInstance(), 0);
    EXPECT_TRUE(host_.instances.empty());
}

TEST_F(PluginTest, ComesUpInOrder)
{
    folder_.Write("tunehive/config.xml", kConfig);
    host_.texts = {
        {u"STRID_PLUGIN_NAME",         u"Name" },
        {u"STRID_PLUGIN_DESCRIPTION ", u"About"}
    };
    bool wasRegistered = false;
    host_.onCall = [&](const std::string& call) {
        if (call == "_KivoAPI_GetMyDir") {
            EXPECT_EQ(plugin_->IsLoaded(), 1); // The flag is set before anything can fail.
            EXPECT_EQ(plugin_->GetDisplayName(), u"Name");
        }
        if (call != "_KivoAPI_RegisterPluginWindow")
            return;
        wasRegistered = true;
        ASSERT_NE(FindMediaResManager(), nullptr);
        EXPECT_NE(FindMediaResManager()->GetGroup(u"playing"), nullptr);
        ASSERT_NE(FindMediaLibManager(), nullptr);
        EXPECT_EQ(FindMediaLibManager()->Initialize(u"/else/"), 0); // It has its folder.
        EXPECT_NE(CMediaPlayerManager::FindInstance(), nullptr);
        EXPECT_EQ(GetPlayMode(), 2); // The settings come last.
    };
    ASSERT_EQ(plugin_->OnLoad(nullptr, &layout_), 1);
    EXPECT_TRUE(wasRegistered);
    EXPECT_EQ(plugin_->GetDescription(), u"About");
    EXPECT_EQ(plugin_->GetVersion(), u"1.0");
    EXPECT_FALSE(plugin_->GetMaker().empty());
    EXPECT_EQ(plugin_->GetWindow()->GetPluginId(), 8006U);
    EXPECT_EQ(host_.windows, std::vector<IPluginWindow*>{plugin_->GetWindow()});
    EXPECT_EQ(GetPlayMode(), 4);
    EXPECT_EQ(GetOpenPath(), u"/music");
    EXPECT_EQ(GetRememberedVolume(), 11);
    EXPECT_EQ(folder_.List(),
              (std::vector<std::string>{
                  "tunehive/config.xml", "tunehive/mine.kvm", "tunehive/playing.kvm"}));
    EXPECT_EQ(plugin_->GetRemote(), nullptr); // No page is open yet.
}

TEST_F(PluginTest, GoesDownInOrderAndWritesTheSettingsLast)
{
    ASSERT_EQ(plugin_->OnLoad(nullptr, &layout_), 1);
    bool wasUnregistered = false;
    host_.calls.clear();
    host_.onCall = [&](const std::string& call) {
        if (call == "_KivoAPI_UnregisterPluginWindow") {
            wasUnregistered = true;
            EXPECT_NE(plugin_->GetWindow(), nullptr);
            EXPECT_NE(CMediaPlayerManager::FindInstance(), nullptr);
        }
        if (call == "_KivoAPI_GetMyDir") { // For the settings.
            EXPECT_EQ(plugin_->GetWindow(), nullptr);
            ExpectNothingStands();
            EXPECT_FALSE(folder_.Has("tunehive/config.xml"));
            EXPECT_EQ(plugin_->IsLoaded(), 1);
        }
    };
    EXPECT_EQ(plugin_->OnUnLoad(), 1);
    EXPECT_TRUE(wasUnregistered);
    EXPECT_TRUE(host_.windows.empty());
    EXPECT_EQ(host_.calls.back(), "_KivoAPI_GetMyDir");
    EXPECT_TRUE(folder_.Has("tunehive/config.xml"));
    EXPECT_TRUE(folder_.Has("tunehive/ginfo.xml"));
    EXPECT_EQ(plugin_->IsLoaded(), 0);
}

TEST_F(PluginTest, AnUnloadWithoutALoadTouchesNothing)
{
    EXPECT_EQ(plugin_->OnUnLoad(), 1);
    EXPECT_TRUE(host_.calls.empty());
    EXPECT_TRUE(folder_.List().empty());
    ExpectNothingStands();
}

TEST_F(PluginTest, IsBuiltAfreshByASecondLoad)
{
    for (int round = 0; round < 3; ++round) {
        ASSERT_EQ(plugin_->OnLoad(nullptr, &layout_), 1);
        EXPECT_EQ(plugin_->GetWindow()->CreatePage(), 1);
        EXPECT_NE(plugin_->GetRemote(), nullptr);
        if (round != 1) { // A host may also drop a page that it has not closed.
            EXPECT_EQ(plugin_->GetWindow()->ClosePage(), 1);
        }
        EXPECT_EQ(plugin_->OnUnLoad(), 1);
        ExpectNothingStands();
    }
}

struct FailedLoad {
    const char* name;
    void (*breakIt)(test::FakeHost&);
};

const FailedLoad kFailedLoads[] = {
    {"NoDirectory",          [](test::FakeHost& host) { host.missing.insert("_KivoAPI_GetMyDir"); }},
    {"GroupsStartedBefore",
     [](test::FakeHost& host) { GetMediaResManager()->Init(host.directory + u"tunehive/"); }       },
    {"LibraryStartedBefore",
     [](test::FakeHost& host) {
         GetMediaLibManager()->Initialize(host.directory + u"tunehive/lib/");
     }                                                                                             },
    {"WindowRefused",        [](test::FakeHost& host) { host.acceptsWindow = 0; }                  },
};

TEST_F(PluginTest, AFailedLoadIsTakenBackByTheUnload)
{
    for (const FailedLoad& row : kFailedLoads) {
        SCOPED_TRACE(row.name);
        folder_.Write("tunehive/config.xml", kConfig);
        SetPlayMode(2);
        row.breakIt(host_);
        EXPECT_EQ(plugin_->OnLoad(nullptr, &layout_), 0);
        EXPECT_EQ(GetPlayMode(), 2);
        host_.missing.clear();
        host_.acceptsWindow = 1;
        EXPECT_EQ(plugin_->OnUnLoad(), 1);
        ExpectNothingStands();
        EXPECT_EQ(plugin_->GetWindow(), nullptr);
        // Defaults must not replace what the user has set.
        EXPECT_EQ(folder_.Read("tunehive/config.xml"), kConfig);
        EXPECT_EQ(plugin_->OnLoad(nullptr, &layout_), 1);
        EXPECT_EQ(plugin_->OnUnLoad(), 1);
    }
}

struct SignCase {
    const char* name;
    const char16_t* user;
    const char16_t* url;
    bool showsPage;
    bool showsBox;
    bool plays;
};

constexpr SignCase kSignCases[] = {
    {"WithoutAnAddress",    u"friend", u"",                           false, false, false},
    {"OwnWithoutAnAddress", u"me",     u"",                           false, false, false},
    {"Own",                 u"me",     u"http://radio.example/a.mp3", true,  false, false},
    {"OwnLocalFile",        u"me",     u"/music/a.mp3",               true,  false, false},
    {"AContactsAddress",    u"friend", u"http://radio.example/a.mp3", true,  false, true },
    {"AContactsLocalFile",  u"friend", u"/music/a.mp3",               false, true,  false},
};

TEST_F(PluginTest, AnActivatedSign)
{
    host_.uid = u"me";
    ASSERT_EQ(plugin_->OnLoad(nullptr, &layout_), 1);
    ASSERT_EQ(plugin_->GetWindow()->CreatePage(), 1);
    for (const SignCase& row : kSignCases) {
        SCOPED_TRACE(row.name);
        control_.calls.clear();
        layout_.shown.clear();
        host_.boxes.clear();
        Property sign;
        sign.SetText(0, row.url);
        sign.SetText(1, u"title");
        plugin_->OnSignatureFun(row.user, sign);
        host_.RunPosted();
        EXPECT_EQ(layout_.shown.size(), row.showsPage ? 1U : 0U);
        EXPECT_EQ(host_.boxes.size(), row.showsBox ? 1U : 0U);
        EXPECT_EQ(control_.CountCalls("SetURL"), row.plays ? 1 : 0);
        EXPECT_EQ(control_.calls.empty(), !row.plays); // Nor is what plays stopped.
    }
    ASSERT_EQ(host_.boxes.size(), 1U);
    EXPECT_EQ(host_.boxes[0].code, 41);
    EXPECT_EQ(host_.boxes[0].style, 1);
    plugin_->GetWindow()->ClosePage();
}

} // namespace
} // namespace kivo::tunehive
