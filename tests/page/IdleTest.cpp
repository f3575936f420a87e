// A program that plays nothing has to let the machine sleep.

#include "shell/contracts/common/Text.h"
#include "shell/contracts/desktop/TuneHiveRemote.h"
#include "tests/page/Stage.h"

#include <gtest/gtest.h>
#include <QEventLoop>
#include <QTimer>

#include <filesystem>
#include <fstream>
#include <string>

namespace kivo::test {
namespace {

// How often the threads of the process have gone to sleep, and so were woken.
long CountWakeUps()
{
    constexpr std::string_view kName = "voluntary_ctxt_switches:";
    long count = 0;
    for (const auto& task : std::filesystem::directory_iterator("/proc/self/task")) {
        std::ifstream status(task.path() / "status");
        for (std::string line; std::getline(status, line);)
            if (line.starts_with(kName))
                count += std::stol(line.substr(kName.size()));
    }
    return count;
}

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
    Stage stage(Look(), {}, 420, 760);
    ITuneHiveRemote& remote = stage.GetRemote();
    for (const char* file : {"long.mp3", "long.mp4"}) {
        SCOPED_TRACE(file);
        remote.Open({common::PathToText(std::string(KIVO_TEST_MEDIA) + file)},
                    u"playing",
                    /*playFirst=*/true);
        ASSERT_TRUE(Stage::WaitUntil([&] { return remote.GetState() == 3; }));
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
