#include "host/ContactsPage.h"

#include "host/Account.h"
#include "host/ContactDesk.h"
#include "host/ContactList.h"
#include "host/HostSettings.h"
#include "host/IMessages.h"
#include "host/MainForm.h"
#include "host/Services.h"
#include "platform/base/PostQueue.h"
#include "platform/base/TimerService.h"
#include "platform/ui/NullPeers.h"
#include "shell/contracts/common/Language.h"
#include "shell/contracts/ui/SkinButton.h"
#include "shell/contracts/ui/SkinManager.h"
#include "shell/contracts/ui/SWColorEdit.h"
#include "tests/host/ScriptedSignNetwork.h"
#include "tests/support/CaseName.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

namespace kivo::host {
namespace {

class NoMessages final : public IMessages {
public:
    bool Show(MessageKind /*kind*/, const String& /*title*/, const String& /*text*/) override
    {
        return false;
    }
};

// The window on an account, a network that the test speaks for, and no screen.
class ContactsPageTest : public testing::Test {
protected:
    ContactsPageTest()
        : services_({settings_, account_, network_, messages_, pages_}, folder_.GetPath())
        , desk_({network_, account_, contacts_, services_})
        , form_(contacts_, MakeCommands(), MakeContactCommands())
    {
        auto& skin = *ui::CSkinManager::GetInstance();
        EXPECT_EQ(skin.IncludeSkinBuildFile(KIVO_HOST_BUILD_FILE), 1);
        ui::GetNullPeerFactory().SetUnscripted([](const char* what) { ADD_FAILURE() << what; });
        EXPECT_TRUE(form_.Open({340, 680}, std::nullopt));
        form_.ShowWindow(/*command=*/5);
        network_.SetListener(&contacts_);
        network_.log.clear();
        TimerService::Get().SetClock([this] { return now_; });
        list_ = dynamic_cast<ContactList*>(form_.FindControlRecusive(u"ContactList"));
    }
    ~ContactsPageTest() override
    {
        TimerService::Get().SetClock({});
        ui::GetNullPeerFactory().ClearScripts();
        ui::GetNullPeerFactory().SetUnscripted({});
        ui::CSkinManager::GetInstance()->Clear();
        network_.listener = nullptr;
    }

    MainForm::Commands MakeCommands()
    {
        MainForm::Commands commands;
        commands.showSigns = [this](bool show) { services_.ShowMediaState(show); };
        commands.areSignsShown = [this] { return services_.IsMediaStateShown(); };
        commands.isAccountOn = [this] { return account_.IsOn(); };
        commands.isTitleOnly = [this] { return account_.IsTitleOnly(); };
        commands.setTitleOnly = [this](bool titleOnly) { desk_.SetTitleOnly(titleOnly); };
        commands.signOut = [this] { desk_.SignOut(); };
        return commands;
    }
    ContactCommands MakeContactCommands()
    {
        ContactCommands commands;
        commands.activateSign = [this](const String& id) { activated_ += id + u" "; };
        commands.answer = [this](const String& id) { desk_.Answer(id); };
        commands.remove = [this](const String& id) { desk_.Remove(id); };
        commands.rename = [this](const String& id, const String& name) { desk_.Rename(id, name); };
        commands.addContact = [this] { desk_.AddContact(); };
        commands.setUpAccount = [this] { desk_.SetUpAccount(); };
        commands.givePassword = [this] { desk_.GivePassword(); };
        commands.judgeCertificate = [this] { desk_.JudgeCertificate(); };
        commands.tryNow = [this] { desk_.TryNow(); };
        commands.getSignPicture = [](const String& kind) { return kind + u".png"; };
        commands.getServer = [this] { return desk_.GetServer(); };
        commands.getNow = [this] { return now_; };
        return commands;
    }

