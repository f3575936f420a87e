// The state machine of CPlayerPanel as one table. Each row claims what a state does; it is held
// after every road of up to three steps that the row speaks of, and so from every last state with
// every flag that can go with it.

#include "platform/base/TimerService.h"
#include "tests/player/BuiltPanel.h"
#include "tests/support/CaseName.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <limits>
#include <map>
#include <memory>
#include <set>
#include <sstream>
#include <string>
#include <vector>

namespace kivo::test {

namespace {

// All that shows of a panel, by aspect.
using Look = std::map<std::string, std::string>;

std::string GetTimers()
{
    const std::int64_t delay = TimerService::Get().GetNextDelay();
    if (delay < 0)
        return "none";
    return delay <= 100 ? "buffering" : "seconds";
}

std::string Join(const std::vector<int>& numbers)
{
    std::string text;
    for (const int number : numbers)
        text += (text.empty() ? "" : ",") + std::to_string(number);
    return text;
}

Look LookAt(BuiltPanel& built)
{
    const String line = built.GetStateLine();
    const std::string plainLine(line.begin(), line.end());
    const std::vector<String> calls = built.player.TakeCalls();
    const bool onlyStops = calls == std::vector<String>(calls.size(), u"stop");
    return {
        {"button",     built.IsShown(u"PlayBtn") ? "play" : "pause"         },
        {"bar",        built.Bar().IsLocked() ? "locked" : "open"           },
        {"range",      std::to_string(built.Bar().GetMaximum())             },
        {"position",   std::to_string(built.Bar().GetPosition())            },
        {"timer",      GetTimers()                                          },
        {"line",       plainLine                                            },
        {"height",     std::to_string(built.panel->GetHeight())             },
        {"sign",       built.host.signs.empty() ? "down" : "up"             },
        {"paused",     std::to_string(built.panel->GetPausedFlag())         },
        {"user-stop",  std::to_string(built.panel->GetUserStopMark())       },
        {"stops",      onlyStops ? std::to_string(calls.size()) : "and more"},
        {"posted",     std::to_string(built.host.CountPosted())             },
        {"pane-modes", Join(built.page.paneModes)                           },
    };
}

// How a panel came to where it is.
struct Road {
    std::string name;
    int last = 0; // The last state that is remembered.
    bool isPaused = false;
    bool isTransition = true; // Nothing has buffered since the last transition.
    bool hasLength = false;   // Of a track that has started freshly.
    Look look;

