#include "host/Contacts.h"

#include "host/Account.h"
#include "host/ContactNotice.h"
#include "host/HostSettings.h"
#include "host/PlainLine.h"
#include "platform/base/PostQueue.h"
#include "shell/contracts/common/Language.h"
#include "tests/host/ScriptedSignNetwork.h"
#include "tests/support/CaseName.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <fstream>
#include <map>

namespace kivo::host {
namespace {

struct LineCase {
    const char* name;
    const char16_t* text;
    const char16_t* line;
};

class ToPlainLineTest : public testing::TestWithParam<LineCase> {};

TEST_P(ToPlainLineTest, ShowsNothingButText)
{
    EXPECT_EQ(ToPlainLine(GetParam().text, 20), GetParam().line);
}

constexpr LineCase kLines[] = {
    {"MarkupIsText",      u"<b>a</b> &amp;",                        u"<b>a</b> &amp;"           },
    {"LinesAreOne",       u" a\r\n\tb\u2028c ",                     u"a b c"                    },
    {"NoOverride",        u"abc\u202Egpj.exe",                      u"abcgpj.exe"               },
    {"FewAccents",        u"e\u0301\u0301\u0301\u0301\u0301\u0301", u"e\u0301\u0301\u0301\u0301"},
    {"CutsWithADot",      u"123456789012345678901234",              u"1234567890123456789…"   },
    {"NeverCutsInHalves", u"123456789012345678😀😀",            u"123456789012345678…"    },
    {"NothingIsNothing",  u" \u202E ",                              u""                         },
};

INSTANTIATE_TEST_SUITE_P(Lines,
                         ToPlainLineTest,
                         testing::ValuesIn(kLines),
                         test::CaseName<LineCase>);

TEST(ToPlainLine, ReadsNoEndlessText)
{
    constexpr std::size_t kEndless = 10'000'000;
    String text;
    text.resize(kEndless, u'a');
    EXPECT_EQ(ToPlainLine(text).size(), 300U);
    text.assign(kEndless, u' ');
    EXPECT_EQ(ToPlainLine(text), u"");
}

TEST(Account, IsOffAndSilentAtFirstAndKeepsNoPassword)
{
    const test::TempFolder folder;
    folder.Write("host.ini", "account.port=-7\n");
    HostSettings settings(folder.GetNative() / "host.ini");
    Account account(settings);
    EXPECT_EQ(account.Get().port, 0); // The usual one.
    EXPECT_FALSE(account.IsOn());
    EXPECT_FALSE(account.IsPublishing());
    account.SetOn(true); // Without an address there is nobody to sign in.
    EXPECT_FALSE(account.IsOn());
    account.Set({u"ann@example.org", u"talk.example", 5223, "ab"});
    EXPECT_TRUE(account.IsOn());
    EXPECT_TRUE(settings.Save());
    EXPECT_EQ(folder.Read("host.ini").find("password"), std::string::npos);

    HostSettings again(folder.GetNative() / "host.ini");
    const SignAccount read = Account(again).Get();
    EXPECT_EQ(read.address, u"ann@example.org");
    EXPECT_EQ(read.server, u"talk.example");
    EXPECT_EQ(read.port, 5223);
    EXPECT_EQ(read.fingerprint, "ab");
}

// Follows the model as the window does.
class View final : public IContactsView {
public:
    void OnConnection() override { ++connections; }
    void OnContacts() override { ++contacts; }
    int connections = 0;
    int contacts = 0;
};

class ContactsTest : public testing::Test {
protected:
    ContactsTest()
    {
        network_.SetListener(&contacts_);
        network_.SetState(SignConnection::Online);
        contacts_.SetView(&view_);
        PostQueue::Get().RunPending();
        view_ = {};
    }
    ~ContactsTest() override { common::CMutiLanSupport::GetInstance()->Clear(); }

    void Add(const String& name, SignPresence presence)
    {
        contacts_.OnContact({name + u"@example.org", name, presence});
    }
    [[nodiscard]] String GetNames() const
    {
        String names;
        for (const Contact* const contact : contacts_.GetSorted())
            names += contact->name + u" ";
        return names;
    }

