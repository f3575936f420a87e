#include "host/sign/PublishPolicy.h"

#include "host/sign/ReconnectDelay.h"

#include <gtest/gtest.h>

#include <string>

namespace kivo::test {

namespace {

using host::IsEmpty;
using host::PublishPolicy;
using host::ReconnectDelay;
using host::Tune;
using std::chrono::milliseconds;

Tune MakeTitle(const std::string& title)
{
    Tune tune;
    tune.title = title;
    return tune;
}

// A policy with a clock that the test turns; what it gives is kept.
struct Policy : testing::Test {
    Policy()
    {
        policy.OnOnline();
        EXPECT_TRUE(IsEmpty(policy.Take(now).value())); // What a crash has left is cleared.
    }

    void Pass(int time)
    {
        const auto end = now + milliseconds(time);
        while (true) {
            const auto due = policy.GetDue();
            if (!due || *due > end)
                break;
            now = std::max(now, *due);
            Take();
        }
        now = end;
    }
    void Take()
    {
        if (const auto tune = policy.Take(now))
            published += "[" + tune->title + "]";
    }
    void Want(const std::string& title) { policy.Want(MakeTitle(title), now); }

    PublishPolicy policy;
    PublishPolicy::Time now{std::chrono::hours(1)};
    std::string published;
};

TEST_F(Policy, ATuneGoesOutOnceItHasBeenQuiet)
{
    Want("a");
    Pass(1499);
    EXPECT_EQ(published, "");
    Pass(1);
    EXPECT_EQ(published, "[a]");
    Pass(60000);
    EXPECT_EQ(published, "[a]");
}

TEST_F(Policy, TheLastOfManyWins)
{
    for (int i = 0; i < 50; ++i) {
        policy.Want({}, now);
        Want(std::to_string(i));
        Pass(100);
    }
    Pass(5000);
    EXPECT_EQ(published, "[49]");
}

TEST_F(Policy, NeverSoonAfterTheOneBefore)
{
    Want("a");
    Pass(1500);
    Want("b");
    Pass(2999);
    EXPECT_EQ(published, "[a]");
    Pass(1);
    EXPECT_EQ(published, "[a][b]");
}

TEST_F(Policy, WhatIsOutAlreadyIsNotSentAgain)
{
    Want("a");
    Pass(5000);
    Want("b");
    Want("a");
    Pass(5000);
    EXPECT_EQ(published, "[a]");
}

TEST_F(Policy, StopTakesItAway)
{
    Want("a");
    Pass(5000);
    Want("");
    Pass(5000);
    EXPECT_EQ(published, "[a][]");
    EXPECT_FALSE(policy.IsOut());
}

TEST_F(Policy, WithdrawnItGoesAtOnce)
{
    Want("a");
    Pass(1500);
    EXPECT_TRUE(policy.IsOut());
    policy.Withdraw(now);
    Pass(0);
    EXPECT_EQ(published, "[a][]");
}

TEST_F(Policy, WithdrawnBeforeItWentOutItNeverDoes)
{
    Want("a");
    Pass(1000);
    policy.Withdraw(now);
    Pass(60000);
    EXPECT_EQ(published, "");
}

TEST_F(Policy, NothingGoesOutOffline)
{
    policy.OnStreamEnd(now);
    Want("a");
    Pass(60000);
    EXPECT_EQ(published, "");
    EXPECT_FALSE(policy.IsOut());
    policy.OnOnline();
    Pass(0);
    EXPECT_EQ(published, "[a]");
}

TEST_F(Policy, ItComesBackAfterALostStream)
{
    Want("a");
    Pass(20000);
    policy.OnStreamEnd(now);
    policy.OnOnline();
    Pass(0);
    EXPECT_EQ(published, "[a][a]");
}

TEST_F(Policy, ClearingHoldsUpNothing)
{
    policy.OnStreamEnd(now);
    policy.OnOnline();
    Take();
    Want("a");
    Pass(1500);
    EXPECT_EQ(published, "[][a]");
}

TEST_F(Policy, ATuneThatEndsTheStreamTwiceIsDropped)
{
    Want("a");
    Pass(1500);
    policy.OnStreamEnd(now);
    policy.OnOnline();
    Pass(3000);
    EXPECT_EQ(published, "[a][a]");
    policy.OnStreamEnd(now);
    policy.OnOnline();
    Pass(60000);
    EXPECT_EQ(published, "[a][a][]");
    Want("b");
    Pass(5000);
    EXPECT_EQ(published, "[a][a][][b]");
}

TEST_F(Policy, StreamsThatEndLaterAreNotItsFault)
{
    Want("a");
    for (int i = 0; i < 5; ++i) {
        Pass(5000 + 1500);
        policy.OnStreamEnd(now);
        policy.OnOnline();
    }
    Pass(0);
    EXPECT_EQ(published, "[a][a][a][a][a][a]");
}

TEST_F(Policy, OneFastEndIsForgivenByALateOne)
{
    Want("a");
    for (int i = 0; i < 3; ++i) {
        Pass(1500); // Published, and the stream ends at once …
        policy.OnStreamEnd(now);
        policy.OnOnline();
        Pass(10000); // … but not the one that follows.
        policy.OnStreamEnd(now);
        policy.OnOnline();
    }
    Pass(5000);
    EXPECT_TRUE(policy.IsOut());
}

TEST(ReconnectDelay, DoublesUpToAMinute)
{
    ReconnectDelay delay;
    for (const int wanted : {500, 1000, 2000, 4000, 8000, 16000, 32000, 60000, 60000})
        EXPECT_EQ(delay.Next(0.5).count(), wanted);
    delay.Reset();
    EXPECT_EQ(delay.Next(0.5).count(), 500);
}

TEST(ReconnectDelay, ChanceSpreadsItWithinAQuarter)
{
    EXPECT_EQ(ReconnectDelay().Next(0).count(), 375);
    EXPECT_EQ(ReconnectDelay().Next(1).count(), 625);
    ReconnectDelay delay;
    for (int i = 0; i < 20; ++i)
        EXPECT_LE(delay.Next(1).count(), 60000);
}

} // namespace

} // namespace kivo::test
