#include "tests/host/sign/BadServer.h"
#include "tests/host/sign/Peer.h"
#include "tests/host/sign/Person.h"
#include "tests/host/sign/SignServer.h"
#include "tests/support/TestLoop.h"

#include <dlfcn.h>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <netdb.h>
#include <sys/resource.h>
#include <sys/select.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <cstring>
#include <filesystem>
#include <functional>
#include <iterator>
#include <mutex>
#include <vector>

namespace {

// The look-up of one name that never answers until it is let go.
struct SlowName {
    std::mutex mutex;
    std::condition_variable changed;
    bool isAsked = false; // Guarded by mutex.
    bool isHeld = true;
};

SlowName& GetSlowName()
{
    static SlowName name;
    return name;
}

} // namespace

// In place of the system's getaddrinfo, for the library too.
extern "C" __attribute__((visibility("default"))) int
LookUpName(const char* node,
           const char* service,
           const addrinfo* hints,
           addrinfo** result) __asm__("getaddrinfo");

int LookUpName(const char* node, const char* service, const addrinfo* hints, addrinfo** result)
{
    if (node != nullptr && std::strcmp(node, "slow.example") == 0) {
        SlowName& name = GetSlowName();
        std::unique_lock lock(name.mutex);
        name.isAsked = true;
        name.changed.wait(lock, [&] { return !name.isHeld; });
        return EAI_NONAME;
    }
    static const auto real =
        reinterpret_cast<decltype(&getaddrinfo)>(dlsym(RTLD_NEXT, "getaddrinfo"));
    return real(node, service, hints, result);
}

namespace kivo::test {

namespace {

using host::SignConnection;
using host::SignPresence;
using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

std::size_t CountEntries(const char* folder)
{
    const std::filesystem::directory_iterator entries(folder);
    return static_cast<std::size_t>(std::distance(begin(entries), end(entries)));
}

std::size_t CountThreads()
{
    return CountEntries("/proc/self/task");
}

std::size_t CountDescriptors()
{
    return CountEntries("/proc/self/fd");
}

milliseconds Measure(const std::function<void()>& work)
{
    const auto start = Clock::now();
    work();
    return std::chrono::duration_cast<milliseconds>(Clock::now() - start);
}

// With a password that no server gets to see.
void SignInAt(Person& person, const BadServer& server)
{
    person.SetPassword("a-secret");
    person.Get().SignIn(server.GetAccount());
}

using Traps = SignTest;

TEST(BadServers, OneThatFallsSilentHoldsNobodyUp)
{
    RunFor(50); // What a test before has left in the line.
    const std::size_t threads = CountThreads();
    const std::size_t descriptors = CountDescriptors();
    for (const auto manner : {BadServer::Manner::Silent, BadServer::Manner::MuteAfterProceed}) {
        BadServer server(manner);
        Person alice("alice");
        SignInAt(alice, server);
        ASSERT_TRUE(
            PollUntil([&] { return server.CountConnections() > 0 && server.HasSaidAll(); }, 20000));
        RunFor(100);
        const milliseconds end = Measure([&] { alice.End(); });
        if (manner == BadServer::Manner::Silent) {
            EXPECT_LT(end.count(), 1000);
        } else {
            // The library waits inside one call. Cutting it raises SIGPIPE on the thread.
            EXPECT_GE(end.count(), 2000);
            EXPECT_LT(end.count(), 3000);
        }
    }
    EXPECT_TRUE(PollUntil([&] { return CountThreads() == threads; }, 1000));
    EXPECT_TRUE(PollUntil([&] { return CountDescriptors() == descriptors; }, 1000));
}

TEST(BadServers, OneWithoutEncryptionGetsNoPassword)
{
    BadServer server(BadServer::Manner::WithoutEncryption);
    Person alice("alice");
    SignInAt(alice, server);
    ASSERT_TRUE(alice.WaitForState(SignConnection::Waiting));
    EXPECT_GE(alice.state.seconds, 1);
    alice.End();
    const std::string received = server.GetReceived();
    EXPECT_EQ(received.find("<auth"), std::string::npos) << received;
    EXPECT_EQ(received.find("a-secret"), std::string::npos) << received;
    EXPECT_NE(received.find("<stream:stream"), std::string::npos);
}

TEST(BadServers, OneWhoseNameNobodyLooksUpLeavesTheThreadBehindUnharmed)
{
    RunFor(50); // What a test before has left in the line.
    const std::size_t threads = CountThreads();
    {
        Person alice("alice");
        alice.SetPassword("a-secret");
        alice.Get().SignIn({SignServer::GetId("alice"), u"slow.example", 5222, {}});
        SlowName& name = GetSlowName();
        ASSERT_TRUE(PollUntil(
            [&] {
                const std::lock_guard lock(name.mutex);
                return name.isAsked;
            },
            20000));
        ResetLongestTurn();
        alice.Play("http://r.example/a", "A"); // No call waits for it.
        alice.Get().SignOut();
        EXPECT_EQ(alice.state.connection, SignConnection::LocalOnly);
        const milliseconds end = Measure([&] { alice.End(); });
        EXPECT_GE(end.count(), 3000);
        EXPECT_LT(end.count(), 4000);
        EXPECT_GT(CountThreads(), threads);
        const std::lock_guard lock(name.mutex);
        name.isHeld = false;
        name.changed.notify_all();
    }
    EXPECT_TRUE(PollUntil([&] { return CountThreads() == threads; }, 20000));
}

TEST_F(Traps, SocketsWithHighNumbersAreRefusedAndLowOnesTakenAgain)
{
    rlimit limit{};
    ASSERT_EQ(getrlimit(RLIMIT_NOFILE, &limit), 0);
    limit.rlim_cur = std::max<rlim_t>(limit.rlim_cur, 2000);
    ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &limit), 0);
    Person alice("alice");
    std::vector<int> open;
    for (int number = 0; number < FD_SETSIZE + 76; number = open.back())
        open.push_back(fcntl(STDIN_FILENO, F_DUPFD_CLOEXEC, 0));
    alice.SetPassword(SignServer::GetPassword("alice"));
    alice.Get().SignIn(server.GetAccount("alice"));
    EXPECT_TRUE(alice.WaitForState(SignConnection::Waiting));
    for (const int number : open)
        close(number);
    EXPECT_TRUE(alice.WaitForState(SignConnection::Online));
}

