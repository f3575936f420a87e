#include "host/sign/XmppStanzas.h"

#include "tests/host/sign/XmppText.h"
#include "tests/support/CaseName.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>

namespace kivo::test {

namespace {

using host::RosterItem;
using host::Tune;
using host::XmppElement;

struct Stanzas : testing::Test {
    XmppText text;
};

TEST_F(Stanzas, APublishedTuneIsForContactsOnly)
{
    Tune tune;
    tune.title = "A";
    tune.uri = "http://r.example/a";
    tune.isOurs = true;
    tune.kind = "video";
    const std::string wire = host::MakePublish(text.GetContext(), "1", tune).ToText();
    const XmppElement pubsub = text.Read(wire).Find("pubsub", "http://jabber.org/protocol/pubsub");
    EXPECT_EQ(pubsub.Find("publish").Get("node"), "http://jabber.org/protocol/tune");
    EXPECT_EQ(pubsub.Find("publish").Find("item").Get("id"), "current");
    EXPECT_NE(wire.find("access_model\"><value>presence</value>"), std::string::npos) << wire;
    EXPECT_NE(wire.find("kind=\"video\""), std::string::npos) << wire;
    const std::string empty = host::MakePublish(text.GetContext(), "1", Tune()).ToText();
    EXPECT_NE(empty.find("<tune xmlns=\"http://jabber.org/protocol/tune\"/>"), std::string::npos)
        << empty;
}

TEST_F(Stanzas, MessagesGoElsewhere)
{
    const std::string wire = host::MakePresence(text.GetContext()).ToText();
    const XmppElement presence = text.Read(wire);
    EXPECT_LT(host::ReadPriority(presence), 0);
    EXPECT_EQ(presence.Find("c").Get("ver").size(), 28U); // SHA-1 in base 64.
}

enum class Trust { Yes, No };

struct AnswerCase {
    const char* name;
    const char* head; // Of the request.
    const char* child;
    Trust trust;
    const char* answer; // Empty: none.
};

constexpr char kInfo[] = "<query xmlns='http://jabber.org/protocol/disco#info' node='n#v'/>";
constexpr char kList[] = "<query xmlns='jabber:iq:roster'/>";
constexpr char kPing[] = "<ping xmlns='urn:xmpp:ping'/>";
constexpr char kNo[] = "service-unavailable";

// A change of the contact list comes without `from`.
constexpr AnswerCase kAnswerCases[] = {
    {"ListChange", "id='1' type='set'",               kList,  Trust::Yes, "<iq id=\"1\" type"     },
    {"Ping",       "id='1' from='s' type='get'",      kPing,  Trust::Yes, "to=\"s\" type=\"result"},
    {"NoPing",     "id='1' from='e@s' type='get'",    kPing,  Trust::No,  kNo                     },
    {"Info",       "id='1' from='b@s' type='get'",    kInfo,  Trust::Yes, "tune+notify"           },
    {"InfosNode",  "id='1' from='b@s' type='get'",    kInfo,  Trust::Yes, "node=\"n#v\""          },
    {"NoInfo",     "id='1' from='e@s' type='get'",    kInfo,  Trust::No,  kNo                     },
    {"Unknown",    "id='1' from='b@s' type='get'",    "<x/>", Trust::Yes, kNo                     },
    {"SetInfo",    "id='1' from='b@s' type='set'",    kInfo,  Trust::Yes, kNo                     },
    {"NoChild",    "id='1' from='b@s' type='get'",    "",     Trust::Yes, kNo                     },
    {"NoId",       "from='b@s' type='get'",           "",     Trust::Yes, kNo                     },
    {"Result",     "id='1' from='b@s' type='result'", "",     Trust::Yes, ""                      },
    {"Error",      "id='1' from='b@s' type='error'",  "",     Trust::Yes, ""                      },
    {"NoType",     "id='1' from='b@s'",               "",     Trust::Yes, ""                      },
    {"OddType",    "id='1' type='see'",               "",     Trust::Yes, ""                      },
};

class AnswerTest : public testing::TestWithParam<AnswerCase> {};

TEST_P(AnswerTest, IsAnswered)
{
    const AnswerCase& row = GetParam();
    const std::string request = std::string("<iq ") + row.head + ">" + row.child + "</iq>";
    XmppText text;
    const auto answer =
        host::MakeAnswer(text.GetContext(), text.Read(request), row.trust == Trust::Yes);
    ASSERT_EQ(answer.has_value(), *row.answer != 0);
    if (answer) {
        EXPECT_NE(answer->ToText().find(row.answer), std::string::npos) << answer->ToText();
    }
}

INSTANTIATE_TEST_SUITE_P(Rows, AnswerTest, testing::ValuesIn(kAnswerCases), CaseName<AnswerCase>);

TEST_F(Stanzas, ATuneIsReadOutOfItsEvent)
{
    const std::string node = " node='http://jabber.org/protocol/tune'";
    const auto inItem = [](const std::string& inside, const std::string& space) {
        return "<item><tune xmlns='" + space + "'>" + inside + "</tune></item>";
    };
    const std::string space = "http://jabber.org/protocol/tune";
    const std::string a = inItem("<title>A</title>", space);
    const std::string b = inItem("<title>B</title>", space);
    struct Row {
        std::string inside; // Of <event>.
        std::optional<std::string> title;
    };
    const Row rows[] = {
        {"<items" + node + ">" + a + "</items>",     "A"                },
        {"<items" + node + ">" + a + b + "</items>", "B"                }, // The last.
        {"<items" + node + ">" + inItem("",          space) + "</items>", ""},
        {"<items" + node + "><retract/></items>",                                          ""                      },
        {"<purge" + node + "/>",                                          ""                 },
        {"<delete" + node + "/>",                                          ""                     },
        {"<items node='urn:x'>" + a + "</items>",                                          std::nullopt },
        {"<items" + node + ">" + inItem("<title>A</title>",                                          "urn:x") + "</items>",            std::nullopt},
        {"<items" + node + "/>",                              std::nullopt                                     },
        {"A", std::nullopt},
        {"",                              std::nullopt                                                                  },
    };
    for (const auto& [inside, title] : rows) {
        SCOPED_TRACE(inside);
        const auto event = host::ReadTuneEvent(text.Read(
            "<message from='b@s'><event xmlns='http://jabber.org/protocol/pubsub#event'>" + inside +
            "</event></message>"));
        ASSERT_EQ(event.has_value(), title.has_value());
        if (event) {
            EXPECT_EQ(event->from, "b@s");
            EXPECT_EQ(event->tune.title, title);
        }
    }
}

TEST_F(Stanzas, AContactListIsRead)
{
    const auto items = host::ReadRoster(text.Read(
        "<iq><query xmlns='jabber:iq:roster'><item jid='b@s' subscription='both' name='Bob'>"
        "<group>Friends</group></item><item jid='e@s/x' subscription='none' ask='subscribe'/>"
        "<item jid='c@s' subscription='remove'/>text<other/><item/></query></iq>"));
    ASSERT_TRUE(items);
    ASSERT_EQ(items->size(), 4U);
    EXPECT_EQ(items->at(0).name, "Bob");
    EXPECT_EQ(items->at(0).groups, std::vector<std::string>{"Friends"});
    EXPECT_EQ(items->at(0).subscription, RosterItem::Subscription::Both);
    EXPECT_EQ(items->at(1).id, "e@s");
    EXPECT_TRUE(items->at(1).isAsked);
    EXPECT_EQ(items->at(2).subscription, RosterItem::Subscription::Remove);
    EXPECT_FALSE(host::ReadRoster(text.Read("<iq type='error'/>")));
}

TEST_F(Stanzas, PresenceIsRead)
{
    struct Row {
        const char* inside;
        host::SignPresence presence;
        int priority;
    };
    constexpr Row kRows[] = {
        {"",                                           host::SignPresence::Online, 0   },
        {"<show>chat</show><priority>5</priority>",    host::SignPresence::Online, 5   },
        {"<show>away</show><priority>-1</priority>",   host::SignPresence::Away,   -1  },
        {"<show>xa</show><priority>x</priority>",      host::SignPresence::Away,   0   },
        {"<show>dnd</show><priority>99999</priority>", host::SignPresence::Busy,   127 },
        {"<show>?</show><priority>-999</priority>",    host::SignPresence::Online, -128},
    };
    for (const Row& row : kRows) {
        SCOPED_TRACE(row.inside);
        const XmppElement presence =
            text.Read("<presence>" + std::string(row.inside) + "</presence>");
        EXPECT_EQ(host::ReadPresence(presence), row.presence);
        EXPECT_EQ(host::ReadPriority(presence), row.priority);
    }
}

TEST_F(Stanzas, TheServersAbilitiesAndErrorsAreRead)
{
    const std::string head = "<iq><query xmlns='http://jabber.org/protocol/disco#info'>";
    EXPECT_TRUE(host::HasEventing(
        text.Read(head + "<identity category='pubsub' type='pep'/>"
                         "<feature var='http://jabber.org/protocol/pubsub#publish-options'/>"
                         "</query></iq>")));
    EXPECT_FALSE(host::HasEventing(
        text.Read(head + "<identity category='pubsub' type='pep'/></query></iq>")))
        << "it would not hold the tune back from strangers";
    EXPECT_FALSE(host::HasEventing(
        text.Read(head + "<identity category='server' type='im'/></query></iq>")));
    EXPECT_FALSE(host::HasEventing(text.Read("<iq type='error'/>")));
    const std::string stanzas = "xmlns='urn:ietf:params:xml:ns:xmpp-stanzas'/></error></iq>";
    EXPECT_TRUE(host::IsConflict(text.Read("<iq><error><conflict " + stanzas)));
    EXPECT_TRUE(host::IsConflict(
        text.Read("<iq><error><precondition-not-met "
                  "xmlns='http://jabber.org/protocol/pubsub#errors'/></error></iq>")));
    EXPECT_FALSE(host::IsConflict(text.Read("<iq><error><forbidden " + stanzas)));
}

} // namespace

} // namespace kivo::test
