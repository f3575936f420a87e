#include "host/Playback.h"

#include "host/Terminal.h"
#include "platform/base/PostQueue.h"
#include "tests/host/Pipe.h"
#include "tests/support/NotingRemote.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <optional>
#include <utility>

namespace kivo::host {
namespace {

constexpr Playback::Rules kToTheEnd{false, true, false};
constexpr Playback::Rules kOffScreen{true, false, true};

class PlaybackTest : public testing::Test {
protected:
    void Start(const Playback::Rules& rules)
    {
        playback_.emplace(remote_, terminal_, rules, [this](int status) {
            EXPECT_FALSE(status_.has_value()) << "ended twice";
            status_ = status;
        });
        remote_.path = u"/m/a.mp3";
        playback_->Open({remote_.path});
        EXPECT_EQ(std::exchange(remote_.calls, {}), "open 1 and play ");
        PostQueue::Get().RunPending();
    }
    void Tell(std::initializer_list<int> states)
    {
        for (const int state : states) {
            remote_.Tell(state);
            PostQueue::Get().RunPending();
        }
    }

    test::NotingRemote remote_;
    Pipe pipe_;
    Terminal terminal_{pipe_.GetInput(), 0};
    std::optional<int> status_;
    std::optional<Playback> playback_;
};

TEST_F(PlaybackTest, EndsWithZeroOnceWhatPlayedHasComeToRest)
{
    Start(kToTheEnd);
    Tell({9, 3, 8}); // The next one is under way.
    EXPECT_FALSE(status_.has_value());
    remote_.isAtRest = true;
    Tell({1, 1});
    EXPECT_EQ(status_, 0);
    EXPECT_EQ(pipe_.Take(), "");
}

TEST_F(PlaybackTest, EndsWithOneWhenNothingPlayed)
{
    for (const Playback::Rules& rules : {kToTheEnd, kOffScreen}) {
        status_.reset();
        remote_.isAtRest = false;
        Start(rules);
        Tell({9});
        remote_.isAtRest = true;
        Tell({8});
        EXPECT_EQ(status_, 1);
        EXPECT_NE(
            pipe_.Take().find("kivo: /m/a.mp3 can't be played\nkivo: nothing could be played\n"),
            std::string::npos);
    }
}

TEST_F(PlaybackTest, AnEmptyFolderEndsWithoutAnyState)
{
    Start(kToTheEnd);
    EXPECT_FALSE(status_.has_value()); // It is still being looked through.
    remote_.isAtRest = true;
    Tell({-1});
    EXPECT_EQ(status_, 1);
}

TEST_F(PlaybackTest, NamesEachTrackThatFails)
{
    Start(kToTheEnd);
    Tell({9, 10}); // It isn't there.
    remote_.path = u"http://dead\x1b/";
    Tell({9, 8}); // It never began.
    remote_.path = u"/m/c.mp3";
    Tell({9, 3, 8}); // This is its end.
    EXPECT_EQ(pipe_.Take(),
              "kivo: /m/a.mp3 can't be played\nkivo: http://dead?/ can't be played\n");
}

TEST_F(PlaybackTest, OffScreenARunThatPlayedGoesOn)
{
    remote_.title = u"Tune";
    Start(kOffScreen);
    Tell({9, 3, 2});
    remote_.isAtRest = true;
    Tell({1});
    EXPECT_FALSE(status_.has_value());
    EXPECT_EQ(pipe_.Take(), "Opening: Tune\nPlaying: Tune\nPaused: Tune\n");
}

TEST_F(PlaybackTest, SettlesAtTheFirstSoundOrWhenThereIsNone)
{
    int settled = 0;
    for (const int last : {3, 8}) {
        Start({});
        playback_->SetSettledListener([&settled] { ++settled; });
        remote_.isAtRest = false;
        Tell({9});
        EXPECT_FALSE(playback_->HasSettled());
        remote_.isAtRest = last == 8;
        Tell({last, last});
        EXPECT_TRUE(playback_->HasSettled());
    }
    EXPECT_EQ(settled, 2);
}

TEST_F(PlaybackTest, ACheckThatIsStillQueuedOutlivesIt)
{
    Start(kToTheEnd);
    remote_.isAtRest = true;
    remote_.Tell(8);
    playback_.reset();
    EXPECT_TRUE(remote_.listeners.GetAll().empty());
    PostQueue::Get().RunPending();
    EXPECT_FALSE(status_.has_value());
}

struct StatusCase {
    int state;
    double position;
    double length;
    const char* line;
};

TEST(ComposeStatus, TellsWhatPlaysAndHowFar)
{
    const StatusCase cases[] = {
        {3, 5.9,   200,   "Playing: Tune  0:05 / 3:20"        },
        {2, 3601,  7325,  "Paused: Tune  1:00:01 / 2:02:05"   },
        {3, 65,    0.4,   "Playing: Tune  1:05"               }, // No known length.
        {6, -1,    200,   "Buffering: Tune"                   },
        {9, 5,     200,   "Opening: Tune"                     },
        {8, 5,     200,   ""                                  },
        {0, 0,     0,     ""                                  },
        {3, 1e300, 1e300, "Playing: Tune  99:59:59 / 99:59:59"},
    };
    for (const StatusCase& row : cases) {
        SCOPED_TRACE(row.line);
        EXPECT_EQ(ComposeStatus(row.state, u"Tune", row.position, row.length), row.line);
    }
}

} // namespace
} // namespace kivo::host
