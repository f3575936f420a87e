#include "forms/AddFileForm.h"
#include "forms/AddURLForm.h"
#include "forms/TrackPickers.h"
#include "mediares/IMediaResManager.h"
#include "platform/ui/NullPeers.h"
#include "shell/contracts/base/Beyond.h"
#include "shell/contracts/common/Language.h"
#include "shell/contracts/ui/SkinCombox.h"
#include "shell/contracts/ui/SkinManager.h"
#include "shell/contracts/ui/SWColorEdit.h"
#include "tests/support/FakeHost.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

namespace kivo::tunehive {
namespace {

constexpr const char* kBuildFile = R"(<build>
<form id="AddFileForm"><combo id="SelCombox"/><button id="BtnOK"/><button id="BtnCancel"/></form>
<form id="AddURLForm"><combo id="SelCombox"/><edit id="URLInput"/><edit id="URLNameInput"/>
<label id="URLErrorLabel"/><button id="BtnOK"/><button id="BtnCancel"/></form></build>)";

using Strings = std::vector<String>;

class AddFormsTest : public testing::Test {
public:
    AddFormsTest()
    {
        auto* language = common::CMutiLanSupport::GetInstance();
        language->Clear();
        language->AddText(u"STRID_TUNEHIVE_NOWPLAYING", u"Playing");
        language->AddText(u"STRID_TUNEHIVE_MYMEDIA", u"My media");
        language->AddText(u"STRID_TUNEHIVE_HOT", u"Hot");
        ui::CSkinManager::GetInstance()->IncludeBuildText(kBuildFile);
        folder_.Write("g/hot.kvm", "");
        GetMediaResManager()->Init(folder_.GetPath() + u"g/");
        user_ = GetMediaResManager()->CreateGroup(u"Abba");
        ui::GetNullPeerFactory().SetUnscripted([](const char* what) { ADD_FAILURE() << what; });
    }
    ~AddFormsTest() override
    {
        DestroyMediaResManager();
        ui::CSkinManager::GetInstance()->Clear();
        ui::GetNullPeerFactory().ClearScripts();
        ui::GetNullPeerFactory().SetUnscripted({});
        SetBeyond(false);
    }