    View view_;
    ScriptedSignNetwork network_;
    Contacts contacts_;
};

TEST_F(ContactsTest, StandByPresenceAndThenByNameInTheUsersAlphabet)
{
    common::CMutiLanSupport::GetInstance()->SetLangSetting(u"de");
    Add(u"zoe", SignPresence::Online);
    Add(u"Öle", SignPresence::Busy);
    Add(u"olga", SignPresence::Away);
    Add(u"track 10", SignPresence::Online);
    Add(u"track 9", SignPresence::Online);
    Add(u"anna", SignPresence::Offline);
    EXPECT_EQ(GetNames(), u"Öle olga track 9 track 10 zoe anna ");
    network_.SignOut();
    EXPECT_EQ(GetNames(), u"");

    common::CMutiLanSupport::GetInstance()->SetLangSetting(u"sv");
    Contacts swedish;
    for (const char16_t* const name : {u"Öle", u"zoe"})
        swedish.OnContact({name, name, SignPresence::Online});
    EXPECT_EQ(swedish.GetSorted().front()->name, u"zoe");
}

TEST_F(ContactsTest, WithoutANameTheAddressIsShown)
{
    contacts_.OnContact({u"ann@example.org", u"\u202E \n", SignPresence::Online});
    EXPECT_EQ(contacts_.Find(u"ann@example.org")->name, u"ann@example.org");
}

TEST_F(ContactsTest, ASignIsShownWhileItsOwnerIsThere)
{
    network_.SetSignOf(u"ann@example.org", u"music", u"A\ntune", u"http://x.example/");
    contacts_.OnContact({u"ann@example.org", u"Ann", SignPresence::Offline});
    const Contact* const ann = contacts_.Find(u"ann@example.org");
    EXPECT_FALSE(ann->sign);
    contacts_.OnContact({u"ann@example.org", u"Ann", SignPresence::Away});
    ASSERT_TRUE(ann->sign);
    EXPECT_EQ(ann->sign->title, u"A tune");
    EXPECT_EQ(ann->sign->sign.GetText(0), u"http://x.example/");
    contacts_.OnSignGone(u"ann@example.org");
    EXPECT_FALSE(ann->sign);
}

TEST_F(ContactsTest, TheOwnSignIsNobodyElses)
{
    network_.SetSign(u"music", u"Mine", {});
    ASSERT_TRUE(contacts_.GetOwnSign());
    EXPECT_EQ(contacts_.GetOwnSign()->title, u"Mine");
    network_.RemoveSign();
    EXPECT_FALSE(contacts_.GetOwnSign());
    EXPECT_EQ(contacts_.Find(u"me"), nullptr);
    EXPECT_EQ(view_.connections, 2);
}

TEST_F(ContactsTest, AThousandPeopleAreShownOnce)
{
    for (int i = 0; i < 1000; ++i)
        Add(common::ToText(i), SignPresence::Online);
    EXPECT_EQ(view_.contacts, 0);
    PostQueue::Get().RunPending();
    EXPECT_EQ(view_.contacts, 1);
}

TEST_F(ContactsTest, RequestsAreHeldOnceAndFewEnough)
{
    const String kim = u"kim@example.org";
    contacts_.OnContactAsks(kim);
    contacts_.OnContactAsks(kim);
    contacts_.OnContact({kim, u"Kim", SignPresence::Online});
    contacts_.OnContactGone(kim); // As a contact; the question stands.
    EXPECT_EQ(contacts_.GetRequests().size(), 1U);
    contacts_.OnRequestGone(kim);
    EXPECT_TRUE(contacts_.GetRequests().empty());
    for (int i = 0; i < 5000; ++i)
        contacts_.OnContactAsks(common::ToText(i));
    EXPECT_EQ(contacts_.GetRequests().size(), 100U);
    network_.SignOut();
    EXPECT_TRUE(contacts_.GetRequests().empty());
}

TEST_F(ContactsTest, AnAccountCountsAsConnectingUntilTheNetworkHasBegun)
{
    network_.SetState(SignConnection::LocalOnly);
    EXPECT_EQ(contacts_.GetConnection(), SignConnection::LocalOnly);
    contacts_.SetAccountOn(true);
    EXPECT_EQ(contacts_.GetConnection(), SignConnection::Connecting);
    network_.SetState(SignConnection::Refused);
    EXPECT_EQ(contacts_.GetConnection(), SignConnection::Refused);
}

TEST(ContactsLife, AChangeThatIsStillToBeShownGoesWithTheModel)
{
    View view;
    {
        Contacts contacts;
        contacts.SetView(&view);
        contacts.OnContactAsks(u"kim@example.org");
    }
    view.contacts = 0;
    PostQueue::Get().RunPending();
    EXPECT_EQ(view.contacts, 0);
}

class NoticeTest : public testing::Test {
protected:
    NoticeTest()
    {
        common::CMutiLanSupport& texts = *common::CMutiLanSupport::GetInstance();
        EXPECT_TRUE(texts.AddTable(KIVO_HOST_FOLDER u"lang/en/stringid.ini"));
    }
    ~NoticeTest() override { common::CMutiLanSupport::GetInstance()->Clear(); }
};

using enum SignConnection;
using enum NoticeDeed;

TEST_F(NoticeTest, EachStateHasAPlainSentence)
{
    struct Row {
        SignConnection connection;
        String word;
        String text; // Empty: the page says nothing.
        String button;
        NoticeDeed deed;
    };
    const String prove = u"example.org can’t prove";
    const String noModule = u"The part that signs in to example.org";
    const String look = u"Look at the certificate…";
    const String enter = u"Enter the password…";
    const Row rows[] = {
        {LocalOnly,             u"Not signed in",           u"",                       u"",           None            },
        {Connecting,            u"Connecting…",           u"Connecting to ex",       u"",           None            },
        {PasswordNeeded,        u"Password needed",         u"example.org asks",       enter,         GivePassword    },
        {Online,                u"Online",                  u"",                       u"",           None            },
        {Waiting,               u"No connection",           u"example.org can’t be", u"Try now",    TryNow          },
        {Refused,               u"Sign-in refused",         u"example.org doesn’t",  u"Account…", SetUpAccount    },
        {UntrustedCertificate,  u"Certificate not trusted", prove,                     look,          JudgeCertificate},
        {Unavailable,           u"Sign-in not installed",   noModule,                  u"",           None            },
        {ServerWithoutEventing, u"Online, without tunes",   u"You are online, but",    u"",           None            },
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(common::CString_to_utf8(row.word));
        SignState state;
        state.connection = row.connection;
        state.reason = u"self\u202E-signed\n";
        state.fingerprint = "ab";
        const ContactNotice notice = MakeNotice(state, row.connection, u"example.org", 12);
        EXPECT_EQ(GetConnectionWord(row.connection), row.word);
        EXPECT_TRUE(notice.text.starts_with(row.text)) << common::CString_to_utf8(notice.text);
        EXPECT_EQ(notice.text.empty(), row.text.empty());
        EXPECT_EQ(notice.button, row.button);
        EXPECT_EQ(notice.deed, row.deed);
    }
}

TEST_F(NoticeTest, TellsSecondsAndReasonInOneLine)
{
    SignState state;
    state.reason = u"self\u202E-signed\ncertificate";
    state.fingerprint = "ab";
    EXPECT_NE(MakeNotice(state, Waiting, u"s", 12).text.find(u" 12 s"), String::npos);
    EXPECT_EQ(MakeNotice(state, Waiting, u"s", 0).text, u"Connecting to s …");
    EXPECT_TRUE(MakeNotice(state, UntrustedCertificate, u"s", 0)
                    .text.ends_with(u"self-signed certificate"));
    state.fingerprint.clear(); // Nothing to judge it by.
    EXPECT_EQ(MakeNotice(state, UntrustedCertificate, u"s", 0).deed, TryNow);
    state.losesPassword = true;
    EXPECT_TRUE(MakeNotice(state, Online, u"s", 0).text.starts_with(u"Your password couldn’t"));
}

TEST(FormatFingerprint, IsMadeForComparing)
{
    const std::string digits = "0123456789abcdef0123456789ABCDEF0123456789abcdef0123456789abcdef";
    const String lines = FormatFingerprint(digits);
    EXPECT_EQ(lines.substr(0, 24), u"01 23 45 67 89 AB CD EF\n");
    EXPECT_EQ(lines.size(), 4U * 24 - 1);
    std::string colons;
    for (std::size_t i = 0; i < digits.size(); i += 2)
        colons += (i > 0 ? ":" : "") + digits.substr(i, 2);
    EXPECT_EQ(FormatFingerprint(colons), lines);
    EXPECT_EQ(FormatFingerprint("no\n<b>digits</b>"), u"no <b>digits</b>");
    EXPECT_EQ(FormatFingerprint(""), u"");
}

// A language that lacks a text would show its id; a text that lacks a place would hide a name.
TEST(Texts, AreTheSameInAllLanguages)
{
    const auto read = [](const std::string& folder, const std::string& language) {
        std::map<std::string, std::size_t> places;
        std::ifstream table(std::string(KIVO_HOST_FOLDER_BYTES) + folder + "/lang/" + language +
                            "/stringid.ini");
        for (std::string line; std::getline(table, line);) {
            std::size_t count = 0;
            for (std::size_t at = line.find("%s"); at != std::string::npos;
                 at = line.find("%s", at + 1))
                ++count;
            if (line.starts_with("STRID_"))
                places[line.substr(0, line.find('='))] = count;
        }
        return places;
    };
    for (const char* const folder : {".", "../data"}) {
        const auto english = read(folder, "en");
        ASSERT_GT(english.size(), 50U) << folder;
        for (const char* const language : {"de", "zh_CN"})
            EXPECT_EQ(read(folder, language), english) << folder << ' ' << language;
    }
}

} // namespace
} // namespace kivo::host
