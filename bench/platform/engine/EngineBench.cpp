#include "bench/support/Figures.h"
#include "platform/engine/Core.h"
#include "tests/platform/engine/EngineRun.h"
#include "tests/platform/engine/VideoRun.h"
#include "tests/support/TestLoop.h"

#include <benchmark/benchmark.h>
#include <sys/resource.h>

#include <chrono>
#include <string>

// Each figure of the engine stands beside that of a bare core with the same options.
namespace kivo::bench {
namespace {

using Clock = std::chrono::steady_clock;

constexpr const char* kFiles[] = {"tone.mp3", "tone.flac", "tone.ogg", "tone.m4a"};
constexpr int kPlayedMilliseconds = 3'000;
constexpr double kLongestWait = 10; // Seconds for one event.

std::string GetFile(const benchmark::State& state)
{
    return kFiles[static_cast<std::size_t>(state.range(0))];
}

double SecondsSince(Clock::time_point start)
{
    return std::chrono::duration<double>(Clock::now() - start).count();
}

double GetProcessorSeconds()
{
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    const auto seconds = [](const timeval& time) {
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
    };
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

CoreHandle MakeSilentCore()
{
    CoreSettings settings;
    settings.silent = true;
    return MakeCore(settings);
}

bool WaitFor(mpv_handle* core, mpv_event_id id)
{
    const Clock::time_point start = Clock::now();
    while (SecondsSince(start) < kLongestWait) {
        if (mpv_wait_event(core, /*timeout=*/1)->event_id == id)
            return true;
    }
    return false;
}

void BM_ClickToSound(benchmark::State& state)
{
    test::EngineRun run;
    for ([[maybe_unused]] auto _ : state) {
        const Clock::time_point start = Clock::now();
        run.SetFile(GetFile(state));
        if (!run.RunToState(3))
            state.SkipWithError("It doesn't play.");
        state.SetIterationTime(SecondsSince(start));
        run.Get().Stop();
        test::RunFor(20);
        run.Clear();
    }
    state.SetLabel(GetFile(state));
}
BENCHMARK(BM_ClickToSound)
    ->DenseRange(0, 3)
    ->UseManualTime()
    ->Iterations(30)
    ->Unit(benchmark::kMillisecond);

void BM_ClickToSoundOfABareCore(benchmark::State& state)
{
    const CoreHandle core = MakeSilentCore();
    for ([[maybe_unused]] auto _ : state) {
        const Clock::time_point start = Clock::now();
        SendCommand(core.get(), 0, {"loadfile", test::GetMediaPath(GetFile(state)), "replace"});
        if (!WaitFor(core.get(), MPV_EVENT_PLAYBACK_RESTART))
            state.SkipWithError("It doesn't play.");
        state.SetIterationTime(SecondsSince(start));
        SendCommand(core.get(), 0, {"stop"});
        WaitFor(core.get(), MPV_EVENT_IDLE);
    }
    state.SetLabel(GetFile(state));
}
BENCHMARK(BM_ClickToSoundOfABareCore)
    ->DenseRange(0, 3)
    ->UseManualTime()
    ->Iterations(30)
    ->Unit(benchmark::kMillisecond);

// Processor time of three seconds of an mp3.
void BM_PlayingCost(benchmark::State& state)
{
    test::EngineRun run;
    for ([[maybe_unused]] auto _ : state) {
        run.SetFile("long.mp3");
        run.RunToState(3);
        const double before = GetProcessorSeconds();
        test::RunFor(kPlayedMilliseconds);
        state.SetIterationTime(GetProcessorSeconds() - before);
        run.Get().Stop();
        run.Clear();
    }
}
BENCHMARK(BM_PlayingCost)->UseManualTime()->Iterations(3)->Unit(benchmark::kMillisecond);

void BM_PlayingCostOfABareCore(benchmark::State& state)
{
    const CoreHandle core = MakeSilentCore();
    for ([[maybe_unused]] auto _ : state) {
        SendCommand(core.get(), 0, {"loadfile", test::GetMediaPath("long.mp3"), "replace"});
        WaitFor(core.get(), MPV_EVENT_PLAYBACK_RESTART);
        const double before = GetProcessorSeconds();
        test::RunFor(kPlayedMilliseconds);
        state.SetIterationTime(GetProcessorSeconds() - before);
        SendCommand(core.get(), 0, {"stop"});
        WaitFor(core.get(), MPV_EVENT_IDLE);
    }
}
BENCHMARK(BM_PlayingCostOfABareCore)->UseManualTime()->Iterations(3)->Unit(benchmark::kMillisecond);

// 1080p at 30 pictures a second in a window of 1280 by 720: what is shown and lost in three
// seconds, and again after a second in which the window is hidden.
void BM_FullHdVideo(benchmark::State& state)
{
    constexpr double kSeconds = 3;
    for ([[maybe_unused]] auto _ : state) {
        test::VideoRun run(1280, 720);
        if (!run.Start("hd.mp4"))
            state.SkipWithError("It doesn't play.");
        const double before = GetProcessorSeconds();
        const test::VideoRun::Count first = run.Watch(kSeconds);
        state.SetIterationTime(GetProcessorSeconds() - before);
        run.SetVisible(false);
        const test::VideoRun::Count hidden = run.Watch(1);
        run.SetVisible(true);
        const test::VideoRun::Count second = run.Watch(kSeconds);
        state.counters["shown_per_second"] = first.GetRate();
        state.counters["dropped"] = static_cast<double>(first.dropped);
        state.counters["dropped_while_hidden"] = static_cast<double>(hidden.dropped);
        state.counters["shown_per_second_again"] = second.GetRate();
        state.counters["dropped_again"] = static_cast<double>(second.dropped);
    }
}
BENCHMARK(BM_FullHdVideo)->UseManualTime()->Iterations(1)->Unit(benchmark::kMillisecond);

void BM_MakeAndDestroy(benchmark::State& state)
{
    for ([[maybe_unused]] auto _ : state)
        test::EngineRun run;
}
BENCHMARK(BM_MakeAndDestroy)->Iterations(20)->Unit(benchmark::kMillisecond);

} // namespace
} // namespace kivo::bench

int main(int argc, char** argv)
{
    return kivo::bench::RunWithFigures(argc, argv);
}