    [[nodiscard]] bool IsFresh() const { return last != 6 && !isPaused; }
};

struct Step {
    const char* name;
    int state;      // Or one of the two below.
    bool isAddress; // What the control has open.
};
constexpr int kTick = -1; // A tenth of a second passes.
constexpr int kStopButton = -2;

constexpr Step kSteps[] = {
    {"1",            1,           false},
    {"2",            2,           false},
    {"3",            3,           false},
    {"6",            6,           false},
    {"7",            7,           false},
    {"8",            8,           false},
    {"9",            9,           false},
    {"9 (address)",  9,           true },
    {"10",           10,          false},
    {"10 (address)", 10,          true },
    {"tick",         kTick,       false},
    {"stop button",  kStopButton, false},
};
constexpr std::size_t kLongestRoad = 3;

// What the control and the page answer while the claimed state is reported.
struct Answer {
    const char16_t* url = nullptr; // Null: a file that is there.
    double duration = 200.7;
    int width = 0;
    int height = 0;
    bool isPaneOpen = false;
    bool hasNext = false;
};

constexpr const char16_t* kGone = u"/nowhere/gone.mp3";
constexpr const char16_t* kHttp = u"http://127.0.0.1/radio";
constexpr const char16_t* kMms = u"mms://127.0.0.1/a";

constexpr Answer kSong;
constexpr Answer kSongBesidePane = {.isPaneOpen = true};
constexpr Answer kSongBeforeNext = {.hasNext = true};
constexpr Answer kOtherLength = {.duration = 999, .isPaneOpen = true};
constexpr Answer kMoment = {.duration = 0.4};
constexpr Answer kNoLength = {.duration = 0};
constexpr Answer kUnknownLength = {.duration = -1};
constexpr Answer kFilm = {.width = 64, .height = 48};
constexpr Answer kFilmInPane = {.width = 64, .height = 48, .isPaneOpen = true};
constexpr Answer kFlatFilm = {.width = 64};
constexpr Answer kGoneFile = {.url = kGone};
constexpr Answer kGoneFileBeforeNext = {.url = kGone, .hasNext = true};
constexpr Answer kRadio = {.url = kHttp, .duration = 0};
constexpr Answer kRadioBeforeNext = {.url = kHttp, .duration = 0, .hasNext = true};
constexpr Answer kMmsRadio = {.url = kMms, .duration = 0};
constexpr Answer kMmsFilm = {.url = kMms, .width = 64, .height = 48};
constexpr Answer kLoudMmsRadio = {.url = u"MMS://127.0.0.1/a", .duration = 0};
constexpr Answer kRtspRadio = {.url = u"rtsp://127.0.0.1/a", .duration = 0};

using Given = bool (*)(const Road&);

constexpr Given kAlways = [](const Road& /*road*/) { return true; };
constexpr Given kFresh = [](const Road& road) { return road.IsFresh(); };
constexpr Given kFreshUnbuffered = [](const Road& r) { return r.IsFresh() && r.isTransition; };
constexpr Given kFreshBuffered = [](const Road& r) { return r.IsFresh() && !r.isTransition; };
constexpr Given kGoesOn = [](const Road& r) { return !r.IsFresh() && r.hasLength; };
constexpr Given kGoesOnEndless = [](const Road& r) { return !r.IsFresh() && !r.hasLength; };
constexpr Given kBuffers = [](const Road& r) { return r.look.at("timer") == "buffering"; };
constexpr Given kBuffersNot = [](const Road& road) { return !kBuffers(road); };

struct Claim {
    const char* name;
    int state;
    Given given;
    Answer answer;
    const char* after; // Outcomes and single aspects; every other aspect stays as it was.
};

// What several states bring about.
const std::map<std::string, std::string> kOutcomes = {
    {"starts",    "button=pause bar=open line= height=60 sign=up paused=0"          },
    {"counted",   "range=200 position=0 timer=seconds"                              },
    {"uncounted", "range=0 position=0 timer=none"                                   },
    {"resets",    "bar=locked range=1 position=0 timer=none line= height=60 stops=1"},
    {"ends",      "resets button=play sign=down user-stop=0"                        },
};

constexpr int kLargest = std::numeric_limits<int>::max();

const Claim kClaims[] = {
    {"AStartTakesTheLength",                3,        kFresh,           kSong,               "starts counted"                    },
    {"LessThanASecondIsALength",            3,        kFresh,           kMoment,             "starts uncounted timer=seconds"    },
    {"AFileWithoutALengthIsStopped",        3,        kFresh,           kNoLength,           "button=pause resets"               },
    {"AnUnknownLengthIsNone",               3,        kFresh,           kUnknownLength,      "button=pause resets"               },
    {"AWebRadioThatNeverBufferedIsStopped", 3,        kFresh,           kRadio,              "button=pause resets"               },
    {"AStreamsSchemeIsInSmallLetters",      3,        kFresh,           kLoudMmsRadio,       "button=pause resets"               },
    {"AnMmsStreamPlaysUncounted",           3,        kFresh,           kMmsRadio,           "starts uncounted"                  },
    {"AnRtspStreamPlaysUncounted",          3,        kFresh,           kRtspRadio,          "starts uncounted"                  },
    {"AnOpenPaneTurnsToSound",              3,        kFresh,           kSongBesidePane,     "starts counted pane-modes=3"       },
    {"AFilesPictureOpensThePane",           3,        kFresh,           kFilm,               "starts counted pane-modes=4"       },
    {"AnOpenPaneTurnsToThePictureToo",      3,        kFresh,           kFilmInPane,         "starts counted pane-modes=3,4"     },
    {"APictureWithoutAHeightIsNone",        3,        kFresh,           kFlatFilm,           "starts counted"                    },
    {"AStreamsPictureWaitsForBuffering",    3,        kFreshUnbuffered, kMmsFilm,            "starts counted"                    },
    {"AndComesAfterIt",                     3,        kFreshBuffered,   kMmsFilm,            "starts counted pane-modes=4"       },
    {"WhatGoesOnKeepsItsLength",            3,        kGoesOn,          kOtherLength,        "starts timer=seconds"              },
    {"WhatGoesOnMayHaveNoLengthNow",        3,        kGoesOn,          kRadio,              "starts timer=seconds"              },
    {"WhatGoesOnShowsItsPicture",           3,        kGoesOn,          kFilm,               "starts timer=seconds pane-modes=4" },
    {"WithoutALengthNothingIsCounted",      3,        kGoesOnEndless,   kOtherLength,        "starts timer=none"                 },
    {"APauseEndsTheCounting",               2,        kBuffersNot,      kSong,               "button=play paused=1 timer=none"   },
    {"APauseLeavesTheBufferingTimer",       2,        kBuffers,         kSong,               "button=play paused=1"              },
    {"AnEndWithoutANextRests",              8,        kAlways,          kSong,               "ends"                              },
    {"AnEndPostsTheNext",                   8,        kAlways,          kSongBeforeNext,     "ends posted=1"                     },
    {"BufferingCountsOnlyItsProgress",      6,        kAlways,          kRadio,              "timer=buffering"                   },
    {"ATransitionOfAFileShowsNothing",      9,        kAlways,          kSong,               ""                                  },
    {"ATransitionOfAnAddressIsTold",        9,        kAlways,          kRadio,              "line=opening height=82"            },
    {"ReadyWithAFileIsNothing",             10,       kAlways,          kSongBeforeNext,     ""                                  },
    {"ReadyWithAnAddressEndsTheLine",       10,       kAlways,          kRadioBeforeNext,    "line= height=60"                   },
    {"ReadyWithoutTheFilePostsTheNext",     10,       kAlways,          kGoneFileBeforeNext, "posted=1"                          },
    {"ReadyWithoutFileOrNextIsNothing",     10,       kAlways,          kGoneFile,           ""                                  },
    {"AStopTakesSignAndPauseBack",          1,        kAlways,          kSong,               "line= height=60 sign=down paused=0"},
    {"NoStateIsNothing",                    0,        kAlways,          kSong,               ""                                  },
    {"ScanningIsNothing",                   4,        kAlways,          kSong,               ""                                  },
    {"WaitingIsNothing",                    7,        kAlways,          kRadio,              ""                                  },
    {"ReconnectingIsNothing",               11,       kAlways,          kRadio,              ""                                  },
    {"ANegativeStateIsNothing",             -1,       kAlways,          kSong,               ""                                  },
    {"TheLargestStateIsNothing",            kLargest, kAlways,          kSong,               ""                                  },
};

// "outcome aspect=value …" as a look.
Look Read(const std::string& text)
{
    Look look;
    std::istringstream words(text);
    for (std::string word; words >> word;) {
        const std::size_t equals = word.find('=');
        if (equals == std::string::npos)
            look.merge(Read(kOutcomes.at(word)));
        else
            look[word.substr(0, equals)] = word.substr(equals + 1);
    }
    return look;
}

std::string Describe(const Look& look)
{
    std::string text;
    for (const auto& [aspect, value] : look)
        text.append(aspect).append("=").append(value).append(" ");
    return text;
}

// Takes a panel of its own down every road.
class Traveller {
public:
    Traveller() { folder_.Write("a.mp3", "sound"); }

