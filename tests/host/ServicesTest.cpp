#include "host/Services.h"

#include "host/Account.h"
#include "host/HostSettings.h"
#include "host/IMessages.h"
#include "host/Pages.h"
#include "host/sign/SignNetwork.h"
#include "platform/base/PostQueue.h"
#include "shell/contracts/base/IPlugin.h"
#include "shell/contracts/base/Property.h"
#include "shell/contracts/common/Language.h"
#include "tests/host/NotingSigns.h"
#include "tests/support/TempFolder.h"

#include <dlfcn.h>
#include <gtest/gtest.h>

#include <optional>

namespace kivo::host {
namespace {

class Messages : public IMessages {
public:
    bool Show(MessageKind kind, const String& title, const String& text) override
    {
        last = title + u"|" + text;
        lastKind = kind;
        return answer;
    }
    String last;
    MessageKind lastKind = MessageKind::Notice;
    bool answer = false;
};

class SignedPlugin final : public IPlugin {
public:
    void OnSignatureFun(String user, Property sign) override
    {
        activated += user + u">" + sign.GetText(0) + u";";
    }
    int GetHostWord1() override { return 1; }
    int GetHostWord2() override { return 0; }
    int GetHostWord3() override { return 1; }
    int GetHostWord4() override { return 0; }
    String activated;
};

// The library as a plug-in sees it, with the program's own objects behind it.
class ServicesTest : public testing::Test {
public:
    ServicesTest(const ServicesTest&) = delete;
    ServicesTest& operator=(const ServicesTest&) = delete;

protected:
    ServicesTest()
        : library_(dlopen(KIVO_EXPORT_LIBRARY, RTLD_NOW | RTLD_LOCAL))
    {
        signs_.SetListener(&line_);
        Start();
    }
    ~ServicesTest() override { dlclose(library_); }

    void Start()
    {
        services_.emplace(Services::Parts{settings_, account_, signs_, messages_, pages_},
                          folder_.GetPath());
    }

    template <class Result = int, class... Args>
    Result Call(const char* name, Args... args)
    {
        auto* const function = reinterpret_cast<Result (*)(Args...)>(dlsym(library_, name));
        EXPECT_NE(function, nullptr) << name;
        return function(args...);
    }
    int SetSign(const String& title, const String& url = u"/a.mp3")
    {
        Property sign;
        sign.SetText(0, url);
        const String kind = u"music";
        return Call("_KivoAPI_PluginSetStateSign", plugin_, &kind, &title, &sign);
    }
    void OnSetting(const String& key, int /*a*/, int /*b*/, int /*c*/)
    {
        heard_ += key + u"=" + (services_->IsMediaStateShown() ? u"on" : u"off");
        heard_ += u"," + common::utf8_to_CString(line_.Take()) + u";";
    }
    void Watch(void* watcher)
    {
        const SettingDelegate delegate(this, &ServicesTest::OnSetting);
        const String key = kSignSetting;
        const String filter = u"*";
        EXPECT_NE(Call("_KivoAPI_Watch", watcher, &delegate, &key, &filter, -1), 0);
    }

