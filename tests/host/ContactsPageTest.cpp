#include "host/ContactsPage.h"

#include "host/ContactList.h"
#include "platform/base/TimerService.h"
#include "platform/ui/NullPeers.h"
#include "shell/contracts/common/Language.h"
#include "shell/contracts/ui/SkinButton.h"
#include "shell/contracts/ui/SkinManager.h"
#include "shell/contracts/ui/SWColorEdit.h"
#include "tests/host/ContactsRoom.h"
#include "tests/support/CaseName.h"

#include <gtest/gtest.h>

namespace kivo::host {
namespace {

constexpr char16_t kStream[] = u"http://a.example/";
constexpr char16_t kMe[] = u"me@example.org";

// The window on an account, a network that the test speaks for, and no screen.
class ContactsPageTest : public testing::Test, protected ContactsRoom {
protected:
    ContactsPageTest()
    {
        auto& skin = *ui::CSkinManager::GetInstance();
        EXPECT_EQ(skin.IncludeSkinBuildFile(KIVO_HOST_BUILD_FILE), 1);
        ui::GetNullPeerFactory().SetUnscripted([](const char* what) { ADD_FAILURE() << what; });
        EXPECT_TRUE(form_.Open({340, 680}, std::nullopt));
        form_.ShowWindow(/*command=*/5);
        network.SetListener(&contacts);
        network.log.clear();
        TimerService::Get().SetClock([this] { return now; });
        list_ = dynamic_cast<ContactList*>(form_.FindControlRecusive(u"ContactList"));
    }
    ~ContactsPageTest() override
    {
        TimerService::Get().SetClock({});
        ui::GetNullPeerFactory().ClearScripts();
        ui::GetNullPeerFactory().SetUnscripted({});
        ui::CSkinManager::GetInstance()->Clear();
    }

    void AddAnn(SignPresence presence, const String& url = {})
    {
        Add(u"ann", u"ann", presence);
        if (!url.empty())
            network.SetSignOf(u"ann", u"music", u"tune", url);
        PostQueue::Get().RunPending();
    }
    [[nodiscard]] String GetRows() const
    {
        String rows;
        for (int place = 0; place < list_->GetRowCount(); ++place)
            rows += list_->GetRowAt(place)->GetCellText(u"text") + u"|";
        return rows;
    }
    [[nodiscard]] ui::CSkinListItem* FindRow(const String& id) const
    {
        for (int place = 0; place < list_->GetRowCount(); ++place) {
            if (list_->GetRowAt(place)->GetID() == id)
                return list_->GetRowAt(place);
        }
        return nullptr;
    }
    void Press(const String& id) { form_.FindControlRecusive(id)->OnPeerPressed(); }
    [[nodiscard]] bool IsShown(const String& id) const
    {
        return form_.FindControlRecusive(id)->IsVisible();
    }
    [[nodiscard]] String GetText(const String& id) const
    {
        return form_.FindControlRecusive(id)->GetText();
    }
    using Steps = std::vector<std::pair<String, String>>; // Ids, and what is typed there.
    static void Do(const ui::CSkinForm& form, const Steps& steps)
    {
        for (const auto& [id, text] : steps) {
            ui::CSkinObject* const control = form.FindControlRecusive(id);
            auto* const edit = dynamic_cast<ui::CSWColorEdit*>(control);
            if (edit != nullptr)
                edit->OnPeerText(text);
            else if (control != nullptr)
                control->OnPeerPressed();
            else
                ADD_FAILURE() << "no control " << common::CString_to_utf8(id);
        }
    }
    // What the user does in the next form: fills fields, and presses a button.
    static void Script(Steps steps, const String& button = u"BtnOK")
    {
        steps.emplace_back(button, String());
        ui::GetNullPeerFactory().QueueModal([steps](ui::CSkinForm& form) {
            Do(form, steps);
            form.DoCancelWndModal(0); // Nothing, where a button has ended it.
        });
    }
    // The log of the network after the next entry of a menu that `open` shows.
    String Choose(int id, const std::function<void()>& open)
    {
        ui::GetNullPeerFactory().QueueMenu([id](ui::IMenu& menu) { return menu.FindEntry(id); });
        open();
        return network.TakeLog();
    }