    void WalkAll(const std::function<void(const Road&)>& visit)
    {
        Walk();
        visit(road_);
        if (steps_.size() == kLongestRoad)
            return;
        for (const Step& step : kSteps) {
            steps_.push_back(&step);
            WalkAll(visit);
            steps_.pop_back();
        }
    }

    // The claimed state comes to the panel at the end of the road. Gives what shows then.
    [[nodiscard]] Look Report(const Claim& claim)
    {
        const Answer& answer = claim.answer;
        Open(answer.url);
        built_->player.duration = answer.duration;
        built_->player.width = answer.width;
        built_->player.height = answer.height;
        built_->page.paneVisible = answer.isPaneOpen;
        if (answer.hasNext)
            built_->page.rows = {folder_.GetPath("a.mp3")};
        built_->Report(claim.state);
        return LookAt(*built_);
    }

    // The panel goes, and no timer stays behind.
    void End()
    {
        built_->panel.reset();
        EXPECT_EQ(TimerService::Get().GetNextDelay(), -1);
    }

private:
    void Walk()
    {
        built_.reset();
        built_ = std::make_unique<BuiltPanel>();
        road_ = {};
        for (const Step* step : steps_)
            Take(*step);
        built_->player.calls.clear();
        road_.look = LookAt(*built_);
    }

