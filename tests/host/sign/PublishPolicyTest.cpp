#include "host/sign/PublishPolicy.h"

#include "host/sign/ReconnectDelay.h"
#include "tests/support/CaseName.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>

namespace kivo::test {

namespace {

using host::PublishPolicy;
using host::ReconnectDelay;
using host::Tune;
using std::chrono::milliseconds;

// A policy that is online, with a clock that the test turns; what it gives is kept.
struct Policy {
    Policy() { Do("online 0"); } // What a crash has left is cleared.

    // Steps: a number of milliseconds passes; "play a", "stop", "withdraw"; "online", "lost" (the
    // stream) and "again", both at once.
    void Do(const std::string& steps)
    {
        std::istringstream words(steps);
        for (std::string word; words >> word;) {
            if (word == "play") {
                Tune tune;
                words >> tune.title;
                policy.Want(tune, now);
            } else if (word == "stop") {
                policy.Want({}, now);
            } else if (word == "withdraw") {
                policy.Withdraw(now);
            }
            if (word == "lost" || word == "again")
                policy.OnStreamEnd(now);
            if (word == "online" || word == "again")
                policy.OnOnline();
            if (word.front() >= '0' && word.front() <= '9')
                Pass(milliseconds(std::stoi(word)));
        }
    }
    void Pass(milliseconds time)
    {
        const auto end = now + time;
        for (auto due = policy.GetDue(); due && *due <= end; due = policy.GetDue()) {
            now = std::max(now, *due);
            published += "[" + policy.Take(now).value().title + "]";
        }
        now = end;
    }

    PublishPolicy policy;
    PublishPolicy::Time now{std::chrono::hours(1)};
    std::string published;
};

struct Story {
    const char* name;
    const char* steps;
    const char* published; // The first empty one is that of the sign-in.
    bool isOut;
};

constexpr Story kStories[] = {
    {"NotBeforeItHasBeenQuiet",         "play a 1499",                                    "[]",                   false},
    {"OnceItHasBeenQuiet",              "play a 1500 60000",                              "[][a]",                true },
    {"NeverSoonAfterTheOneBefore",      "play a 1500 play b 2999",                        "[][a]",                true },
    {"SoonEnoughAfterTheOneBefore",     "play a 1500 play b 3000",                        "[][a][b]",             true },
    {"WhatIsOutIsNotSentAgain",         "play a 5000 play b play a 5000",                 "[][a]",                true },
    {"StopTakesItAway",                 "play a 5000 stop 5000",                          "[][a][]",              false},
    {"WithdrawnItGoesAtOnce",           "play a 1500 withdraw 0",                         "[][a][]",              false},
    {"WithdrawnInTimeItNeverGoesOut",   "play a 1000 withdraw 60000",                     "[]",                   false},
    {"NothingGoesOutOffline",           "lost play a 60000",                              "[]",                   false},
    {"OnlineAgainItGoesOut",            "lost play a 60000 online 0",                     "[][a]",                true },
    {"ItComesBackAfterALostStream",     "play a 20000 again 0",                           "[][a][a]",             true },
    {"ClearingHoldsUpNothing",          "again 0 play a 1500",                            "[][][a]",              true },
    {"ATuneThatEndsTheStreamIsDropped", "play a 1500 again 3000 again 60000",             "[][a][a][]",           false},
    {"FailedAttemptsAreNotItsFault",
     "play a 1500 lost lost lost 9000 online 60000",                                      "[][a][a]",
     true                                                                                                              },
    {"TheNextOneGoesOut",               "play a 1500 again 3000 again 60000 play b 5000", "[][a][a][][b]",        true },
    {"LateEndsAreNotItsFault",          "play a 6500 again 6500 again 6500 again 0",      "[][a][a][a][a]",       true },
    {"AFastEndIsForgivenByALateOne",
     "play a 1500 again 9000 again 1500 again 9000 again 1500 again 9000",                "[][a][a][a][a][a][a]",
     true                                                                                                              },
};

class PolicyTest : public testing::TestWithParam<Story> {};

TEST_P(PolicyTest, Publishes)
{
    Policy policy;
    policy.Do(GetParam().steps);
    EXPECT_EQ(policy.published, GetParam().published);
    EXPECT_EQ(policy.policy.IsOut(), GetParam().isOut);
}

INSTANTIATE_TEST_SUITE_P(Stories, PolicyTest, testing::ValuesIn(kStories), CaseName<Story>);

TEST(PublishPolicy, TheLastOfFiftyInFiveSecondsWins)
{
    Policy policy;
    for (int i = 0; i < 50; ++i)
        policy.Do("stop play " + std::to_string(i) + " 100");
    policy.Do("5000");
    EXPECT_EQ(policy.published, "[][49]");
}

TEST(ReconnectDelay, DoublesUpToAMinuteAndSpreadsWithinAQuarter)
{
    ReconnectDelay delay;
    for (const int wanted : {500, 1000, 2000, 4000, 8000, 16000, 32000, 60000, 60000})
        EXPECT_EQ(delay.Next(0.5).count(), wanted);
    EXPECT_LE(delay.Next(1).count(), 60000);
    delay.Reset();
    EXPECT_EQ(delay.Next(0).count(), 375);
    delay.Reset();
    EXPECT_EQ(delay.Next(1).count(), 625);
}

} // namespace

} // namespace kivo::test
