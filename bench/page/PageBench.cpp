#include "bench/support/BareCore.h"
#include "shell/contracts/common/Text.h"
#include "shell/contracts/desktop/TuneHiveRemote.h"
#include "tests/page/Stage.h"
#include "tests/support/TempFolder.h"

#include <QDropEvent>
#include <QEventLoop>
#include <QMimeData>
#include <QTest>
#include <QTimer>
#include <QUrl>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <iterator>
#include <string>

// What a user feels of the whole page: how soon a double click sounds, what playing costs, and how
// the window answers while ten thousand files come in.
namespace kivo::bench {
namespace {

constexpr int kPlaying = 3;
constexpr int kClicks = 21;
constexpr int kFiles = 10'000;
constexpr int kFilesInFolder = 100;
constexpr int kRounds = 3;
constexpr int kPlayedMs = 8'000;
constexpr int kMostImportMs = 240'000;

// The event loop as the program runs it, for a time or until it is so.
void Run(int milliseconds, const std::function<bool()>& isDone = {})
{
    QEventLoop loop;
    QTimer::singleShot(milliseconds, &loop, &QEventLoop::quit);
    QTimer look;
    if (isDone) {
        QObject::connect(&look, &QTimer::timeout, &loop, [&] {
            if (isDone())
                loop.quit();
        });
        look.start(1);
    }
    loop.exec();
}

// A program of its own with the page in it, in a process of a phase.
class Page {
public:
    explicit Page(const std::vector<test::StageGroup>& groups)
        : application_(argc_, argv_)
        , stage(MakeLook(), groups, 420, 700)
        , remote(stage.GetRemote())
    {
    }

private:
    static test::Look MakeLook()
    {
        test::SetUpFonts("DejaVu Sans", /*scale=*/1);
        return {};
    }

