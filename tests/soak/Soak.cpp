// kivo_soak MINUTES [SEED]: lets a restless hand loose on the real page with real files, and looks
// once a minute, with everything stopped and removed, whether memory, handles or threads have
// grown. Status 0: they have not; 1: they have; 2: usage.

#include "platform/base/HeapPools.h"
#include "shell/contracts/desktop/TuneHiveRemote.h"
#include "tests/page/Stage.h"
#include "tests/soak/Hand.h"

#include <malloc.h>
#include <QAbstractButton>
#include <QMessageBox>
#include <QTest>
#include <QTimer>

#include <algorithm>
#include <charconv>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

namespace kivo::test {
namespace {

using Clock = std::chrono::steady_clock;

// Under the sanitizers memory is theirs.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool kCountsMemory = false;
#else
constexpr bool kCountsMemory = true;
#endif

struct Usage {
    double residentMb = 0; // Without what is mapped from files.
    double heapMb = 0;     // Handed out and not given back.
    int handles = 0;
    int threads = 0;
};

int CountEntries(const char* folder)
{
    int count = 0;
    for ([[maybe_unused]] const auto& entry : std::filesystem::directory_iterator(folder))
        ++count;
    return count;
}

Usage GetUsage()
{
    malloc_trim(0); // What is free but kept says nothing of growth.
    Usage usage;
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);)
        if (line.starts_with("RssAnon:"))
            usage.residentMb = std::stod(line.substr(8)) / 1024;
    const struct mallinfo2 heap = mallinfo2();
    usage.heapMb = static_cast<double>(heap.uordblks + heap.hblkhd) / 1024 / 1024;
    usage.handles = CountEntries("/proc/self/fd");
    usage.threads = CountEntries("/proc/self/task");
    return usage;
}

// Ends menus, boxes and forms that the hand has opened, by a choice of its own or by Escape.
class Watch {
public:
    Watch()
    {
        QObject::connect(&timer_, &QTimer::timeout, &timer_, [this] { Look(); });
        timer_.start(60);
    }

private:
    void Look()
    {
        QWidget* const open = QApplication::activePopupWidget() != nullptr
                                  ? QApplication::activePopupWidget()
                                  : QApplication::activeModalWidget();
        if (open == nullptr)
            return;
        ++turn_;
        if (turn_ % 3 != 0) {
            QTest::keyClick(open, turn_ % 3 == 1 ? Qt::Key_Down : Qt::Key_Up);
            QTest::keyClick(open, Qt::Key_Return);
        } else {
            QTest::keyClick(open, Qt::Key_Escape);
        }
        if (QWidget* const still = QApplication::activeModalWidget();
            still == open && turn_ % 6 == 0)
            still->close();
    }

    QTimer timer_;
    int turn_ = 0;
};

std::vector<std::string> GetFiles()
{
    std::vector<std::string> files = {"/nowhere/gone.mp3"};
    for (const auto& entry : std::filesystem::directory_iterator(KIVO_TEST_MEDIA))
        if (entry.is_regular_file() && entry.path().extension() != ".h264" &&
            entry.path().filename() != ".done")
            files.push_back(entry.path());
    std::sort(files.begin(), files.end());
    return files;
}

void Print(double minutes, const Usage& usage)
{
    std::printf("%6.1f min: %7.1f MB resident, %7.1f MB of heap, %d handles, %d threads\n",
                minutes,
                usage.residentMb,
                usage.heapMb,
                usage.handles,
                usage.threads);
    std::fflush(stdout);
}

double GetMinutesSince(Clock::time_point start)
{
    return std::chrono::duration<double, std::ratio<60>>(Clock::now() - start).count();
}

// Brings everything to the same rest, so that two looks can be compared.
Usage ComeToRest(Stage& stage, Hand& hand)
{
    hand.CleanUp();
    stage.CloseAllModal();
    Stage::WaitUntil([&] { return stage.GetRemote().IsAtRest(); });
    Stage::Turn(1'000);
    return GetUsage();
}

// The first quarter warms up: caches fill and libraries load. Compared are the lowest looks of the
// quarter behind it and of the last: what has grown for good raises the floor.
bool HasGrown(const std::vector<Usage>& looks)
{
    const std::size_t part = std::max<std::size_t>(1, looks.size() / 4);
    const auto lowest = [&](std::size_t from, auto field) {
        double value = looks[from].*field;
        for (std::size_t i = from; i < std::min(from + part, looks.size()); ++i)
            value = std::min(value, static_cast<double>(looks[i].*field));
        return value;
    };
    const auto growth = [&](auto field) {
        return lowest(looks.size() - part, field) - lowest(std::min(part, looks.size() - 1), field);
    };
    std::printf("figure soak_heap_growth %.1f MB\n", growth(&Usage::heapMb));
    std::printf("figure soak_resident_growth %.1f MB\n", growth(&Usage::residentMb));
    std::printf("figure soak_handle_growth %.0f handles\n", growth(&Usage::handles));
    std::printf("figure soak_thread_growth %.0f threads\n", growth(&Usage::threads));
    constexpr double kMostHeap = 3;
    constexpr double kMostResident = 24; // Pages that the allocator keeps come and go.
    return (kCountsMemory &&
            (growth(&Usage::heapMb) > kMostHeap || growth(&Usage::residentMb) > kMostResident)) ||
           growth(&Usage::handles) > 2 || growth(&Usage::threads) > 2;
}

int Run(double minutes, unsigned seed)
{
    SetUpFonts("DejaVu Sans", /*scale=*/1);
    Stage stage(Look(), {}, 420, 760);
    Hand hand(stage, GetFiles(), std::string(KIVO_TEST_MEDIA) + "hls", seed);
    const Watch watch;
    const Clock::time_point start = Clock::now();
    std::vector<Usage> looks;
    std::mt19937 chance(seed);
    const double period = std::min(1.0, minutes / 8);
    while (GetMinutesSince(start) < minutes) {
        hand.Act();
        Stage::Turn(static_cast<int>(20 + chance() % 300));
        if (GetMinutesSince(start) < period * static_cast<double>(looks.size() + 1))
            continue;
        looks.push_back(ComeToRest(stage, hand));
        Print(GetMinutesSince(start), looks.back());
    }
    int deeds = 0;
    for (const Hand::Count& count : hand.GetCounts()) {
        std::printf("%6d x %s\n", count.times, count.name);
        deeds += count.times;
    }
    std::printf("figure soak_deeds %d deeds\n", deeds);
    return looks.empty() || HasGrown(looks) ? 1 : 0;
}

} // namespace
} // namespace kivo::test

int main(int argc, char** argv)
{
    double minutes = 0;
    unsigned seed = 1;
    const auto read = [&](int i, auto& number) {
        const std::string text = argv[i];
        return std::from_chars(text.data(), text.data() + text.size(), number).ec == std::errc();
    };
    if (argc < 2 || !read(1, minutes) || minutes <= 0 || (argc > 2 && !read(2, seed))) {
        std::fputs("usage: kivo_soak MINUTES [SEED]\n", stderr);
        return 2;
    }
    kivo::LimitHeapPools(); // As the program does.
    qputenv("QT_QPA_PLATFORM", "offscreen");
    int count = 1;
    const QApplication application(count, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    return kivo::test::Run(minutes, seed);
}
