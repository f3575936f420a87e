#include "host/sign/XmppRoster.h"

#include "shell/contracts/common/Text.h"
#include "tests/host/NotingSigns.h"
#include "tests/support/CaseName.h"

#include <gtest/gtest.h>

#include <map>
#include <sstream>
#include <string>

namespace kivo::test {

namespace {

using host::SignPresence;
using Subscription = host::RosterItem::Subscription;

host::RosterItem MakeItem(const std::string& id, Subscription subscription)
{
    return {id, "", subscription, false, {}};
}

// A contact list with bob in it, who is seen and sees.
struct Roster {
    Roster()
    {
        roster.SetItems({MakeItem("bob@s", Subscription::Both)});
        page.Take();
    }

    // A step as the server sends it: "item eve@s from", "list carol@s to", "there bob@s/a busy 5",
    // "left bob@s/a", "tune bob@s song" (no title: none), "offline".
    void Do(const std::string& step)
    {
        static const std::map<std::string, Subscription> subscriptions{
            {"none",   Subscription::None  },
            {"to",     Subscription::To    },
            {"from",   Subscription::From  },
            {"remove", Subscription::Remove},
        };
        static const std::map<std::string, SignPresence> presences{
            {"online", SignPresence::Online},
            {"away",   SignPresence::Away  },
            {"busy",   SignPresence::Busy  },
        };
        std::istringstream words(step);
        std::string what;
        std::string who;
        std::string how;
        int priority = 0;
        words >> what >> who >> how >> priority;
        if (what == "item")
            roster.SetItem(MakeItem(who, subscriptions.at(how)));
        else if (what == "list")
            roster.SetItems({MakeItem(who, subscriptions.at(how))});
        else if (what == "there")
            roster.OnPresence(who, presences.at(how), priority);
        else if (what == "left")
            roster.OnPresence(who, std::nullopt, 0);
        else if (what == "tune" && how.empty())
            roster.OnTune(who, std::nullopt);
        else if (what == "tune")
            roster.OnTune(who, host::Sign{u"music", common::utf8_to_CString(how), {}});
        else
            roster.GoOffline();
    }

    NotingSigns page;
    host::XmppRoster roster{page};
};

struct Story {
    const char* name;
    std::vector<const char*> steps;
    const char* heard;
};

const Story kStories[] = {
    {"AContactComesAndGoes",
     {"there bob@s/a online", "there bob@s/a away", "there bob@s/a away", "left bob@s/a"},
     "bob online. bob away. bob offline. "                                                                                           },
    {"TheDeviceWithTheHighestPriorityIsShown",
     {"there bob@s/phone busy 5", "there bob@s/kivo online -1", "left bob@s/phone"},
     "bob busy. bob online. "                                                                                                        },
    {"ATuneBeforePresenceWaitsForIt",
     {"tune bob@s song", "there bob@s/a online"},
     "bob online. bob plays music song. "                                                                                            },
    {"ASignGoesWithItsOwnerAndComesBackWithHim",
     {"there bob@s/a online", "tune bob@s song", "left bob@s/a", "there bob@s/a away"},
     "bob online. bob plays music song. bob plays nothing. bob offline. "
     "bob away. bob plays music song. "                                                                                              },
    {"ATuneOfNothingTakesItAway",
     {"there bob@s/a online", "tune bob@s song", "tune bob@s", "tune bob@s"},
     "bob online. bob plays music song. bob plays nothing. "                                                                         },
    {"WhoDoesNotLetTheUserSeeIsNotHeard",
     {"item eve@s none",
      "there eve@s/a online",
      "tune eve@s forged",
      "item eve@s from",
      "there eve@s/a online",
      "tune eve@s forged"},
     "eve offline. eve offline. "                                                                                                    },
    {"AStrangerIsNotHeard",                                {"there eve@s/a online", "tune eve@s forged"}, ""                         },
    {"ADeviceDoesNotSpeakForTheContact",
     {"there bob@s/a online", "tune bob@s/a forged"},
     "bob online. "                                                                                                                  },
    {"WhoMayNoLongerBeSeenIsOfflineWithoutASign",
     {"there bob@s/a online", "tune bob@s song", "item bob@s from"},
     "bob online. bob plays music song. bob plays nothing. bob offline. "                                                            },
    {"ALostStreamTakesAllOfflineAndWhatTheyPlayComesAnew",
     {"there bob@s/a online", "tune bob@s song", "offline", "there bob@s/a online"},
     "bob online. bob plays music song. bob plays nothing. bob offline. bob online. "                                                },
    {"ANewListReplacesTheOldOne",                          {"list carol@s to"},                           "bob gone. carol offline. "},
    {"WhoIsTakenOffTheListIsGone",                         {"item bob@s remove", "item dave@s remove"},   "bob gone. "               },
    {"UnfitAddressesAreLeftOut",                           {"item e\xE2\x80\xAEve@s to", "item s to"},    ""                         },
};

class RosterTest : public testing::TestWithParam<Story> {};

TEST_P(RosterTest, IsHeard)
{
    Roster roster;
    for (const char* const step : GetParam().steps)
        roster.Do(step);
    EXPECT_EQ(roster.page.Take(), GetParam().heard);
}

INSTANTIATE_TEST_SUITE_P(Stories, RosterTest, testing::ValuesIn(kStories), CaseName<Story>);

TEST(RosterOfMany, CleansNamesAndIsBoundedHoweverMuchComes)
{
    Roster roster;
    roster.roster.SetItem({"bob@s", "\xE2\x80\xAE Bob\n", Subscription::Both, false, {}});
    EXPECT_EQ(roster.page.names.back(), u"Bob");
    roster.page.Take();
    for (int i = 0; i < 1000; ++i)
        roster.Do("there bob@s/" + std::to_string(i) + " online");
    for (int i = 0; i < 32; ++i)
        roster.Do("left bob@s/" + std::to_string(i));
    EXPECT_EQ(roster.page.Take(), "bob online. bob offline. ");
    roster.page.names.clear();
    for (int i = 0; i < 4000; ++i)
        roster.roster.SetItem(MakeItem(std::to_string(i) + "@s", Subscription::Both));
    EXPECT_EQ(roster.page.names.size(), 3000U - 1);
}

} // namespace

} // namespace kivo::test
