#include "platform/engine/Address.h"
#include "platform/engine/MediaFacts.h"
#include "platform/engine/StateQueue.h"
#include "platform/engine/TimeText.h"
#include "platform/engine/Watchdog.h"
#include "tests/support/CaseName.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>
#include <vector>

namespace kivo::test {

namespace {

std::string TakeAll(StateQueue& queue)
{
    std::string trace;
    while (const auto state = queue.Take())
        trace += (trace.empty() ? "" : " ") + std::to_string(static_cast<int>(*state));
    return trace;
}

TEST(StateQueue, NoStateComesTwiceInARow)
{
    StateQueue queue;
    queue.Push(EngineState::Transitioning);
    queue.Push(EngineState::Buffering);
    queue.Push(EngineState::Buffering);
    EXPECT_EQ(TakeAll(queue), "9 6");
    queue.Push(EngineState::Buffering);
    EXPECT_TRUE(queue.IsEmpty());
}

TEST(StateQueue, ADropKeepsOneStopUnlessItWasDelivered)
{
    StateQueue queue;
    for (const EngineState state : {EngineState::Transitioning,
                                    EngineState::Playing,
                                    EngineState::Stopped,
                                    EngineState::Transitioning})
        queue.Push(state);
    queue.Drop();
    EXPECT_EQ(TakeAll(queue), "1");
    queue.Push(EngineState::Transitioning);
    queue.Push(EngineState::Stopped);
    queue.Drop();
    EXPECT_EQ(TakeAll(queue), "");
}

TEST(StateQueue, KnowsWhetherSomethingIsUnderWay)
{
    for (const int state : {2, 3, 6, 7, 9, 1, 8, 10}) {
        SCOPED_TRACE(state);
        StateQueue queue;
        EXPECT_FALSE(queue.EndsActive());
        queue.Push(static_cast<EngineState>(state));
        EXPECT_EQ(queue.EndsActive(), state != 1 && state != 8 && state != 10);
        static_cast<void>(queue.Take());
        EXPECT_EQ(queue.EndsActive(), state != 1 && state != 8 && state != 10);
    }
}

struct WatchCase {
    const char* name;
    Watchdog::Phase phase;
    int standing; // Milliseconds without progress.
    int patience;
    Watchdog::Verdict verdict;
};

using Phase = Watchdog::Phase;
using Verdict = Watchdog::Verdict;

constexpr WatchCase kWatchCases[] = {
    {"MovesStill",     Phase::Playing,   1'000,   0,     Verdict::Fine   },
    {"Stalls",         Phase::Playing,   1'500,   0,     Verdict::Stalled},
    {"StallsOn",       Phase::Playing,   6'000,   0,     Verdict::Stalled},
    {"Dies",           Phase::Playing,   6'500,   0,     Verdict::Dead   },
    {"ASlideStands",   Phase::Playing,   5'000,   4'000, Verdict::Fine   },
    {"ASlideStalls",   Phase::Playing,   5'500,   4'000, Verdict::Stalled},
    {"BuffersLong",    Phase::Buffering, 44'500,  0,     Verdict::Fine   },
    {"BuffersTooLong", Phase::Buffering, 45'000,  0,     Verdict::Dead   },
    {"OpensLong",      Phase::Opening,   44'500,  0,     Verdict::Fine   },
    {"NeverOpens",     Phase::Opening,   45'000,  0,     Verdict::Dead   },
    {"PausedForEver",  Phase::Resting,   900'000, 0,     Verdict::Fine   },
};

class WatchdogTest : public testing::TestWithParam<WatchCase> {};

TEST_P(WatchdogTest, Judges)
{
    const WatchCase& row = GetParam();
    Watchdog dog;
    dog.SetPatience(row.patience);
    dog.Restart(1'000);
    Verdict verdict = dog.Check(1'000, row.phase);
    for (int passed = 500; passed <= row.standing; passed += 500)
        verdict = dog.Check(1'000 + passed, row.phase);
    EXPECT_EQ(verdict, row.verdict);
    dog.NoteProgress(1'000 + row.standing);
    EXPECT_EQ(dog.Check(1'500 + row.standing, row.phase), Verdict::Fine);
}

INSTANTIATE_TEST_SUITE_P(Parts, WatchdogTest, testing::ValuesIn(kWatchCases), CaseName<WatchCase>);

TEST(Watchdog, AProcessThatWasStoppedItselfWaitsAnew)
{
    Watchdog dog;
    dog.Restart(0);
    EXPECT_EQ(dog.Check(500, Phase::Playing), Verdict::Fine);
    EXPECT_EQ(dog.Check(60'000, Phase::Playing), Verdict::Fine);
    EXPECT_EQ(dog.Check(61'500, Phase::Playing), Verdict::Stalled);
}

TEST(Watchdog, AChangeOfPhaseWaitsAnew)
{
    Watchdog dog;
    dog.Restart(0);
    EXPECT_EQ(dog.Check(1'400, Phase::Buffering), Verdict::Fine);
    EXPECT_EQ(dog.Check(2'800, Phase::Playing), Verdict::Fine);
    EXPECT_EQ(dog.Check(4'300, Phase::Playing), Verdict::Stalled);
}

struct AddressCase {
    const char* name;
    const char16_t* url;
    AddressKind kind;
    const char* target;
};

constexpr AddressCase kAddresses[] = {
    {"Http",         u"http://h/a%20b?c#d",  AddressKind::Network,     "http://h/a%20b?c#d"},
    {"UpperCase",    u"HTTPS://Host/A",      AddressKind::Network,     "https://Host/A"    },
    {"Mms",          u"MMS://h/a",           AddressKind::Network,     "mms://h/a"         },
    {"Rtsp",         u"rtsp://h/a",          AddressKind::Network,     "rtsp://h/a"        },
    {"File",         u"file:///etc/passwd",  AddressKind::NotPlayable, ""                  },
    {"NoSuchScheme", u"httpx://h/",          AddressKind::NotPlayable, ""                  },
    {"Newline",      u"http://h/a\nb",       AddressKind::NotPlayable, ""                  },
    {"DriveLetter",  u"c://x",               AddressKind::Missing,     ""                  },
    {"Nowhere",      u"/nowhere/at/all.mp3", AddressKind::Missing,     ""                  },
    {"Folder",       u"/usr",                AddressKind::NotPlayable, ""                  },
    {"Device",       u"/dev/zero",           AddressKind::NotPlayable, ""                  },
    {"Empty",        u"",                    AddressKind::Missing,     ""                  },
    {"TooLong",      nullptr,                AddressKind::NotPlayable, ""                  },
};

class AddressTest : public testing::TestWithParam<AddressCase> {};

TEST_P(AddressTest, IsClassified)
{
    const AddressCase& row = GetParam();
    const String url = row.url != nullptr ? String(row.url) : u"/" + String(100'000, u'a');
    const Address address = ClassifyAddress(url);
    EXPECT_EQ(address.kind, row.kind);
    EXPECT_EQ(address.target, row.target);
}

INSTANTIATE_TEST_SUITE_P(Parts, AddressTest, testing::ValuesIn(kAddresses), CaseName<AddressCase>);

TEST(TimeText, ReadsLikeAClock)
{
    struct Row {
        double seconds;
        const char16_t* text;
    };
    for (const Row& row : {
             Row{0,                                       u"0:00"        },
             Row{9.99,                                    u"0:09"        },
             Row{61,                                      u"1:01"        },
             Row{3599.9,                                  u"59:59"       },
             Row{3600,                                    u"1:00:00"     },
             Row{36'061,                                  u"10:01:01"    },
             Row{-5,                                      u"0:00"        },
             Row{std::nan(""),                            u"0:00"        },
             Row{std::numeric_limits<double>::infinity(), u"277777:46:40"}
    }) {
        SCOPED_TRACE(row.seconds);
        EXPECT_EQ(FormatTime(row.seconds), row.text);
    }
}

TEST(TimeText, TextsOfStrangersAreBounded)
{
    EXPECT_EQ(BoundText("a\x01\tb\x7F\xC2\x85"
                        "c"),
              u"abc");
    EXPECT_EQ(BoundText(std::string(5'000, 'x')).size(), 1'024U);
    std::string wide = "x";
    for (int i = 0; i < 600; ++i)
        wide += "\xF0\x9F\x8E\xB5";
    const String bounded = BoundText(wide);
    EXPECT_EQ(bounded.size(), 1'023U) << "No half of a pair is left at the end.";
}

TEST(MediaFacts, ALengthIsToldOnlyWhereItIsSure)
{
    struct Row {
        const char* name = nullptr;
        MediaFacts facts;
        bool isNetwork = false;
        double length = 0;
    };
    MediaFacts whole;
    whole.duration = 12;
    whole.seekable = true;
    MediaFacts part = whole;
    part.partiallySeekable = true;
    MediaFacts stuck = whole;
    stuck.seekable = false;
    for (const Row& row : {
             Row{"File",                 whole, false, 12 },
             Row{"FileThatCannotSeek",   stuck, false, 12 },
             Row{"FileWithout",          {},    false, 0.4},
             Row{"Server",               whole, true,  12 },
             Row{"Radio",                part,  true,  0  },
             Row{"ServerThatCannotSeek", stuck, true,  0  }
    }) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(GetTellableLength(row.facts, row.isNetwork), row.length);
    }
}

} // namespace

} // namespace kivo::test