    MainForm form_{contacts, MakeCommands(), MakeContactCommands()};
    ContactList* list_ = nullptr;
};

TEST_F(ContactsPageTest, InvitesUntilThereIsAnAccountAndSaysWhenNobodyIsThere)
{
    EXPECT_TRUE(IsShown(u"ContactsSignInBtn"));
    EXPECT_EQ(GetText(u"ContactsHeadline"), u"STRID_KIVO_NOCONTACTS_TITLE");
    EXPECT_FALSE(IsShown(u"ContactsStrip"));
    EXPECT_FALSE(IsShown(u"ContactsNotice"));
    SignIn(kMe);
    EXPECT_FALSE(IsShown(u"ContactsSignInBtn"));
    EXPECT_EQ(GetText(u"ContactsHeadline"), u"STRID_KIVO_NOBODYYET_TITLE");
    EXPECT_TRUE(IsShown(u"ContactsStrip"));
    AddAnn(SignPresence::Offline);
    EXPECT_FALSE(IsShown(u"ContactsInvitation"));
    EXPECT_TRUE(IsShown(u"ContactList"));
    desk.SignOut();
    PostQueue::Get().RunPending();
    EXPECT_EQ(GetRows(), u"");
    EXPECT_TRUE(IsShown(u"ContactsSignInBtn"));
}

TEST_F(ContactsPageTest, PeopleStandBelowHeadings)
{
    SignIn(kMe);
    Add(u"cleo", u"cleo", SignPresence::Offline);
    Add(u"ben", u"ben", SignPresence::Away);
    AddAnn(SignPresence::Online);
    Ask(u"kim");
    EXPECT_EQ(GetRows(),
              u"STRID_KIVO_ASKING · 1|kim|STRID_KIVO_ONLINE · 2|ann|ben|STRID_KIVO_OFFLINE · 1|"
              u"cleo|");
    const ui::CSkinListItem* const ben = FindRow(u"ben");
    Add(u"ben", u"ben", SignPresence::Offline);
    contacts.OnRequestGone(u"kim");
    PostQueue::Get().RunPending();
    EXPECT_EQ(GetRows(), u"STRID_KIVO_ONLINE · 1|ann|STRID_KIVO_OFFLINE · 2|ben|cleo|");
    EXPECT_EQ(FindRow(u"ben"), ben); // With its selection.
}

struct RowCase {
    const char* name;
    SignPresence presence;
    bool isAsked;
    const char16_t* url; // Null: no sign.
    const char16_t* line;
    bool canPlay;
    const char16_t* spoken;
};

class ContactRowTest : public ContactsPageTest, public testing::WithParamInterface<RowCase> {};

TEST_P(ContactRowTest, SaysHowTheyAre)
{
    const RowCase& row = GetParam();
    SignIn(kMe);
    contacts.OnContact({u"ann", u"ann", row.presence, row.isAsked});
    if (row.url != nullptr)
        network.SetSignOf(u"ann", u"music", u"tune", row.url);
    PostQueue::Get().RunPending();
    ui::CSkinListItem* const ann = FindRow(u"ann");
    EXPECT_EQ(ann->GetCellText(u"line"), String(row.line));
    EXPECT_EQ(ann->HasCell(u"play"), row.canPlay);
    EXPECT_EQ(ann->GetSpokenText(), u"ann, STRID_KIVO_" + String(row.spoken));
    // A double click goes to whatever sign there is: the player says what it can't play.
    list_->OnDoubleClick(ann);
    EXPECT_EQ(activated.empty(), row.url == nullptr || row.presence == SignPresence::Offline);
}

using enum SignPresence;
constexpr char16_t kAsked[] = u"STRID_KIVO_ASKED";
constexpr char16_t kBusyPlays[] = u"BUSY, STRID_KIVO_PLAYS";
constexpr char16_t kOnlinePlays[] = u"ONLINE, STRID_KIVO_PLAYS";
constexpr RowCase kRows[] = {
    {"Online",  Online,  false, nullptr,  u"STRID_KIVO_ONLINE", false, u"ONLINE"                   },
    {"Away",    Away,    false, nullptr,  u"STRID_KIVO_AWAY",   false, u"AWAY"                     },
    {"Offline", Offline, false, kStream,  u"",                  false, u"OFFLINE"                  },
    {"Asked",   Offline, true,  nullptr,  kAsked,               false, u"OFFLINE, STRID_KIVO_ASKED"},
    {"Stream",  Busy,    false, kStream,  u"tune",              true,  kBusyPlays                  },
    {"OwnFile", Online,  false, u"/tune", u"tune",              false, kOnlinePlays                },
};

INSTANTIATE_TEST_SUITE_P(Rows, ContactRowTest, testing::ValuesIn(kRows), test::CaseName<RowCase>);

TEST_F(ContactsPageTest, MenusOfferWhatTheKeysDo)
{
    SignIn(kMe);
    AddAnn(SignPresence::Online);
    const auto onAnn = [this] { list_->OnContextMenu(FindRow(u"ann"), -1, -1); };
    ui::GetNullPeerFactory().QueueMenu([](ui::IMenu& menu) -> ui::IMenu* {
        EXPECT_TRUE(menu.FindEntry(1)->IsDisabled()); // There is nothing to play.
        return nullptr;
    });
    onAnn();
    AddAnn(SignPresence::Online, kStream);
    EXPECT_EQ(Choose(1, onAnn), u"");
    EXPECT_EQ(activated, u"ann ");
    Script({});
    EXPECT_EQ(Choose(3, onAnn), u"remove:ann ");
    EXPECT_EQ(Choose(2, onAnn), u"");
    ASSERT_EQ(list_->GetEditedRow(), FindRow(u"ann"));
    list_->OnEditFinished(u" Ann\u202E the\nGreat ", /*committed=*/true);
    EXPECT_EQ(network.TakeLog(), u"rename:ann=Ann the Great ");
    Script({
        {u"AddressInput", u"ben@example.org"}
    });
    EXPECT_EQ(Choose(100, [this] { list_->OnContextMenu(nullptr, -1, -1); }),
              u"add:ben@example.org ");
}

TEST_F(ContactsPageTest, NobodyAddsThemselvesOrWhatIsNoAddress)
{
    SignIn(kMe);
    for (const char16_t* const address : {u"Me@example.org", u"no address"}) {
        Script({
            {u"AddressInput", address}
        });
        Press(u"ContactsAddBtn");
    }
    EXPECT_EQ(network.TakeLog(), u"");
}

TEST_F(ContactsPageTest, RequestsAreAnsweredOrLeft)
{
    SignIn(kMe);
    const String kim = u"kim@example.org";
    const ui::CSkinObject* const tab =
        form_.FindControlRecusive(u"TabPlace")->GetControls().front()->GetControls()[1];
    const auto answer = [&](const String& button) {
        Ask(kim);
        EXPECT_EQ(tab->GetText(), u"STRID_KIVO_CONTACTS (1)");
        list_->SetCurrentRow(FindRow(kim));
        Script({}, button);
        list_->OnKey(ui::ListKey::Activate);
        PostQueue::Get().RunPending();
        return network.TakeLog();
    };
    EXPECT_EQ(answer(u"AskText"), u""); // Neither button: no answer.
    EXPECT_NE(FindRow(kim), nullptr);
    EXPECT_EQ(answer(u"BtnOK"), u"allow:kim@example.org ");
    EXPECT_EQ(FindRow(kim), nullptr);
    EXPECT_EQ(tab->GetText(), u"STRID_KIVO_CONTACTS");
    EXPECT_EQ(answer(u"BtnNo"), u"decline:kim@example.org ");
}

TEST_F(ContactsPageTest, AnAccountIsSilentUntilTheBoxIsTicked)
{
    Script({
        {u"AddressInput",  u" Me@Example.org/phone "},
        {u"PasswordInput", u" pass word "           }
    });
    Press(u"ContactsSignInBtn");
    EXPECT_EQ(network.TakeLog(), u"unsign hide in:me@example.org@:0 password: pass word +keep ");
    EXPECT_TRUE(account.IsOn());
    EXPECT_FALSE(services.IsMediaStateShown());

    Script({
        {u"PublishBox",    u""            },
        {u"KeepBox",       u""            },
        {u"PasswordInput", u"x"           },
        {u"MoreBtn",       u""            },
        {u"ServerInput",   u"talk.example"},
        {u"PortInput",     u"5223"        }
    });
    desk.SetUpAccount();
    EXPECT_EQ(network.TakeLog(), u"publish in:me@example.org@talk.example:5223 password:x ");
    EXPECT_TRUE(services.IsMediaStateShown());
}

TEST_F(ContactsPageTest, TheMenuChangesWhatLeaves)
{
    SignIn(kMe);
    const auto open = [this] { Press(u"MenuBtn"); };
    EXPECT_EQ(Choose(1, open), u"publish ");
    EXPECT_EQ(Choose(5, open), u"publish:title ");
    EXPECT_EQ(Choose(1, open), u"unsign hide ");
    EXPECT_EQ(Choose(7, open), u"out hide ");
    EXPECT_FALSE(account.IsOn());
    EXPECT_TRUE(services.IsMediaStateShown()); // Under the own name alone, as before the account.
    EXPECT_EQ(account.Get().address, kMe);
}

struct FormCase {
    const char* name;
    std::vector<std::pair<String, String>> steps;
    const char16_t* error;
};

class AccountFormTest : public ContactsPageTest, public testing::WithParamInterface<FormCase> {};

TEST_P(AccountFormTest, LetsNothingWrongPass)
{
    auto steps = GetParam().steps;
    steps.emplace_back(u"BtnOK", u"");
    ui::GetNullPeerFactory().QueueModal([&](ui::CSkinForm& form) {
        Do(form, steps);
        for (const char16_t* const error : {u"AddressError", u"PasswordError", u"ServerError"})
            EXPECT_EQ(form.FindControlRecusive(error)->IsSetVisible(), error == GetParam().error)
                << common::CString_to_utf8(error);
        EXPECT_TRUE(form.IsModal());
        form.DoCancelWndModal(0);
    });
    desk.SetUpAccount();
    EXPECT_EQ(network.TakeLog(), u"");
    EXPECT_FALSE(account.IsOn());
}

const std::pair<String, String> kName{u"AddressInput", kMe};
const std::pair<String, String> kSecret{u"PasswordInput", u"x"};
const FormCase kForms[] = {
    {"NoAddress",     {kSecret},                                          u"AddressError" },
    {"NoServer",      {{u"AddressInput", u"me"}, kSecret},                u"AddressError" },
    {"Blank",         {{u"AddressInput", u"m e@example.org"}, kSecret},   u"AddressError" },
    {"NoPassword",    {kName},                                            u"PasswordError"},
    {"PortInTheName", {kName, kSecret, {u"ServerInput", u"a.example:1"}}, u"ServerError"  },
    {"PortTooLarge",  {kName, kSecret, {u"PortInput", u"65536"}},         u"ServerError"  },
    {"PortOfLetters", {kName, kSecret, {u"PortInput", u"52x"}},           u"ServerError"  },
    {"PortZero",      {kName, kSecret, {u"PortInput", u"0"}},             u"ServerError"  },
};

INSTANTIATE_TEST_SUITE_P(Forms,
                         AccountFormTest,
                         testing::ValuesIn(kForms),
                         test::CaseName<FormCase>);

TEST_F(ContactsPageTest, WhatIsKeptBelongsToItsAccountAndServerAlone)
{
    SignIn(kMe);
    account.SetFingerprint("ab");
    Script({});
    desk.SetUpAccount();
    EXPECT_EQ(network.TakeLog(), u"hide in:me@example.org@:0 ") << "with the password of before";
    EXPECT_EQ(account.Get().fingerprint, "ab");
    Script({
        {u"AddressInput", u"you@example.org"}
    });
    desk.SetUpAccount();
    EXPECT_EQ(network.TakeLog(), u"") << "another needs another password";
    Script({
        {u"ServerInput",   u"other.example"},
        {u"PasswordInput", u"x"            }
    });
    desk.SetUpAccount();
    EXPECT_EQ(account.Get().fingerprint, "") << "the certificate is that of another server";
}

TEST_F(ContactsPageTest, ACertificateIsTrustedByItsFingerprint)
{
    SignIn(kMe);
    network.SetState(SignConnection::UntrustedCertificate);
    Script({}, u"BtnNo");
    Press(u"ContactsNoticeBtn");
    EXPECT_EQ(network.TakeLog(), u"");
    Script({});
    Press(u"ContactsNoticeBtn");
    EXPECT_EQ(network.TakeLog(), u"trust:" + common::utf8_to_CString(network.fingerprint) + u" ");
    EXPECT_EQ(account.Get().fingerprint, network.fingerprint);
}

TEST_F(ContactsPageTest, APasswordIsAskedForOnThePage)
{
    SignIn(kMe);
    network.SetState(SignConnection::PasswordNeeded);
    Script({}); // Empty: it stays open, and is closed.
    Press(u"ContactsNoticeBtn");
    EXPECT_EQ(network.TakeLog(), u"");
    Script({
        {u"PasswordInput", u"secret"},
        {u"KeepBox",       u""      }
    });
    Press(u"ContactsNoticeBtn");
    EXPECT_EQ(network.TakeLog(), u"password:secret ");
    EXPECT_EQ(settings.Get("account.password", "none"), "none");
}

TEST_F(ContactsPageTest, CountsDownWhileSomebodyLooks)
{
    common::CMutiLanSupport& texts = *common::CMutiLanSupport::GetInstance();
    texts.AddText(u"STRID_KIVO_NOTICE_WAITING", u"%s in %s");
    SignIn(kMe);
    network.SetState(SignConnection::Waiting, 3);
    EXPECT_EQ(GetText(u"ContactsNoticeText"), u"example.org in 3");
    now += 1000;
    TimerService::Get().RunDue();
    EXPECT_EQ(GetText(u"ContactsNoticeText"), u"example.org in 2");
    ui::CSkinObject* const page = form_.FindControlRecusive(u"ContactsPage");
    page->SetVisible(0);
    EXPECT_EQ(TimerService::Get().GetNextDelay(), -1);
    now += 1000;
    page->SetVisible(1);
    EXPECT_EQ(GetText(u"ContactsNoticeText"), u"example.org in 1");
    Press(u"ContactsNoticeBtn");
    EXPECT_EQ(network.TakeLog(), u"again ");
    network.SetState(SignConnection::Connecting);
    EXPECT_EQ(TimerService::Get().GetNextDelay(), -1);
    texts.Clear();
}

} // namespace
} // namespace kivo::host
