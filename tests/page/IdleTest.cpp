// A program that plays nothing has to let the machine sleep.

#include "shell/contracts/desktop/TuneHiveRemote.h"
#include "tests/page/Stage.h"
#include "tests/support/Threads.h"

#include <gtest/gtest.h>
#include <QEventLoop>
#include <QTimer>

#include <string>

namespace kivo::test {
namespace {

// Sleeps until something happens, as the program does.
void Rest(int milliseconds)
{
    QEventLoop loop;
    QTimer::singleShot(milliseconds, &loop, &QEventLoop::quit);
    loop.exec();
}

double CountWakeUpsASecond()
{
    constexpr int kSettleMs = 2'000;
    constexpr int kMeasuredMs = 4'000;
    Rest(kSettleMs);
    const long before = CountWakeUps();
    Rest(kMeasuredMs);
    return 1000.0 * static_cast<double>(CountWakeUps() - before) / kMeasuredMs;
}

TEST(Idle, PausedOrStoppedTheProgramSleeps)
{
    const Stage stage(Look(), {}, 420, 760);
    ITuneHiveRemote& remote = stage.GetRemote();
    for (const char* file : {"long.mp3", "long.mp4"}) {
        SCOPED_TRACE(file);
        ASSERT_TRUE(stage.Play({std::string(KIVO_TEST_MEDIA) + file}));
        remote.Pause();
        ASSERT_TRUE(Stage::WaitUntil([&] { return remote.GetState() == 2; }));
        EXPECT_LE(CountWakeUpsASecond(), 2) << "paused";
        remote.Stop();
        ASSERT_TRUE(Stage::WaitUntil([&] { return remote.GetState() == 1; }));
        EXPECT_LE(CountWakeUpsASecond(), 2) << "stopped";
    }
}

} // namespace
} // namespace kivo::test