    void SetUpAccount()
    {
        account_.Set({u"me@example.org", {}, 0, {}});
        account_.SetOn(true);
        contacts_.SetAccountOn(true);
        services_.OnAccountChanged();
        network_.SetState(SignConnection::Online);
        network_.log.clear();
    }
    void Add(const String& id, SignPresence presence)
    {
        contacts_.OnContact({id, id, presence});
        PostQueue::Get().RunPending();
    }
    void SetSign(const String& id, const String& url)
    {
        network_.SetSignOf(id, u"music", u"tune", url);
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
    // What the user does in the next form: fills fields, presses buttons.
    static void Script(const Steps& steps)
    {
        ui::GetNullPeerFactory().QueueModal([steps](ui::CSkinForm& form) {
            Do(form, steps);
            form.DoCancelWndModal(0); // Nothing, where a button has ended it.
        });
    }

    const test::TempFolder folder_;
    HostSettings settings_{folder_.GetNative() / "host.ini"};
    Account account_{settings_};
    ScriptedSignNetwork network_;
    Contacts contacts_;
    NoMessages messages_;
    Pages pages_;
    Services services_;
    ContactDesk desk_;
    MainForm form_;
    ContactList* list_ = nullptr;
    std::int64_t now_ = 0;
    String activated_;
};

TEST_F(ContactsPageTest, WithoutAnAccountItInvites)
{
    EXPECT_TRUE(IsShown(u"ContactsSignInBtn"));
    EXPECT_EQ(GetText(u"ContactsHeadline"), u"STRID_KIVO_NOCONTACTS_TITLE");
    EXPECT_FALSE(IsShown(u"ContactsStrip"));
    EXPECT_FALSE(IsShown(u"ContactsNotice"));
    SetUpAccount();
    EXPECT_FALSE(IsShown(u"ContactsSignInBtn"));
    EXPECT_EQ(GetText(u"ContactsHeadline"), u"STRID_KIVO_NOBODYYET_TITLE");
    EXPECT_TRUE(IsShown(u"ContactsStrip"));
    Add(u"ann", SignPresence::Offline);
    EXPECT_FALSE(IsShown(u"ContactsInvitation"));
    EXPECT_TRUE(IsShown(u"ContactList"));
}

TEST_F(ContactsPageTest, PeopleStandBelowHeadings)
{
    SetUpAccount();
    Add(u"cleo", SignPresence::Offline);
    Add(u"ben", SignPresence::Away);
    Add(u"ann", SignPresence::Online);
    contacts_.OnContactAsks(u"kim");
    PostQueue::Get().RunPending();
    EXPECT_EQ(GetRows(),
              u"STRID_KIVO_ASKING · 1|kim|STRID_KIVO_ONLINE · 2|ann|ben|STRID_KIVO_OFFLINE · 1|"
              u"cleo|");
    const ui::CSkinListItem* const ben = FindRow(u"ben");
    Add(u"ben", SignPresence::Offline);
    contacts_.OnContactGone(u"kim");
    PostQueue::Get().RunPending();
    EXPECT_EQ(GetRows(), u"STRID_KIVO_ONLINE · 1|ann|STRID_KIVO_OFFLINE · 2|ben|cleo|");
    EXPECT_EQ(FindRow(u"ben"), ben); // With its selection.
}

struct RowCase {
    const char* name;
    SignPresence presence;
    const char16_t* url; // Null: no sign.
    const char16_t* line;
    bool canPlay;
    const char16_t* spoken;
};

class ContactRowTest : public ContactsPageTest, public testing::WithParamInterface<RowCase> {};

TEST_P(ContactRowTest, SaysHowTheyAre)
{
    const RowCase& row = GetParam();
    SetUpAccount();
    Add(u"ann", row.presence);
    if (row.url != nullptr)
        SetSign(u"ann", row.url);
    ui::CSkinListItem* const ann = FindRow(u"ann");
    EXPECT_EQ(ann->GetCellText(u"line"), row.line);
    EXPECT_EQ(ann->HasCell(u"play"), row.canPlay);
    EXPECT_EQ(ann->GetSpokenText(), row.spoken);
    // A double click goes to whatever sign there is: the player says what it can't play.
    list_->OnDoubleClick(ann);
    EXPECT_EQ(activated_.empty(), row.url == nullptr || row.presence == SignPresence::Offline);
}

constexpr RowCase kRows[] = {
    {"Online",
     SignPresence::Online,
     nullptr,                                     u"STRID_KIVO_ONLINE",
     false,                                                                    u"ann, STRID_KIVO_ONLINE"                  },
    {"Away",         SignPresence::Away, nullptr, u"STRID_KIVO_AWAY",   false, u"ann, STRID_KIVO_AWAY"                    },
    {"Offline",
     SignPresence::Offline,
     u"http://a.example/",                        u"",
     false,                                                                    u"ann, STRID_KIVO_OFFLINE"                 },
    {"Stream",
     SignPresence::Busy,
     u"http://a.example/",                        u"tune",
     true,                                                                     u"ann, STRID_KIVO_BUSY, STRID_KIVO_PLAYS"  },
    {"TheirOwnFile",
     SignPresence::Online,
     u"/tune",                                    u"tune",
     false,                                                                    u"ann, STRID_KIVO_ONLINE, STRID_KIVO_PLAYS"},
};

INSTANTIATE_TEST_SUITE_P(Rows, ContactRowTest, testing::ValuesIn(kRows), test::CaseName<RowCase>);

TEST_F(ContactsPageTest, SaysThatAContactHasNotAnsweredYet)
{
    SetUpAccount();
    contacts_.OnContact({u"ann", u"ann", SignPresence::Offline, /*isAsked=*/true});
    PostQueue::Get().RunPending();
    EXPECT_EQ(FindRow(u"ann")->GetSpokenText(), u"ann, STRID_KIVO_OFFLINE, STRID_KIVO_ASKED");
    Add(u"ann", SignPresence::Online);
    EXPECT_EQ(FindRow(u"ann")->GetSpokenText(), u"ann, STRID_KIVO_ONLINE");
}

TEST_F(ContactsPageTest, KeysDoWhatTheMouseDoes)
{
    SetUpAccount();
    Add(u"ann", SignPresence::Online);
    SetSign(u"ann", u"http://a.example/");
    list_->SetCurrentRow(FindRow(u"ann"));
    list_->OnKey(ui::ListKey::Activate);
    EXPECT_EQ(activated_, u"ann ");
    list_->OnKey(ui::ListKey::Rename);
    ASSERT_EQ(list_->GetEditedRow(), FindRow(u"ann"));
    list_->OnEditFinished(u" Ann\u202E the\nGreat ", /*committed=*/true);
    EXPECT_EQ(network_.TakeLog(), u"rename:ann=Ann the Great ");
    Script({
        {u"BtnOK", u""}
    });
    list_->OnKey(ui::ListKey::Delete);
    EXPECT_EQ(network_.TakeLog(), u"remove:ann ");
    Script({
        {u"BtnNo", u""}
    });
    list_->OnKey(ui::ListKey::Delete);
    EXPECT_EQ(network_.TakeLog(), u"");
}

TEST_F(ContactsPageTest, MenusOfferTheSame)
{
    SetUpAccount();
    Add(u"ann", SignPresence::Online);
    const auto choose = [this](ui::CSkinListItem* row, int id) {
        ui::GetNullPeerFactory().QueueMenu([id](ui::IMenu& menu) { return menu.FindEntry(id); });
        list_->OnContextMenu(row, -1, -1);
    };
    ui::GetNullPeerFactory().QueueMenu([](ui::IMenu& menu) -> ui::IMenu* {
        EXPECT_TRUE(menu.FindEntry(1)->IsDisabled()); // There is nothing to play.
        return nullptr;
    });
    list_->OnContextMenu(FindRow(u"ann"), -1, -1);
    SetSign(u"ann", u"http://a.example/");
    choose(FindRow(u"ann"), 1);
    EXPECT_EQ(activated_, u"ann ");
    Script({
        {u"BtnOK", u""}
    });
    choose(FindRow(u"ann"), 3);
    EXPECT_EQ(network_.TakeLog(), u"remove:ann ");
    Script({
        {u"AddressInput", u"ben@example.org"},
        {u"BtnOK",        u""               }
    });
    choose(nullptr, 100);
    EXPECT_EQ(network_.TakeLog(), u"add:ben@example.org ");
}

TEST_F(ContactsPageTest, RequestsAreAnsweredOrLeft)
{
    SetUpAccount();
    const auto ask = [this] {
        contacts_.OnContactAsks(u"kim@example.org");
        PostQueue::Get().RunPending();
        list_->SetCurrentRow(FindRow(u"kim@example.org"));
    };
    ask();
    Script({});
    list_->OnKey(ui::ListKey::Activate); // Closed: no answer.
    EXPECT_EQ(network_.TakeLog(), u"");
    EXPECT_NE(FindRow(u"kim@example.org"), nullptr);
    Script({
        {u"BtnOK", u""}
    });
    list_->OnKey(ui::ListKey::Activate);
    EXPECT_EQ(network_.TakeLog(), u"allow:kim@example.org ");
    PostQueue::Get().RunPending();
    EXPECT_EQ(FindRow(u"kim@example.org"), nullptr);
    ask();
    Script({
        {u"BtnNo", u""}
    });
    list_->OnKey(ui::ListKey::Activate);
    EXPECT_EQ(network_.TakeLog(), u"decline:kim@example.org ");
}

TEST_F(ContactsPageTest, AnAccountIsSilentUntilTheBoxIsTicked)
{
    Script({
        {u"AddressInput",  u" Me@Example.org/phone "},
        {u"PasswordInput", u" pass word "           },
        {u"BtnOK",         u""                      },
    });
    Press(u"ContactsSignInBtn");
    EXPECT_EQ(network_.TakeLog(), u"unsign hide in:me@example.org@:0 password: pass word +keep ");
    EXPECT_TRUE(account_.IsOn());
    EXPECT_FALSE(services_.IsMediaStateShown());

    Script({
        {u"PublishBox",    u""            },
        {u"KeepBox",       u""            },
        {u"PasswordInput", u"x"           },
        {u"MoreBtn",       u""            },
        {u"ServerInput",   u"talk.example"},
        {u"PortInput",     u"5223"        },
        {u"BtnOK",         u""            },
    });
    desk_.SetUpAccount();
    EXPECT_EQ(network_.TakeLog(), u"publish in:me@example.org@talk.example:5223 password:x ");
    EXPECT_TRUE(services_.IsMediaStateShown());
}

TEST_F(ContactsPageTest, TheMenuChangesWhatLeaves)
{
    SetUpAccount();
    const auto choose = [this](int id) {
        ui::GetNullPeerFactory().QueueMenu([id](ui::IMenu& menu) { return menu.FindEntry(id); });
        Press(u"MenuBtn");
        return network_.TakeLog();
    };
    EXPECT_EQ(choose(1), u"publish ");
    EXPECT_EQ(choose(5), u"publish:title ");
    EXPECT_EQ(choose(1), u"unsign hide ");
    EXPECT_EQ(choose(7), u"out hide ");
    EXPECT_FALSE(account_.IsOn());
    EXPECT_TRUE(services_.IsMediaStateShown()); // Under the own name alone, as before the account.
    EXPECT_EQ(account_.Get().address, u"me@example.org");
}

TEST_F(ContactsPageTest, ASignOutLeavesNobodyOnThePage)
{
    SetUpAccount();
    Add(u"ann", SignPresence::Online);
    desk_.SignOut();
    PostQueue::Get().RunPending();
    EXPECT_EQ(GetRows(), u"");
    EXPECT_TRUE(IsShown(u"ContactsSignInBtn"));
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
    desk_.SetUpAccount();
    EXPECT_EQ(network_.TakeLog(), u"");
    EXPECT_FALSE(account_.IsOn());
}

const std::pair<String, String> kName{u"AddressInput", u"me@example.org"};
const std::pair<String, String> kSecret{u"PasswordInput", u"x"};
const FormCase kForms[] = {
    {"NoAddress",     {kSecret},                                           u"AddressError" },
    {"NoServer",      {{u"AddressInput", u"me"}, kSecret},                 u"AddressError" },
    {"Blank",         {{u"AddressInput", u"m e@example.org"}, kSecret},    u"AddressError" },
    {"TwoAts",        {{u"AddressInput", u"me@you@example.org"}, kSecret}, u"AddressError" },
    {"NoPassword",    {kName},                                             u"PasswordError"},
    {"PortInTheName", {kName, kSecret, {u"ServerInput", u"a.example:1"}},  u"ServerError"  },
    {"PortTooLarge",  {kName, kSecret, {u"PortInput", u"65536"}},          u"ServerError"  },
    {"PortOfLetters", {kName, kSecret, {u"PortInput", u"52x"}},            u"ServerError"  },
    {"PortZero",      {kName, kSecret, {u"PortInput", u"0"}},              u"ServerError"  },
};

INSTANTIATE_TEST_SUITE_P(Forms,
                         AccountFormTest,
                         testing::ValuesIn(kForms),
                         test::CaseName<FormCase>);

TEST_F(ContactsPageTest, AKeptPasswordIsThatOfItsAccountAlone)
{
    SetUpAccount();
    Script({
        {u"BtnOK", u""}
    });
    desk_.SetUpAccount();
    EXPECT_EQ(network_.TakeLog(), u"hide in:me@example.org@:0 ");
    Script({
        {u"AddressInput", u"you@example.org"},
        {u"BtnOK",        u""               }
    });
    desk_.SetUpAccount();
    EXPECT_EQ(network_.TakeLog(), u"");
}

TEST_F(ContactsPageTest, ATrustedCertificateIsThatOfItsServerAlone)
{
    account_.Set({u"me@example.org", {}, 0, "ab"});
    Script({
        {u"PasswordInput", u"x"},
        {u"BtnOK",         u"" }
    });
    desk_.SetUpAccount();
    EXPECT_EQ(account_.Get().fingerprint, "ab");
    Script({
        {u"ServerInput",   u"other.example"},
        {u"PasswordInput", u"x"            },
        {u"BtnOK",         u""             }
    });
    desk_.SetUpAccount();
    EXPECT_EQ(account_.Get().fingerprint, "");
}

TEST_F(ContactsPageTest, ACertificateIsTrustedByItsFingerprint)
{
    SetUpAccount();
    network_.SetState(SignConnection::UntrustedCertificate);
    Script({
        {u"BtnNo", u""}
    });
    Press(u"ContactsNoticeBtn");
    EXPECT_EQ(network_.TakeLog(), u"");
    Script({
        {u"BtnOK", u""}
    });
    Press(u"ContactsNoticeBtn");
    EXPECT_EQ(network_.TakeLog(), u"trust:" + common::utf8_to_CString(network_.fingerprint) + u" ");
    EXPECT_EQ(account_.Get().fingerprint, network_.fingerprint);
}

TEST_F(ContactsPageTest, APasswordIsAskedForOnThePage)
{
    SetUpAccount();
    network_.SetState(SignConnection::PasswordNeeded);
    Script({
        {u"BtnOK", u""}
    }); // Empty: it stays open, and is closed.
    Press(u"ContactsNoticeBtn");
    EXPECT_EQ(network_.TakeLog(), u"");
    Script({
        {u"PasswordInput", u"secret"},
        {u"KeepBox",       u""      },
        {u"BtnOK",         u""      }
    });
    Press(u"ContactsNoticeBtn");
    EXPECT_EQ(network_.TakeLog(), u"password:secret ");
    EXPECT_EQ(settings_.Get("account.password", "none"), "none");
}

TEST_F(ContactsPageTest, CountsDownWhileSomebodyLooks)
{
    common::CMutiLanSupport& texts = *common::CMutiLanSupport::GetInstance();
    texts.AddText(u"STRID_KIVO_NOTICE_WAITING", u"%s in %s");
    SetUpAccount();
    network_.SetState(SignConnection::Waiting, 3);
    EXPECT_EQ(GetText(u"ContactsNoticeText"), u"example.org in 3");
    now_ += 1000;
    TimerService::Get().RunDue();
    EXPECT_EQ(GetText(u"ContactsNoticeText"), u"example.org in 2");
    ui::CSkinObject* const page = form_.FindControlRecusive(u"ContactsPage");
    page->SetVisible(0);
    EXPECT_EQ(TimerService::Get().GetNextDelay(), -1);
    now_ += 1000;
    page->SetVisible(1);
    EXPECT_EQ(GetText(u"ContactsNoticeText"), u"example.org in 1");
    Press(u"ContactsNoticeBtn");
    EXPECT_EQ(network_.TakeLog(), u"again ");
    network_.SetState(SignConnection::Connecting);
    EXPECT_EQ(TimerService::Get().GetNextDelay(), -1);
    texts.Clear();
}

TEST_F(ContactsPageTest, NobodyAddsThemselves)
{
    SetUpAccount();
    Script({
        {u"AddressInput", u"Me@example.org"},
        {u"BtnOK",        u""              }
    });
    Press(u"ContactsAddBtn");
    Script({
        {u"AddressInput", u"no address"},
        {u"BtnOK",        u""          }
    });
    Press(u"ContactsAddBtn");
    EXPECT_EQ(network_.TakeLog(), u"");
}

TEST_F(ContactsPageTest, WhoeverAsksIsToldOfOnTheTab)
{
    SetUpAccount();
    const ui::CSkinObject* const tab =
        form_.FindControlRecusive(u"TabPlace")->GetControls().front()->GetControls()[1];
    EXPECT_EQ(tab->GetText(), u"STRID_KIVO_CONTACTS");
    contacts_.OnContactAsks(u"kim@example.org");
    PostQueue::Get().RunPending();
    EXPECT_EQ(tab->GetText(), u"STRID_KIVO_CONTACTS (1)");
}

TEST_F(ContactsPageTest, HostileTextsAreOnePlainLine)
{
    SetUpAccount();
    const String evil = u"<b>Ann</b>\u202E\n" + String(10240, u'x');
    contacts_.OnContact({u"ann", evil, SignPresence::Online});
    network_.SetSignOf(u"ann", u"music", evil, u"http://a.example/");
    PostQueue::Get().RunPending();
    ui::CSkinListItem* const ann = FindRow(u"ann");
    for (const char16_t* const cell : {u"text", u"line"}) {
        const String text = ann->GetCellText(cell);
        EXPECT_TRUE(text.starts_with(u"<b>Ann</b> xx"));
        EXPECT_EQ(text.size(), 300U);
    }
}

} // namespace
} // namespace kivo::host