    void* library_;
    test::TempFolder folder_;
    HostSettings settings_{(folder_.GetNative() / "host.ini").native()};
    Account account_{settings_};
    SignNetwork signs_{u"ann"};
    test::NotingSigns line_;
    Messages messages_;
    Pages pages_;
    std::optional<Services> services_;
    SignedPlugin signed_;
    SignedPlugin other_;
    IPlugin* const plugin_ = &signed_;
    IPluginWindow* const window_ = reinterpret_cast<IPluginWindow*>(this); // Never looked into.
    String heard_;
};

TEST_F(ServicesTest, WithoutAProgramAndWithoutArgumentsEachFunctionGivesZero)
{
    const auto take = [this](String* text) {
        return Call("_KivoAPI_GetMyDir", text) + Call("_KivoAPI_GetMyUid", text);
    };
    EXPECT_EQ(take(nullptr), 0);
    EXPECT_EQ(Call("_KivoAPI_RegisterPluginWindow", static_cast<IPluginWindow*>(nullptr)), 0);
    EXPECT_EQ(Call("_KivoAPI_STAT_TAG_INCREASE", static_cast<const int*>(nullptr)), 0);
    EXPECT_EQ(Call("_KivoAPI_PostSDKEvent", static_cast<ISDKEvent*>(nullptr)), 0);
    EXPECT_TRUE(pages_.GetAll().empty());
    services_.reset();
    String text = u"untouched";
    EXPECT_EQ(Call("_KivoAPI_RegisterPluginWindow", window_), 0);
    EXPECT_EQ(take(&text), 0);
    EXPECT_EQ(Call("_KivoAPI_IsShowMediaState"), 0);
    EXPECT_EQ(SetSign(u"t"), 0);
    EXPECT_EQ(text, u"untouched");
}

TEST_F(ServicesTest, TellsUserAndFolderAndTakesPages)
{
    String uid;
    String directory;
    EXPECT_NE(Call("_KivoAPI_GetMyUid", &uid), 0);
    EXPECT_NE(Call("_KivoAPI_GetMyDir", &directory), 0);
    EXPECT_EQ(uid, u"ann");
    EXPECT_EQ(directory, folder_.GetPath());
    EXPECT_NE(Call("_KivoAPI_RegisterPluginWindow", window_), 0);
    EXPECT_EQ(pages_.GetAll(), std::vector<IPluginWindow*>{window_});
    Call("_KivoAPI_UnregisterPluginWindow", window_);
    EXPECT_TRUE(pages_.GetAll().empty());
}

TEST_F(ServicesTest, ASignShowsOnTheOwnLineUntilItIsRemoved)
{
    EXPECT_NE(SetSign(u"Tune"), 0);
    EXPECT_EQ(line_.Take(), "ann plays music Tune. ");
    SetSign(u"", u""); // One that says nothing doesn't go out.
    Call("_KivoAPI_PluginRemoveStateSign", static_cast<IPlugin*>(&other_));
    EXPECT_EQ(line_.Take(), "");
    Call("_KivoAPI_PluginRemoveStateSign", plugin_);
    EXPECT_EQ(line_.Take(), "ann plays nothing. ");
}

TEST_F(ServicesTest, SwitchingSignsOffTakesTheSignAwayBeforeTheWatchesHear)
{
    Watch(&heard_);
    Watch(&heard_); // Once is enough.
    SetSign(u"Tune");
    line_.Take();
    services_->ShowMediaState(/*show=*/false);
    services_->ShowMediaState(/*show=*/false);
    EXPECT_EQ(heard_, u"usign_setting=off,ann plays nothing. ;");
    EXPECT_EQ(Call("_KivoAPI_IsShowMediaState"), 0);
    SetSign(u"Tune");
    EXPECT_EQ(line_.Take(), "");

    heard_.clear();
    Call("_KivoAPI_Revoke", static_cast<void*>(&heard_));
    services_->ShowMediaState(/*show=*/true);
    EXPECT_EQ(heard_, u"");
    EXPECT_NE(Call("_KivoAPI_IsShowMediaState"), 0);
}

TEST_F(ServicesTest, TheOwnSignLeadsBackToItsPlugIn)
{
    services_->ActivateOwnSign();
    SetSign(u"Tune", u"/m/a.mp3");
    services_->ActivateOwnSign();
    EXPECT_EQ(signed_.activated, u"ann>/m/a.mp3;");
    services_->ShowMediaState(/*show=*/false);
    services_->ActivateOwnSign();
    EXPECT_EQ(signed_.activated, u"ann>/m/a.mp3;");
}

TEST_F(ServicesTest, TheSwitchOutlivesTheRun)
{
    services_->ShowMediaState(/*show=*/false);
    EXPECT_TRUE(settings_.Save());
    settings_ = HostSettings((folder_.GetNative() / "host.ini").native());
    Start();
    EXPECT_EQ(Call("_KivoAPI_IsShowMediaState"), 0);
}

struct BoxCase {
    int code;
    int style;
    bool answer;
    MessageKind kind;
    int result;
};

TEST_F(ServicesTest, BoxesAskAndTell)
{
    const BoxCase cases[] = {
        {41, 1, true,  MessageKind::Notice,   1},
        {42, 2, true,  MessageKind::Question, 1},
        {42, 2, false, MessageKind::Question, 0},
        {43, 1, true,  MessageKind::Error,    1},
        {43, 2, false, MessageKind::Question, 0},
    };
    const String title = u"Title";
    const String text = u"<b>Text</b> %s";
    for (const BoxCase& row : cases) {
        SCOPED_TRACE(row.code);
        messages_.answer = row.answer;
        int result = -1;
        Call<void>("_ShowMsgBox", row.code, &title, &text, row.style, &result, 0);
        EXPECT_EQ(result, row.result);
        EXPECT_EQ(messages_.lastKind, row.kind);
        EXPECT_EQ(messages_.last, u"Title|<b>Text</b> %s");
    }
    Call<void>("_ShowMsgBox", 41, &title, &text, 1, static_cast<int*>(nullptr), 0);
}

TEST_F(ServicesTest, TextsComeFromTheTablesAndUsesAreCountedForGood)
{
    common::CMutiLanSupport::GetInstance()->AddText(u"STRID_HELLO", u"Hello");
    const String id = u"STRID_HELLO ";
    String text;
    Call<void>("_GetStringViaID", &id, &text);
    EXPECT_EQ(text, u"Hello");
    const int tag = 2103;
    EXPECT_NE(Call("_KivoAPI_STAT_TAG_INCREASE", &tag), 0);
    Call("_KivoAPI_STAT_TAG_INCREASE", &tag);
    EXPECT_EQ(settings_.GetNumber("use.2103", 0), 2);
}

class CountedEvent final : public ISDKEvent {
public:
    explicit CountedEvent(String& log)
        : log_(log)
    {
    }
    void Execute() override { log_ += u"run "; }
    void Release() override
    {
        log_ += u"freed ";
        delete this;
    }

private:
    ~CountedEvent() = default;
    String& log_;
};

TEST_F(ServicesTest, APostedEventRunsFromTheQueueAndIsFreed)
{
    String log;
    Call("_KivoAPI_PostSDKEvent", static_cast<ISDKEvent*>(new CountedEvent(log)));
    EXPECT_EQ(log, u"");
    PostQueue::Get().RunPending();
    EXPECT_EQ(log, u"run freed ");
}

} // namespace
} // namespace kivo::host
