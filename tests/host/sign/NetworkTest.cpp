#include "tests/host/sign/Peer.h"
#include "tests/host/sign/Person.h"
#include "tests/host/sign/SignServer.h"
#include "tests/support/TestLoop.h"

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <set>
#include <string>
#include <string_view>

namespace kivo::test {

namespace {

using host::SignConnection;
using host::SignPresence;

constexpr char kStream[] = "http://radio.example/stream";

std::set<std::string> ListThreads()
{
    std::set<std::string> threads;
    for (const auto& entry : std::filesystem::directory_iterator("/proc/self/task"))
        threads.insert(entry.path().native());
    return threads;
}

// How often the threads that are new since then have waited for something.
long CountWakeUps(const std::set<std::string>& before)
{
    long count = 0;
    for (const std::string& thread : ListThreads()) {
        std::ifstream status(thread + "/status");
        for (std::string line; !before.contains(thread) && std::getline(status, line);) {
            constexpr std::string_view kName = "voluntary_ctxt_switches:";
            if (line.starts_with(kName))
                count += std::stol(line.substr(kName.size()));
        }
    }
    return count;
}

using Network = SignTest;

TEST_F(Network, AContactSeesWhatPlaysAndThatItStops)
{
    Person alice("alice");
    Person bob("bob", host::SignAddressRule::NotThisMachine);
    ASSERT_TRUE(alice.SignIn(server)) << server.ReadLog();
    ASSERT_TRUE(bob.SignIn(server));
    ASSERT_TRUE(bob.WaitForPresence("alice", SignPresence::Online));

    const auto start = std::chrono::steady_clock::now();
    alice.Play("video", kStream, "A song");
    ASSERT_TRUE(bob.WaitForTitle("alice", "A song", 2000)) << server.ReadLog();
    RecordProperty("title_ms",
                   static_cast<int>(std::chrono::duration_cast<std::chrono::milliseconds>(
                                        std::chrono::steady_clock::now() - start)
                                        .count()));
    EXPECT_EQ(bob.GetAddress("alice"), kStream);
    EXPECT_EQ(bob.signs[SignServer::GetId("alice")].kind, u"video");
    EXPECT_EQ(alice.GetAddress("alice"), kStream); // On the own line as well.

    alice.Get().RemoveSign();
    EXPECT_TRUE(bob.WaitForNoSign("alice"));
    EXPECT_TRUE(alice.signs.empty());

    alice.Play("http://127.0.0.1:8000/a", "Hers"); // His machine isn't hers.
    ASSERT_TRUE(bob.WaitForTitle("alice", "Hers"));
    EXPECT_EQ(bob.GetAddress("alice"), "/Hers");
    const auto end = std::chrono::steady_clock::now();
    alice.End();
    EXPECT_LT(std::chrono::steady_clock::now() - end, std::chrono::seconds(1));
    EXPECT_TRUE(bob.WaitForNoSign("alice"));
    EXPECT_TRUE(server.HasHeard("<tune xmlns='http://jabber.org/protocol/tune'/>"));
}

TEST_F(Network, NothingLeavesButWhatTheUserWants)
{
    Person alice("alice");
    alice.Get().SetPublishing(/*publish=*/false, /*withAddress=*/true);
    Person bob("bob");
    ASSERT_TRUE(alice.SignIn(server));
    ASSERT_TRUE(bob.SignIn(server));
    ASSERT_TRUE(bob.WaitForPresence("alice", SignPresence::Online));
    alice.Play(kStream, "A song");
    EXPECT_EQ(alice.GetAddress("alice"), kStream); // The own line shows it all the same.
    RunFor(3000);
    EXPECT_FALSE(server.HasHeard("A song"));

    alice.Get().SetPublishing(/*publish=*/true, /*withAddress=*/false); // The title alone.
    ASSERT_TRUE(bob.WaitForTitle("alice", "A song"));
    EXPECT_TRUE(server.HasHeard("A song"));
    EXPECT_FALSE(server.HasHeard("radio.example"));

    alice.Get().SetPublishing(/*publish=*/true, /*withAddress=*/true);
    alice.Play("/home/alice/private/a.mp3", "A file");
    ASSERT_TRUE(bob.WaitForTitle("alice", "A file"));
    EXPECT_TRUE(server.HasHeard("local='true'"));
    EXPECT_FALSE(server.HasHeard("private"));

    alice.Get().SetPublishing(/*publish=*/false, /*withAddress=*/true);
    EXPECT_TRUE(bob.WaitForNoSign("alice", 1000)); // At once.
}

TEST_F(Network, AStrangerGetsNothing)
{
    // Another program of hers has opened the node to everybody before.
    {
        Peer other(server, "alice");
        EXPECT_NE(other
                      .Ask("<iq type='set' id='ID'><pubsub "
                           "xmlns='http://jabber.org/protocol/pubsub'><publish "
                           "node='http://jabber.org/protocol/tune'><item id='current'><tune "
                           "xmlns='http://jabber.org/protocol/tune'/></item></publish>"
                           "<publish-options><x xmlns='jabber:x:data' type='submit'><field "
                           "var='FORM_TYPE' type='hidden'><value>http://jabber.org/protocol/"
                           "pubsub#publish-options</value></field><field "
                           "var='pubsub#access_model'><value>open</value></field></x>"
                           "</publish-options></pubsub></iq>")
                      .find("type=\"result\""),
                  std::string::npos);
    }
    Person alice("alice");
    Person bob("bob");
    ASSERT_TRUE(alice.SignIn(server));
    ASSERT_TRUE(bob.SignIn(server));
    Peer eve(server, "eve");
    eve.SayPresence();
    eve.Say("<presence to='alice@sign.example'/>");
    alice.Play(kStream, "A song");
    ASSERT_TRUE(bob.WaitForTitle("alice", "A song"));
    const std::string node = " node='http://jabber.org/protocol/tune'";
    const std::string pubsub = "<pubsub xmlns='http://jabber.org/protocol/pubsub'>";
    const std::string to = "' to='alice@sign.example' id='ID'>";
    const std::string items =
        eve.Ask("<iq type='get" + to + pubsub + "<items" + node + "/></pubsub></iq>");
    EXPECT_NE(items.find("type=\"error\""), std::string::npos) << items;
    const std::string follow = eve.Ask("<iq type='set" + to + pubsub + "<subscribe" + node +
                                       " jid='eve@sign.example'/></pubsub></iq>");
    EXPECT_NE(follow.find("type=\"error\""), std::string::npos) << follow;
    for (const std::string& stanza : eve.GetReceived()) {
        EXPECT_EQ(stanza.find("A song"), std::string::npos) << stanza;
        EXPECT_EQ(stanza.find("alice@sign.example/"), std::string::npos) << stanza;
    }
}

TEST_F(Network, AServerThatComesBackFindsAllAsItIsNow)
{
    Person alice("alice");
    Person bob("bob");
    ASSERT_TRUE(alice.SignIn(server));
    ASSERT_TRUE(bob.SignIn(server));
    alice.Play(kStream, "A song");
    ASSERT_TRUE(bob.WaitForTitle("alice", "A song"));
    server.Stop();
    ASSERT_TRUE(bob.WaitForNoSign("alice"));
    ASSERT_TRUE(bob.WaitForPresence("alice", SignPresence::Offline));
    server.Start();
    ASSERT_TRUE(bob.WaitForTitle("alice", "A song", 60000)) << server.ReadLog();
    server.Kill();
    ASSERT_TRUE(alice.WaitForState(SignConnection::Waiting));
    ASSERT_TRUE(bob.WaitForState(SignConnection::Waiting));
    alice.Play(kStream, "Another"); // Nobody can be told.
    bob.Get().RenameContact(SignServer::GetId("alice"), u"Al");
    server.Start();
    EXPECT_TRUE(bob.WaitForTitle("alice", "Another", 60000));
    const auto isRenamed = [&] { return bob.contacts[SignServer::GetId("alice")].name == u"Al"; };
    EXPECT_TRUE(RunUntil(isRenamed, 20000));
}

TEST_F(Network, WhatACrashHasLeftIsClearedAtTheNextSignIn)
{
    Person bob("bob");
    ASSERT_TRUE(bob.SignIn(server));
    Peer phone(server, "alice"); // Another device of hers.
    phone.SayPresence();
    const auto signIn = [this](bool publishes) {
        Person alice("alice");
        alice.Get().SetPublishing(publishes, /*withAddress=*/true);
        EXPECT_TRUE(alice.SignIn(server));
        RunFor(1000);
    };
    // Who publishes nothing clears only what is from here.
    phone.SayTune("<title>On the phone</title>");
    signIn(/*publishes=*/false);
    EXPECT_TRUE(bob.WaitForTitle("alice", "On the phone"));
    signIn(/*publishes=*/true);
    EXPECT_TRUE(bob.WaitForNoSign("alice"));
    phone.SayTune("<title>Left behind</title><sign xmlns='urn:x-kivo:sign:0' kind='music'/>");
    ASSERT_TRUE(bob.WaitForTitle("alice", "Left behind"));
    signIn(/*publishes=*/false);
    EXPECT_TRUE(bob.WaitForNoSign("alice"));
}

TEST_F(Network, PeopleAskForAndLeaveEachOther)
{
    Person alice("alice");
    Person eve("eve");
    ASSERT_TRUE(alice.SignIn(server));
    ASSERT_TRUE(eve.SignIn(server));
    const String eveId = SignServer::GetId("eve");
    const String aliceId = SignServer::GetId("alice");
    eve.Get().AddContact(u" Alice@SIGN.example ");
    ASSERT_TRUE(RunUntil([&] { return alice.asking.contains(eveId); }, 20000));
    EXPECT_TRUE(RunUntil([&] { return eve.contacts.contains(aliceId); }, 20000));
    EXPECT_EQ(eve.contacts[aliceId].presence, SignPresence::Offline);
    alice.Get().AnswerContact(eveId, /*yes=*/true);
    ASSERT_TRUE(alice.WaitForPresence("eve", SignPresence::Online)); // Nobody asked eve again.
    ASSERT_TRUE(eve.WaitForPresence("alice", SignPresence::Online));
    alice.Play(kStream, "A song");
    ASSERT_TRUE(eve.WaitForTitle("alice", "A song"));

    eve.Get().RenameContact(aliceId, u"My\nfriend");
    EXPECT_TRUE(RunUntil([&] { return eve.contacts[aliceId].name == u"My friend"; }, 20000));

    alice.Get().RemoveContact(eveId);
    EXPECT_TRUE(RunUntil([&] { return !alice.contacts.contains(eveId); }, 20000));
    EXPECT_TRUE(eve.WaitForPresence("alice", SignPresence::Offline));
    EXPECT_TRUE(eve.WaitForNoSign("alice"));
}

TEST_F(Network, ARequestGoesWhenItIsAnsweredElsewhereOrTakenBack)
{
    Person alice("alice");
    Peer eve(server, "eve");
    ASSERT_TRUE(alice.SignIn(server));
    const String id = SignServer::GetId("eve");
    const auto asks = [&] { return alice.asking.contains(id); };
    const auto asksNoMore = [&] { return !alice.asking.contains(id); };
    const std::string toAlice = " to='alice@sign.example'/>";
    eve.Say("<presence type='subscribe'" + toAlice);
    ASSERT_TRUE(RunUntil(asks, 20000));
    eve.Say("<presence type='unsubscribe'" + toAlice);
    EXPECT_TRUE(RunUntil(asksNoMore, 20000));

    eve.Say("<presence type='subscribe'" + toAlice);
    ASSERT_TRUE(RunUntil(asks, 20000));
    alice.Forget();
    alice.Listen();
    EXPECT_TRUE(asks()) << "whoever listens next hears of it too";
    server.Stop();
    ASSERT_TRUE(alice.WaitForState(SignConnection::Waiting));
    server.Start();
    ASSERT_TRUE(alice.WaitForState(SignConnection::Online));
    EXPECT_TRUE(RunUntil(asks, 20000)) << "it is still to be answered";
    Peer phone(server, "alice");
    phone.SayPresence();
    phone.Say("<presence type='subscribed' to='eve@sign.example'/>");
    EXPECT_TRUE(RunUntil(asksNoMore, 20000));
}

TEST_F(Network, ANoIsANo)
{
    Person alice("alice");
    Person eve("eve");
    ASSERT_TRUE(eve.SignIn(server));
    eve.Get().AddContact(SignServer::GetId("alice"));
    ASSERT_TRUE(RunUntil([&] { return !eve.contacts.empty(); }, 20000));
    ASSERT_TRUE(alice.SignIn(server)); // The question has waited for her.
    ASSERT_TRUE(RunUntil([&] { return !alice.asking.empty(); }, 20000));
    alice.Get().AnswerContact(SignServer::GetId("eve"), /*yes=*/false);
    alice.Play(kStream, "A song");
    Person bob("bob");
    ASSERT_TRUE(bob.SignIn(server));
    ASSERT_TRUE(bob.WaitForTitle("alice", "A song"));
    EXPECT_TRUE(eve.titles.empty());
    EXPECT_EQ(alice.contacts.size(), 1U);
}

TEST_F(Network, SignedInAndIdleItHardlyWakes)
{
    const std::set<std::string> before = ListThreads();
    Person alice("alice");
    ASSERT_TRUE(alice.SignIn(server));
    RunFor(2500); // What a sign-in brings is over.
    const long start = CountWakeUps(before);
    RunFor(10000);
    const long wakeUps = CountWakeUps(before) - start;
    RecordProperty("wake_ups_in_10_s", static_cast<int>(wakeUps));
    EXPECT_LE(wakeUps, 1);
}

TEST_F(Network, ASignMovesWithItsOwnerAndWhoeverListensNextHearsAllAgain)
{
    Person alice("alice");
    EXPECT_EQ(alice.state.connection, SignConnection::LocalOnly);
    EXPECT_EQ(alice.Get().GetOwnId(), u"somebody");
    alice.Play(kStream, "Hers");
    EXPECT_TRUE(alice.signs.contains(u"somebody"));
    ASSERT_TRUE(alice.SignIn(server));
    EXPECT_EQ(alice.Get().GetOwnId(), SignServer::GetId("alice"));
    EXPECT_EQ(alice.signs.size(), 1U);
    Person bob("bob");
    ASSERT_TRUE(bob.SignIn(server));
    EXPECT_TRUE(bob.WaitForTitle("alice", "Hers"));
    bob.Play(kStream, "His");
    ASSERT_TRUE(alice.WaitForTitle("bob", "His"));

    alice.Forget();
    alice.Listen();
    EXPECT_EQ(alice.state.connection, SignConnection::Online);
    EXPECT_EQ(alice.contacts.size(), 1U);
    EXPECT_EQ(alice.signs[SignServer::GetId("bob")].title, u"His");
    EXPECT_EQ(alice.signs[SignServer::GetId("alice")].title, u"Hers");

    alice.Get().SignOut();
    EXPECT_TRUE(bob.WaitForNoSign("alice"));
    RunFor(500); // What is still on its way isn't told.
    EXPECT_EQ(alice.state.connection, SignConnection::LocalOnly);
    EXPECT_TRUE(alice.contacts.empty());
    EXPECT_TRUE(alice.signs.contains(u"somebody"));
    EXPECT_EQ(alice.signs.size(), 1U);
}

TEST_F(Network, AWrongPasswordIsRefusedUntilTheUserGivesAnother)
{
    Person alice("alice");
    alice.SetPassword("wrong");
    alice.Get().SignIn(server.GetAccount("alice"));
    ASSERT_TRUE(alice.WaitForState(SignConnection::Refused)) << server.ReadLog();
    const std::size_t states = alice.states.size();
    RunFor(2500); // Longer than the first two waits would be.
    EXPECT_EQ(alice.states.size(), states);
    alice.Get().TryNow(); // With the password that it has.
    ASSERT_TRUE(PollUntil([&] { return alice.states.size() >= states + 2; }, 20000));
    EXPECT_EQ(alice.state.connection, SignConnection::Refused);

    // The one that comes while another is on its way is the one that counts.
    alice.Get().TryNow();
    ASSERT_TRUE(alice.WaitForState(SignConnection::Connecting));
    RunFor(20);
    alice.Get().GivePassword(SignServer::GetPassword("alice"), /*keep=*/true);
    ASSERT_TRUE(alice.WaitForState(SignConnection::Online));
    const auto isKept = [&] { return alice.GetKept() == SignServer::GetPassword("alice"); };
    EXPECT_TRUE(PollUntil(isKept, 20000));
}

TEST_F(Network, WithoutAPasswordTheUserIsAskedAndToldWhereItIsNotKept)
{
    Person alice("alice");
    const auto give = [&](bool keep) {
        alice.Get().SignIn(server.GetAccount("alice"));
        ASSERT_TRUE(alice.WaitForState(SignConnection::PasswordNeeded));
        alice.Get().GivePassword(SignServer::GetPassword("alice"), keep);
        ASSERT_TRUE(alice.WaitForState(SignConnection::Online));
    };
    give(/*keep=*/false);
    EXPECT_TRUE(PollUntil([&] { return alice.HasErased(); }, 20000)); // None of before is left.
    EXPECT_EQ(alice.GetKept(), "");
    EXPECT_FALSE(alice.state.losesPassword);
    alice.Get().SignOut();
    {
        const std::lock_guard lock(alice.secrets->mutex);
        alice.secrets->isLocked = true;
    }
    give(/*keep=*/true);
    EXPECT_TRUE(RunUntil([&] { return alice.state.losesPassword; }, 20000));
    EXPECT_EQ(alice.state.connection, SignConnection::Online);
}

TEST_F(Network, AnUnknownCertificateIsRefusedUntilTheUserTrustsIt)
{
    Person alice("alice");
    alice.SetPassword(SignServer::GetPassword("alice"));
    host::SignAccount account = server.GetAccount("alice");
    account.fingerprint.clear();
    alice.Get().SignIn(account);
    ASSERT_TRUE(alice.WaitForState(SignConnection::UntrustedCertificate)) << server.ReadLog();
    // The server's own, though it is the authority's that the system doesn't know.
    EXPECT_EQ(alice.state.fingerprint, server.GetFingerprint());
    EXPECT_FALSE(alice.state.reason.empty());
    const std::size_t states = alice.states.size();
    RunFor(2500);
    EXPECT_EQ(alice.states.size(), states);
    EXPECT_EQ(server.ReadLog().find("<auth"), std::string::npos); // It has heard no name.

    alice.Get().TrustCertificate(alice.state.fingerprint);
    EXPECT_TRUE(alice.WaitForState(SignConnection::Online));
    EXPECT_NE(server.ReadLog().find("<auth"), std::string::npos);
}

TEST(OtherServers, ACertificateForAnotherNameIsRefused)
{
    SignServer::Options options;
    options.certificateName = "other.example";
    SignServer server(options);
    server.AddUser("alice");
    server.Start();
    Person alice("alice");
    alice.SetPassword(SignServer::GetPassword("alice"));
    host::SignAccount account = server.GetAccount("alice");
    account.fingerprint.clear();
    alice.Get().SignIn(account);
    ASSERT_TRUE(alice.WaitForState(SignConnection::UntrustedCertificate)) << server.ReadLog();
    EXPECT_EQ(alice.state.fingerprint, server.GetFingerprint());
}

TEST(OtherServers, OneWithoutEventingIsTold)
{
    SignServer::Options options;
    options.hasEventing = false;
    SignServer server(options);
    server.AddUser("alice");
    server.Start();
    Person alice("alice");
    EXPECT_FALSE(alice.SignIn(server, 0));
    ASSERT_TRUE(alice.WaitForState(SignConnection::ServerWithoutEventing)) << server.ReadLog();
    alice.Play(kStream, "A song");
    RunFor(2500);
    EXPECT_EQ(alice.state.connection, SignConnection::ServerWithoutEventing);
    EXPECT_FALSE(server.HasHeard("A song"));
}

} // namespace

} // namespace kivo::test
