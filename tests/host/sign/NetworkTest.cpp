#include "tests/host/sign/Person.h"
#include "tests/host/sign/SignServer.h"
#include "tests/support/TestLoop.h"

#include <gtest/gtest.h>

namespace kivo::test {

namespace {

using host::SignConnection;
using host::SignPresence;

class Network : public testing::Test {
protected:
    Network()
    {
        server.AddUser("alice");
        server.AddUser("bob");
        server.AddUser("eve");
        server.Befriend("alice", "bob");
        server.Start();
    }

    SignServer server;
};

TEST_F(Network, AContactSeesWhatPlaysAndThatItStops)
{
    Person alice("alice");
    Person bob("bob");
    ASSERT_TRUE(alice.SignIn(server)) << server.ReadLog();
    ASSERT_TRUE(bob.SignIn(server));
    ASSERT_TRUE(bob.WaitForPresence("alice", SignPresence::Online));

    alice.Play("http://radio.example/stream", "A song");
    ASSERT_TRUE(bob.WaitForTitle("alice", "A song")) << server.ReadLog();
    EXPECT_EQ(bob.GetAddress("alice"), "http://radio.example/stream");

    alice.Get().RemoveSign();
    EXPECT_TRUE(bob.WaitForNoSign("alice"));
}

} // namespace

} // namespace kivo::test
