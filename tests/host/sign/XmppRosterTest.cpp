#include "host/sign/XmppRoster.h"

#include "shell/contracts/common/Text.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace kivo::test {

namespace {

using host::Sign;
using host::SignPresence;
using Subscription = host::RosterItem::Subscription;

Sign MakeSign(const String& title)
{
    Sign sign;
    sign.kind = u"music";
    sign.title = title;
    return sign;
}

// Writes what it hears as words.
class Page final : public host::ISignNetworkListener {
public:
    void OnState(const host::SignState& /*state*/) override {}
    void OnContact(const host::SignContact& contact) override
    {
        constexpr const char* kWords[] = {"offline", "online", "away", "busy"};
        Add(contact.id, kWords[static_cast<int>(contact.presence)]);
        names.push_back(contact.name);
    }
    void OnContactGone(const String& id) override { Add(id, "gone"); }
    void OnContactAsks(const String& id) override { Add(id, "asks"); }
    void OnSign(const String& id,
                const String& /*kind*/,
                const String& title,
                const Property& /*sign*/) override
    {
        Add(id, "plays " + common::CString_to_utf8(title));
    }
    void OnSignGone(const String& id) override { Add(id, "plays nothing"); }

    std::string Take()
    {
        std::string taken;
        taken.swap(heard_);
        return taken;
    }

    std::vector<String> names;

private:
    void Add(const String& id, const std::string& what)
    {
        const std::string name = common::CString_to_utf8(id);
        heard_ += name.substr(0, name.find('@')) + " " + what + ". ";
    }

    std::string heard_;
};

struct Roster : testing::Test {
    Roster()
    {
        roster.SetItems({
            {"bob@s", "Bob", Subscription::Both, false, {}}
        });
    }

    Page page;
    host::XmppRoster roster{page};
};

TEST_F(Roster, AContactComesAndGoes)
{
    EXPECT_EQ(page.Take(), "bob offline. ");
    roster.OnPresence("bob@s/a", SignPresence::Online, 0);
    roster.OnPresence("bob@s/a", SignPresence::Away, 0);
    roster.OnPresence("bob@s/a", SignPresence::Away, 0);
    roster.OnPresence("bob@s/a", std::nullopt, 0);
    EXPECT_EQ(page.Take(), "bob online. bob away. bob offline. ");
}

TEST_F(Roster, TheDeviceWithTheHighestPriorityIsShown)
{
    roster.OnPresence("bob@s/phone", SignPresence::Busy, 5);
    roster.OnPresence("bob@s/kivo", SignPresence::Online, -1);
    roster.OnPresence("bob@s/phone", std::nullopt, 0);
    EXPECT_EQ(page.Take(), "bob offline. bob busy. bob online. ");
}

TEST_F(Roster, ATuneBeforePresenceWaitsForIt)
{
    roster.OnTune("bob@s", MakeSign(u"song"));
    EXPECT_EQ(page.Take(), "bob offline. ");
    roster.OnPresence("bob@s/a", SignPresence::Online, 0);
    EXPECT_EQ(page.Take(), "bob online. bob plays song. ");
}

TEST_F(Roster, ASignGoesWithItsOwnerAndComesBackWithHim)
{
    roster.OnPresence("bob@s/a", SignPresence::Online, 0);
    roster.OnTune("bob@s", MakeSign(u"song"));
    page.Take();
    roster.OnPresence("bob@s/a", std::nullopt, 0);
    EXPECT_EQ(page.Take(), "bob plays nothing. bob offline. ");
    roster.OnPresence("bob@s/a", SignPresence::Online, 0);
    EXPECT_EQ(page.Take(), "bob online. bob plays song. ");
    roster.OnTune("bob@s", std::nullopt);
    EXPECT_EQ(page.Take(), "bob plays nothing. ");
}

TEST_F(Roster, OnlyWhomTheUserMaySeeIsHeard)
{
    page.Take();
    for (const Subscription subscription : {Subscription::None, Subscription::From}) {
        roster.SetItem({"eve@s", "", subscription, false, {}});
        roster.OnPresence("eve@s/a", SignPresence::Online, 0);
        roster.OnTune("eve@s", MakeSign(u"forged"));
        EXPECT_EQ(page.Take(), "eve offline. ");
    }
    roster.OnPresence("mallory@s/a", SignPresence::Online, 0);
    roster.OnTune("mallory@s", MakeSign(u"forged"));
    EXPECT_EQ(page.Take(), "");
}

TEST_F(Roster, ADeviceDoesNotSpeakForTheContact)
{
    roster.OnPresence("bob@s/a", SignPresence::Online, 0);
    page.Take();
    roster.OnTune("bob@s/a", MakeSign(u"forged"));
    EXPECT_EQ(page.Take(), "");
}

TEST_F(Roster, WhoMayNoLongerBeSeenIsOfflineWithoutASign)
{
    roster.OnPresence("bob@s/a", SignPresence::Online, 0);
    roster.OnTune("bob@s", MakeSign(u"song"));
    page.Take();
    roster.SetItem({"bob@s", "Bob", Subscription::From, false, {}});
    EXPECT_EQ(page.Take(), "bob plays nothing. bob offline. ");
}

TEST_F(Roster, ALostStreamTakesAllOffline)
{
    roster.OnPresence("bob@s/a", SignPresence::Online, 0);
    roster.OnTune("bob@s", MakeSign(u"song"));
    page.Take();
    roster.GoOffline();
    EXPECT_EQ(page.Take(), "bob plays nothing. bob offline. ");
    roster.OnPresence("bob@s/a", SignPresence::Online, 0);
    EXPECT_EQ(page.Take(), "bob online. "); // What it plays comes anew.
}

TEST_F(Roster, ANewListReplacesTheOldOne)
{
    page.Take();
    roster.SetItems({
        {"carol@s", "", Subscription::To, false, {}}
    });
    EXPECT_EQ(page.Take(), "bob gone. carol offline. ");
    roster.SetItem({"carol@s", "", Subscription::Remove, false, {}});
    EXPECT_EQ(page.Take(), "carol gone. ");
    roster.SetItem({"dave@s", "", Subscription::Remove, false, {}});
    EXPECT_EQ(page.Take(), "");
}

TEST_F(Roster, NamesAreCleanedAndUnfitAddressesLeftOut)
{
    page.Take();
    roster.SetItem({"bob@s", "\xE2\x80\xAE Bob\n", Subscription::Both, false, {}});
    EXPECT_EQ(page.names.back(), u"Bob");
    page.Take();
    roster.SetItem({"e\xE2\x80\xAEve@s", "", Subscription::Both, false, {}});
    roster.SetItem({"s", "", Subscription::Both, false, {}});
    EXPECT_EQ(page.Take(), "");
}

TEST_F(Roster, IsBoundedHoweverMuchComes)
{
    for (int i = 0; i < 1000; ++i)
        roster.OnPresence("bob@s/" + std::to_string(i), SignPresence::Online, 0);
    for (int i = 0; i < 32; ++i)
        roster.OnPresence("bob@s/" + std::to_string(i), std::nullopt, 0);
    EXPECT_EQ(page.Take(), "bob offline. bob online. bob offline. ");
    for (int i = 0; i < 11000; ++i)
        roster.SetItem({std::to_string(i) + "@s", "", Subscription::Both, false, {}});
    EXPECT_EQ(page.names.size(), 10000U + 2);
}

} // namespace

} // namespace kivo::test