    int argc_ = 1;
    char name_[11] = "page_bench";
    char* argv_[2] = {name_, nullptr};
    QApplication application_;

public:
    test::Stage stage;
    ITuneHiveRemote& remote;
};

// Milliseconds from a double click on a row to the start of its sound.
Numbers ClickRows(const std::string& song)
{
    const Page page({
        {"mine", "", {{song, "The Song"}}}
    });
    page.stage.GetTree().expandAll();
    Run(300);
    Numbers waits;
    for (int i = 0; i < kClicks; ++i) {
        const QPoint place = page.stage.PlaceOf(QStringLiteral("The Song"));
        QWidget* const rows = page.stage.GetTree().viewport();
        const double start = GetSeconds();
        QTest::mouseDClick(rows, Qt::LeftButton, {}, place);
        Run(10'000, [&] { return page.remote.GetState() == kPlaying; });
        waits.push_back(1000 * (GetSeconds() - start));
        page.remote.Stop();
        Run(100);
    }
    return waits;
}

Numbers LoadBare(const std::string& song)
{
    BareCore core;
    Numbers waits;
    for (int i = 0; i < kClicks; ++i) {
        waits.push_back(1000 * core.Play(song));
        core.Stop();
    }
    return waits;
}

// Processor seconds of some seconds of a song.
Numbers PlayOnPage(const std::string& song)
{
    const Page page({});
    page.remote.Open({common::PathToText(song)}, u"playing", /*playFirst=*/true);
    Run(10'000, [&] { return page.remote.GetState() == kPlaying; });
    Run(2'000);
    const double before = GetCpuSeconds();
    Run(kPlayedMs);
    return {GetCpuSeconds() - before};
}

Numbers PlayBare(const std::string& song)
{
    BareCore core;
    core.Play(song);
    core.Pass(2);
    const double before = GetCpuSeconds();
    core.Pass(kPlayedMs / 1000.0);
    return {GetCpuSeconds() - before};
}

// The longest time for which the window could not answer: by the clock, to which others on the
// machine add theirs, and by what this thread worked meanwhile.
struct Gaps {
    double wall = 0; // Milliseconds.
    double work = 0;
};

class GapWatch {
public:
    GapWatch()
    {
        QObject::connect(&timer_, &QTimer::timeout, &timer_, [this] { Look(); });
        timer_.setTimerType(Qt::PreciseTimer);
        timer_.start(1);
    }

    void Look()
    {
        const double wall = GetSeconds();
        const double work = GetThreadSeconds();
        gaps.wall = std::max(gaps.wall, 1000 * (wall - wall_));
        gaps.work = std::max(gaps.work, 1000 * (work - work_));
        wall_ = wall;
        work_ = work;
    }

    Gaps gaps;

private:
    QTimer timer_;
    double wall_ = GetSeconds();
    double work_ = GetThreadSeconds();
};

// Drops the folder as a file manager does.
void Drop(QWidget& rows, const std::string& folder)
{
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(QString::fromStdString(folder))});
    const QPoint place(40, 40);
    QDragEnterEvent enter(place, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&rows, &enter);
    QDragMoveEvent move(place, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&rows, &move);
    QDropEvent drop(place, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&rows, &drop);
}

// A folder comes in while a song plays. Gives the gaps, how far the song fell behind the clock in
// seconds, whether a state told of a break, and the seconds until nothing was left to do.
Numbers Import(const std::string& song, const std::string& folder, bool byDrop)
{
    const Page page({});
    page.remote.Open({common::PathToText(song)}, u"playing", /*playFirst=*/true);
    Run(10'000, [&] { return page.remote.GetState() == kPlaying; });
    Run(1'000);

    GapWatch watch;
    const double start = GetSeconds();
    const double position = page.remote.GetPosition();
    if (byDrop)
        Drop(*page.stage.GetTree().viewport(), folder);
    else
        page.remote.Open({common::PathToText(folder)}, u"playing", /*playFirst=*/false);
    bool hasBroken = false;
    const auto countRows = [&] {
        const QAbstractItemModel& model = *page.stage.GetTree().model();
        int rows = 0;
        for (int group = 0; group < model.rowCount(); ++group)
            rows += model.rowCount(model.index(group, 0));
        return rows;
    };
    Run(kMostImportMs, [&] {
        hasBroken = hasBroken || page.remote.GetState() != kPlaying;
        return countRows() > kFiles;
    });
    Run(3'000, [&] {
        hasBroken = hasBroken || page.remote.GetState() != kPlaying;
        return false;
    });
    const double passed = GetSeconds() - start;
    const double behind = passed - (page.remote.GetPosition() - position);
    const double broken = hasBroken ? 1 : 0;
    return {watch.gaps.wall, watch.gaps.work, behind, broken, passed - 3, 1.0 * countRows()};
}

bool Make(const std::string& options, const std::string& path)
{
    const std::string command =
        "ffmpeg -nostdin -loglevel error -y -f lavfi -i sine=frequency=440 " + options + " '" +
        path + "'";
    return std::system(command.c_str()) == 0; // NOLINT(concurrency-mt-unsafe): one thread
}

void FillFolder(const std::string& song, const std::filesystem::path& folder)
{
    for (int i = 0; i < kFiles; ++i) {
        const auto part = folder / ("album " + std::to_string(i / kFilesInFolder));
        if (i % kFilesInFolder == 0)
            std::filesystem::create_directories(part);
        std::filesystem::create_hard_link(song, part / ("track " + std::to_string(i) + ".mp3"));
    }
}

void MeasureClicks(const std::string& song)
{
    const double page = GetMedian(RunAlone([&] { return ClickRows(song); }));
    const double bare = GetMedian(RunAlone([&] { return LoadBare(song); }));
    PrintFigure("double_click_to_sound", page, "ms");
    PrintFigure("bare_core_to_sound", bare, "ms");
    PrintFigure("double_click_above_bare_core", page - bare, "ms");
}

void MeasurePlaying(const std::string& song)
{
    Numbers page;
    Numbers bare;
    for (int round = 0; round < kRounds; ++round) {
        page.push_back(RunAlone([&] { return PlayOnPage(song); }).at(0));
        bare.push_back(RunAlone([&] { return PlayBare(song); }).at(0));
    }
    PrintFigure("playing_cpu", 100'000 * GetMedian(page) / kPlayedMs, "percent");
    PrintFigure("playing_cpu_ratio", GetMedian(page) / GetMedian(bare), "times");
}

void MeasureImports(const std::string& song, const std::string& folder)
{
    struct Figure {
        const char* name;
        const char* unit;
    };
    constexpr Figure kFigures[] = {
        {"longest_gap",      "ms"   },
        {"longest_work",     "ms"   },
        {"song_fell_behind", "s"    },
        {"song_broke_off",   "times"},
        {"took",             "s"    },
        {"rows",             "rows" },
    };
    for (const bool byDrop : {false, true}) {
        const Numbers result = RunAlone([&] { return Import(song, folder, byDrop); });
        for (std::size_t i = 0; i < std::size(kFigures); ++i)
            PrintFigure((byDrop ? "drop_" : "open_") + std::string(kFigures[i].name),
                        result.at(i),
                        kFigures[i].unit);
    }
}

int RunAll()
{
    const test::TempFolder folder;
    const std::string root = folder.GetNative();
    const std::string shortSong = root + "/short.mp3";
    const std::string longSong = root + "/long.mp3";
    if (!Make("-t 3 -metadata title=Short -metadata artist=Nobody -b:a 64k", shortSong) ||
        !Make("-t 600 -ac 2 -b:a 192k", longSong)) {
        std::fputs("FFmpeg could not make the songs\n", stderr);
        return 1;
    }
    FillFolder(shortSong, folder.GetNative() / "music");
    MeasureClicks(longSong);
    MeasurePlaying(longSong);
    MeasureImports(longSong, root + "/music");
    return 0;
}

} // namespace
} // namespace kivo::bench

int main()
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    return kivo::bench::RunAll();
}