TEST_F(Traps, ATuneThatEndsTheStreamIsGivenUp)
{
    Person alice("alice");
    ASSERT_TRUE(alice.SignIn(server));
    alice.states.clear();
    alice.Play("http://r.example/a", "poison");
    const auto countArrivals = [&] {
        return std::count(alice.states.begin(), alice.states.end(), SignConnection::Online);
    };
    ASSERT_TRUE(RunUntil([&] { return countArrivals() == 2; }, 30000)) << server.ReadLog();
    RunFor(4000); // A third would go out in that time.
    EXPECT_EQ(alice.state.connection, SignConnection::Online);
    EXPECT_EQ(countArrivals(), 2);
    // What comes next goes out again.
    Person bob("bob");
    ASSERT_TRUE(bob.SignIn(server));
    alice.Play("http://r.example/b", "harmless");
    EXPECT_TRUE(bob.WaitForTitle("alice", "harmless"));
}

TEST_F(Traps, LongTunesArriveWhole)
{
    Person alice("alice");
    ASSERT_TRUE(alice.SignIn(server));
    Peer bob(server, "bob");
    bob.SayPresence();
    ASSERT_TRUE(alice.WaitForPresence("bob", SignPresence::Online));
    // More than the library reads at once, and more than one record of the encryption.
    for (const int size : {5000, 17000, 60000, 150000}) {
        const std::string title =
            std::to_string(size) + std::string(static_cast<std::size_t>(size), 'x');
        bob.SayTune("<title>" + title + "</title>");
        EXPECT_TRUE(alice.WaitForTitle("bob", title.substr(0, 512), 5000)) << size;
    }
}

TEST_F(Traps, ChatsDontEndHere)
{
    Person alice("alice");
    ASSERT_TRUE(alice.SignIn(server));
    Peer bob(server, "bob");
    bob.SayPresence();
    ASSERT_TRUE(alice.WaitForPresence("bob", SignPresence::Online));
    // The server says that it has nobody to give it to: it would store it, if it were set up so.
    bob.Say("<message to='alice@sign.example' type='chat' id='chat'><body>Hello</body></message>");
    EXPECT_NE(bob.WaitFor("service-unavailable"), "");
}