    void Open(const char16_t* url)
    {
        built_->player.url = url != nullptr ? String(url) : folder_.GetPath("a.mp3");
    }

    void Take(const Step& step)
    {
        road_.name += std::string(step.name) + ", ";
        if (step.state == kTick)
            return built_->Pass(100);
        if (step.state == kStopButton)
            return built_->Press(u"StopBtn");
        Open(step.isAddress ? kHttp : nullptr);
        built_->player.duration = 100;
        built_->Report(step.state);
        road_.hasLength = road_.hasLength || (step.state == 3 && road_.IsFresh());
        if (step.state == 6 || step.state == 9)
            road_.isTransition = step.state == 9;
        if (step.state == 1 || step.state == 3)
            road_.isPaused = false;
        if (step.state == 2)
            road_.isPaused = true;
        if (step.state != 10 || !step.isAddress)
            road_.last = step.state;
    }

    TempFolder folder_;
    std::vector<const Step*> steps_;
    std::unique_ptr<BuiltPanel> built_;
    Road road_;
};

class PlayerStatesTest : public testing::TestWithParam<Claim> {};

TEST_P(PlayerStatesTest, HoldsAfterEveryRoad)
{
    const Claim& claim = GetParam();
    int held = 0;
    Traveller traveller;
    traveller.WalkAll([&](const Road& road) {
        if (!claim.given(road))
            return;
        Look expected = Read(claim.after);
        expected.insert(road.look.begin(), road.look.end());
        EXPECT_EQ(Describe(traveller.Report(claim)), Describe(expected)) << "after " << road.name;
        traveller.End();
        ++held;
    });
    EXPECT_GT(held, 0);
}

INSTANTIATE_TEST_SUITE_P(Claims, PlayerStatesTest, testing::ValuesIn(kClaims), CaseName<Claim>);

// The table has no hole: each state is claimed after every road.
TEST(PlayerStates, EachIsClaimedFromEveryLastStateWithEveryFlag)
{
    Traveller traveller;
    std::set<int> lasts;
    traveller.WalkAll([&](const Road& road) {
        lasts.insert(road.last);
        for (const int state : {1, 2, 3, 6, 8, 9, 10})
            EXPECT_TRUE(std::any_of(
                std::begin(kClaims),
                std::end(kClaims),
                [&](const Claim& row) { return row.state == state && row.given(road); }))
                << state << " after " << road.name;
    });
    EXPECT_EQ(lasts, (std::set<int>{0, 1, 2, 3, 6, 7, 8, 9, 10}));
}

} // namespace

} // namespace kivo::test
