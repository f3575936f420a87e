#include "bench/support/Measure.h"
#include "host/EventLoop.h"
#include "platform/engine/Core.h"
#include "platform/engine/Engine.h"
#include "platform/ui/qt/QtDesktop.h"
#include "player/KivoPlayerWnd.h"
#include "player/PlayerState.h"
#include "shell/contracts/base/Released.h"
#include "shell/contracts/common/Text.h"
#include "shell/contracts/ui/SkinForm.h"
#include "tests/support/TempFolder.h"

#include <QApplication>
#include <QEventLoop>
#include <QTimer>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <string>
#include <vector>

// What it costs to show a video, as a multiple of what it costs to decode it.
namespace kivo::bench {
namespace {

constexpr int kRounds = 3;
constexpr int kWarmUpMs = 1'500;
constexpr int kMeasuredMs = 4'000;
constexpr double kLongestWait = 10; // Seconds for one event.

struct Place {
    const char* name;
    int width;
    int height;
};

// The pane as it opens in a window of 340 pixels, the pane drawn large, and pixel for pixel.
constexpr Place kPlaces[] = {
    {"_in_pane",       316,  132},
    {"_in_large_pane", 640,  360},
    {"_at_full_size",  1280, 720},
};

struct Film {
    const char* name;
    const char* source; // What FFmpeg makes it from.
};

// 720 lines. The first as films are found, moving and with grain, at a usual bit rate; the second
// as light to decode as one can be, which leaves all the weight to the showing.
constexpr Film kFilms[] = {
    {"usual", "mandelbrot=size=1280x720:rate=25,noise=alls=6:allf=t"},
    {"light", "testsrc=size=1280x720:rate=25"                       },
};

bool MakeFilm(const Film& film, const std::string& path)
{
    const std::string command =
        std::string("ffmpeg -nostdin -loglevel error -y -f lavfi -i ") + film.source +
        " -f lavfi -i sine=frequency=440 -t 10 -c:v libx264 -preset fast -maxrate 2500k"
        " -bufsize 5M -pix_fmt yuv420p -c:a aac -b:a 128k '" +
        path + "'";
    return std::system(command.c_str()) == 0; // NOLINT(concurrency-mt-unsafe): one thread
}

// The processor's part in the next seconds, in per cent of one core.
double MeasurePart(const std::function<void(int)>& pass)
{
    pass(kWarmUpMs);
    const double cpu = GetCpuSeconds();
    const double start = GetSeconds();
    pass(kMeasuredMs);
    return 100 * (GetCpuSeconds() - cpu) / (GetSeconds() - start);
}

// Decodes in real time and shows nobody.
Numbers Decode(const std::string& film)
{
    const CoreHandle core(mpv_create());
    for (const auto& [name, value] : {
             std::pair{"config", "no"  },
             {"vo",     "null"},
             {"ao",     "null"},
             {"hwdec",  "no"  },
    })
        mpv_set_option_string(core.get(), name, value);
    if (mpv_initialize(core.get()) < 0)
        std::abort();
    SendCommand(core.get(), 0, {"loadfile", film});
    const double start = GetSeconds();
    while (mpv_wait_event(core.get(), kLongestWait)->event_id != MPV_EVENT_PLAYBACK_RESTART)
        if (GetSeconds() - start > kLongestWait)
            std::abort();
    return {MeasurePart([&](int milliseconds) {
        const double end = GetSeconds() + milliseconds / 1000.0;
        while (GetSeconds() < end)
            mpv_wait_event(core.get(), std::max(end - GetSeconds(), 0.0));
    })};
}

void Turn(int milliseconds)
{
    QEventLoop turns;
    QTimer::singleShot(milliseconds, &turns, &QEventLoop::quit);
    turns.exec();
}

// The player's own surface on a form, drawn by Qt.
Numbers Show(const std::string& film, const Place& place)
{
    int argc = 1;
    std::string name = "video_bench";
    char* argv[] = {name.data(), nullptr};
    QApplication application(argc, argv);
    const host::EventLoop loop;
    const ui::qt::QtDesktop desktop(ui::qt::DesktopOptions{});
    MediaEngineSettings settings;
    settings.silent = true;
    SetMediaEngineFactory([settings] { return Engine::Make(settings); });
    ui::CSkinForm form;
    form.Create(
        ui::wndstyle::kPopup, u"Form", u"Form", {0, 0, place.width, place.height}, nullptr, 0);
    form.ShowWindow(5);
    const Released<tunehive::CKivoPlayerWnd> player(new tunehive::CKivoPlayerWnd);
    player->Init(&form);
    player->SetBounds(0, 0, place.width, place.height);
    player->Show(1);
    player->SetURL(common::PathToText(film), /*autoplay=*/1);
    const double start = GetSeconds();
    while (player->GetPlayState() != static_cast<int>(tunehive::PlayerState::Playing)) {
        Turn(20);
        if (GetSeconds() - start > kLongestWait)
            std::abort();
    }
    return {MeasurePart(Turn)};
}

double Compare(const std::string& path, const std::string& name)
{
    Numbers decoding;
    std::vector<Numbers> shown(std::size(kPlaces));
    for (int round = 0; round < kRounds; ++round) {
        decoding.push_back(RunAlone([&] { return Decode(path); }).at(0));
        for (std::size_t i = 0; i < std::size(kPlaces); ++i)
            shown[i].push_back(RunAlone([&] { return Show(path, kPlaces[i]); }).at(0));
    }
    const double alone = GetMedian(decoding);
    PrintFigure("video_decoding_cpu_" + name, alone, "percent");
    for (std::size_t i = 0; i < std::size(kPlaces); ++i)
        PrintFigure(
            "video_cpu_ratio_" + name + kPlaces[i].name, GetMedian(shown[i]) / alone, "times");
    return GetMedian(shown[0]) / alone;
}

int Run()
{
    const test::TempFolder folder;
    double worst = 0;
    for (const Film& film : kFilms) {
        const std::string path = folder.GetNative() / (std::string(film.name) + ".mp4");
        if (!MakeFilm(film, path)) {
            std::fputs("FFmpeg could not make the film\n", stderr);
            return 1;
        }
        worst = std::max(worst, Compare(path, film.name));
    }
    PrintFigure("video_pane_cpu_ratio", worst, "times");
    return 0;
}

} // namespace
} // namespace kivo::bench

int main()
{
    return kivo::bench::Run();
}