    // The next modal form is answered by this.
    static void Script(std::function<void(ui::CSkinForm&)> script)
    {
        ui::GetNullPeerFactory().QueueModal(std::move(script));
    }
    static void Press(ui::CSkinForm& form, const char16_t* id)
    {
        form.FindControlRecusive(id)->FireEvent(ui::kControlEvent, nullptr);
    }
    static ui::CSkinCombox& Combo(ui::CSkinForm& form)
    {
        return dynamic_cast<ui::CSkinCombox&>(*form.FindControlRecusive(u"SelCombox"));
    }
    static void Type(ui::CSkinForm& form, const char16_t* id, const String& text)
    {
        form.FindControlRecusive(id)->SetText(text);
    }

protected:
    test::FakeHost host_;
    test::TempFolder folder_;
    String user_;
    TrackPickers pickers_;
};

TEST_F(AddFormsTest, TheFileFormOffersPlayingFirstAndNeverHot)
{
    Strings offered;
    Script([&](ui::CSkinForm& form) {
        offered = Combo(form).GetItems();
        EXPECT_LT(Combo(form).GetHeight(), 50) << "the height at its creation is the open list's";
        Combo(form).SetCurSel(2);
        Press(form, u"BtnOK");
    });
    String group;
    EXPECT_EQ(pickers_.ShowAddFileForm(nullptr, group), 1);
    EXPECT_EQ(offered, (Strings{u"Playing", u"My media", u"Abba"}));
    EXPECT_EQ(group, user_);
    Script([](ui::CSkinForm& form) { Press(form, u"BtnCancel"); });
    EXPECT_EQ(pickers_.ShowAddFileForm(nullptr, group), 0);
    EXPECT_EQ(group, user_);
}

TEST_F(AddFormsTest, TheAddressFormGivesTheChoiceTrimmed)
{
    Strings offered;
    String shown;
    Script([&](ui::CSkinForm& form) {
        offered = Combo(form).GetItems();
        shown = form.FindControlRecusive(u"URLInput")->GetText();
        EXPECT_EQ(form.GetFocusObject(), form.FindControlRecusive(u"URLNameInput"));
        Type(form, u"URLInput", u" \thttp://x/y  ");
        Type(form, u"URLNameInput", u" name ");
        Press(form, u"BtnOK");
    });
    String group;
    String url;
    String name;
    EXPECT_EQ(pickers_.ShowAddURLForm(nullptr, group, url, name), 1);
    EXPECT_EQ(offered, (Strings{u"My media", u"Playing", u"Abba"}));
    EXPECT_EQ(shown, u"http://");
    EXPECT_EQ(group, u"mine");
    EXPECT_EQ(url, u"http://x/y");
    EXPECT_EQ(name, u" name ");
}

TEST_F(AddFormsTest, PresetsAreShownAndACancelLeavesThem)
{
    Script([&](ui::CSkinForm& form) {
        EXPECT_EQ(Combo(form).GetText(), u"Abba");
        EXPECT_EQ(form.FindControlRecusive(u"URLInput")->GetText(), u"mms://a/b");
        EXPECT_EQ(form.FindControlRecusive(u"URLNameInput")->GetText(), u"song");
        Combo(form).SetCurSel(0);
        Type(form, u"URLInput", u"http://other/");
        Press(form, u"BtnCancel");
    });
    String group = user_;
    String url = u"mms://a/b";
    String name = u"song";
    EXPECT_EQ(pickers_.ShowAddURLForm(nullptr, group, url, name), 0);
    EXPECT_EQ(group, user_);
    EXPECT_EQ(url, u"mms://a/b");

    Script([&](ui::CSkinForm& form) {
        EXPECT_EQ(Combo(form).GetCurSel(), 0); // An unknown preset.
        Press(form, u"BtnCancel");
    });
    group = u"userzz";
    pickers_.ShowAddURLForm(nullptr, group, url, name);
}

TEST_F(AddFormsTest, ABadAddressKeepsTheFormOpen)
{
    Script([](ui::CSkinForm& form) {
        ui::CSkinObject* error = form.FindControlRecusive(u"URLErrorLabel");
        EXPECT_FALSE(error->IsSetVisible());
        Type(form, u"URLInput", u" HTTP:// ");
        Press(form, u"BtnOK");
        EXPECT_TRUE(error->IsSetVisible());
        EXPECT_TRUE(form.IsModal());
        Type(form, u"URLInput", u"rtsp://x");
        Press(form, u"BtnOK");
    });
    String group;
    String url;
    String name;
    EXPECT_EQ(pickers_.ShowAddURLForm(nullptr, group, url, name), 1);
    EXPECT_EQ(url, u"rtsp://x");
}

TEST(AddressTest, PassesTheListedSchemesAlone)
{
    struct Case {
        const char16_t* url;
        bool isValid;
        bool isValidBeyond;
    };
    constexpr Case kCases[] = {
        {u"http://x",     true,  true },
        {u"mms://x",      true,  true },
        {u"rtsp://x/y?z", true,  true },
        {u"http://",      false, false},
        {u"mms://",       false, false},
        {u"HTTP://x",     false, false},
        {u"http://a b",   false, false},
        {u"",             false, false},
        {u"ftp://x",      false, false},
        {u"see http://x", false, false},
        {u"https://x",    false, true },
        {u"https://",     false, false},
        {u"file:///etc",  false, false},
    };
    for (const auto& [url, isValid, isValidBeyond] : kCases) {
        SetBeyond(false);
        EXPECT_EQ(IsAddressValid(url), isValid);
        SetBeyond(true);
        EXPECT_EQ(IsAddressValid(url), isValidBeyond);
    }
    SetBeyond(false);
}

} // namespace
} // namespace kivo::tunehive