TEST_F(Traps, TheLastTuneOfOneWhoIsAwayIsNotShown)
{
    {
        Peer alice(server, "alice");
        alice.SayPresence();
        alice.SayTune("<title>Left behind</title>");
    } // Gone without a word.
    Peer watcher(server, "alice");
    EXPECT_NE(watcher
                  .Ask("<iq type='get' id='ID'><pubsub xmlns='http://jabber.org/protocol/pubsub'>"
                       "<items node='http://jabber.org/protocol/tune'/></pubsub></iq>")
                  .find("Left behind"),
              std::string::npos);
    Person bob("bob");
    ASSERT_TRUE(bob.SignIn(server));
    RunFor(500);
    EXPECT_TRUE(bob.titles.empty());
    watcher.SayPresence(); // Now she is there, and so is what the server still holds.
    EXPECT_TRUE(bob.WaitForTitle("alice", "Left behind"));
}

TEST_F(Traps, OnlyContactsAreHeard)
{
    Person alice("alice");
    ASSERT_TRUE(alice.SignIn(server));
    Peer bob(server, "bob");
    bob.SayPresence();
    ASSERT_TRUE(alice.WaitForPresence("bob", SignPresence::Online));
    const std::string presence = bob.WaitFor("from=\"alice@sign.example/");
    const std::size_t begin = presence.find("alice@sign.example/");
    const std::string address = presence.substr(begin, presence.find('"', begin) - begin);
    // A stranger, and a contact who speaks in another's name.
    Peer eve(server, "eve");
    const auto forge = [&](Peer& by, const std::string& title) {
        by.Say("<message to='" + address +
               "'><event xmlns='http://jabber.org/protocol/pubsub#event'>"
               "<items node='http://jabber.org/protocol/tune'><item><tune "
               "xmlns='http://jabber.org/protocol/tune'><title>" +
               title + "</title></tune></item></items></event></message>");
    };
    forge(eve, "forged");
    forge(bob, "from a device");
    eve.Say("<presence to='" + address + "'/>");
    // A stranger isn't told who is there; a contact is.
    const std::string info = "' type='get' id='ID'><query xmlns='http://jabber.org/protocol/"
                             "disco#info'/></iq>";
    EXPECT_NE(eve.Ask("<iq to='" + address + info).find("service-unavailable"), std::string::npos);
    EXPECT_NE(bob.Ask("<iq to='" + address + info).find("tune+notify"), std::string::npos);
    bob.SayTune("<title>real</title>");
    ASSERT_TRUE(alice.WaitForTitle("bob", "real"));
    EXPECT_EQ(alice.titles, std::vector<String>{u"real"});
    EXPECT_EQ(alice.contacts.size(), 1U);
}

TEST_F(Traps, NothingIsWrittenOut)
{
    testing::internal::CaptureStderr();
    testing::internal::CaptureStdout();
    {
        Person alice("alice");
        alice.SetPassword("wrong");
        alice.Get().SignIn(server.GetAccount("alice"));
        EXPECT_TRUE(alice.WaitForState(SignConnection::Refused));
        alice.Get().GivePassword(SignServer::GetPassword("alice"), /*keep=*/false);
        EXPECT_TRUE(alice.WaitForState(SignConnection::Online));
    }
    EXPECT_EQ(testing::internal::GetCapturedStderr() + testing::internal::GetCapturedStdout(), "");
}

TEST_F(Traps, SignInsAndSignOutsLeaveNothingOpen)
{
    Person alice("alice");
    ASSERT_TRUE(alice.SignIn(server));
    const std::size_t descriptors = CountDescriptors();
    for (int i = 0; i < 5; ++i)
        ASSERT_TRUE(alice.SignIn(server));
    EXPECT_EQ(CountDescriptors(), descriptors);
    host::SignAccount doubted = server.GetAccount("alice");
    doubted.fingerprint = std::string(64, '0');
    for (int i = 0; i < 5; ++i) {
        alice.Get().SignIn(doubted);
        ASSERT_TRUE(alice.WaitForState(SignConnection::UntrustedCertificate));
    }
    EXPECT_TRUE(PollUntil([&] { return CountDescriptors() < descriptors; }, 5000));
}

} // namespace

} // namespace kivo::test
