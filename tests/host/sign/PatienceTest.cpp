#include "tests/host/sign/BadServer.h"
#include "tests/host/sign/Person.h"
#include "tests/host/sign/SignServer.h"
#include "tests/support/CaseName.h"
#include "tests/support/TestLoop.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <string>

namespace kivo::test {

namespace {

using host::SignAddressRule;
using host::SignConnection;
using std::chrono::milliseconds;

// Of somebody who waits for nothing longer than a moment.
constexpr host::SignPatience kLittle{
    milliseconds(20000), milliseconds(400), milliseconds(400), milliseconds(400)};

auto CountWaits(const Person& person)
{
    return std::count(person.states.begin(), person.states.end(), SignConnection::Waiting);
}

struct DeafCase {
    const char* name;
    const char* unheard; // Requests that get no answer.
    SignConnection end;
};

class DeafServerTest : public testing::TestWithParam<DeafCase> {};

TEST_P(DeafServerTest, IsGivenUp)
{
    SignServer::Options options;
    options.unheard = GetParam().unheard;
    SignServer server(options);
    server.AddUser("alice");
    server.Start();
    Person alice("alice", SignAddressRule::Any, kLittle);
    alice.SetPassword(SignServer::GetPassword("alice"));
    alice.Get().SignIn(server.GetAccount("alice"));
    EXPECT_TRUE(alice.WaitForState(GetParam().end)) << server.ReadLog();
    EXPECT_TRUE(server.HasHeard(GetParam().unheard));
}

constexpr DeafCase kDeafCases[] = {
    {"ToTheRequestForTheContacts", "jabber:iq:roster", SignConnection::Waiting              },
    {"ToTheQuestionWhatItCan",     "disco#info",       SignConnection::ServerWithoutEventing},
    {"ToTheRequestForAWord",       "urn:xmpp:ping",    SignConnection::Waiting              },
};

INSTANTIATE_TEST_SUITE_P(Rows, DeafServerTest, testing::ValuesIn(kDeafCases), CaseName<DeafCase>);

TEST_F(SignTest, AServerThatGivesAWordIsKept)
{
    Person alice("alice",
                 SignAddressRule::Any,
                 {milliseconds(20000), milliseconds(20000), milliseconds(50), milliseconds(20000)});
    ASSERT_TRUE(alice.SignIn(server));
    RunFor(1000);
    EXPECT_TRUE(server.HasHeard("urn:xmpp:ping"));
    EXPECT_EQ(alice.state.connection, SignConnection::Online);
    EXPECT_EQ(CountWaits(alice), 0);
}

TEST(PatienceTest, AHandshakeWithoutAnEndIsCutAndBegunAnew)
{
    BadServer server(BadServer::Manner::MuteAfterProceed);
    Person alice("alice", SignAddressRule::Any, {milliseconds(300), {}, {}, {}});
    alice.SetPassword("a-secret");
    alice.Get().SignIn(server.GetAccount());
    EXPECT_TRUE(RunUntil([&] { return CountWaits(alice) == 2; }, 20000));
    EXPECT_GE(server.CountConnections(), 2);
}

TEST(PatienceTest, AServerThatIsNotThereIsTriedAgainEverLater)
{
    Person alice("alice");
    alice.SetPassword("secret");
    alice.Get().SignIn({SignServer::GetId("alice"), u"127.0.0.1", FindFreePort(), {}});
    const auto start = std::chrono::steady_clock::now();
    ASSERT_TRUE(RunUntil([&] { return CountWaits(alice) == 3; }, 20000));
    EXPECT_GE(std::chrono::steady_clock::now() - start, milliseconds(375 + 750));
    EXPECT_GE(alice.state.seconds, 2); // 1.5 to 2.5 s.
}

} // namespace

} // namespace kivo::test
