#include "bench/support/BareCore.h"
#include "bench/support/Figures.h"
#include "tests/platform/engine/EngineRun.h"
#include "tests/platform/engine/VideoRun.h"
#include "tests/support/TestLoop.h"

#include <benchmark/benchmark.h>

#include <string>

// What the engine adds to a bare core with the same options. What playing costs is measured with
// the whole page.
namespace kivo::bench {
namespace {

constexpr const char* kFiles[] = {"tone.mp3", "tone.flac", "tone.ogg", "tone.m4a"};

std::string GetFile(const benchmark::State& state)
{
    return kFiles[static_cast<std::size_t>(state.range(0))];
}

void BM_ClickToSound(benchmark::State& state)
{
    test::EngineRun run;
    for ([[maybe_unused]] auto _ : state) {
        const double start = GetSeconds();
        run.SetFile(GetFile(state));
        if (!run.RunToState(3))
            state.SkipWithError("It doesn't play.");
        state.SetIterationTime(GetSeconds() - start);
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
    BareCore core;
    for ([[maybe_unused]] auto _ : state) {
        state.SetIterationTime(core.Play(test::GetMediaPath(GetFile(state))));
        core.Stop();
    }
    state.SetLabel(GetFile(state));
}
BENCHMARK(BM_ClickToSoundOfABareCore)
    ->DenseRange(0, 3)
    ->UseManualTime()
    ->Iterations(30)
    ->Unit(benchmark::kMillisecond);

// 1080p at 30 pictures a second in a window of 1280 by 720: what is shown and lost in three
// seconds, and again after a second in which the window is hidden.
void BM_FullHdVideo(benchmark::State& state)
{
    constexpr double kSeconds = 3;
    for ([[maybe_unused]] auto _ : state) {
        test::VideoRun run(1280, 720);
        if (!run.Start("hd.mp4"))
            state.SkipWithError("It doesn't play.");
        const double before = GetCpuSeconds();
        const test::VideoRun::Count first = run.Watch(kSeconds);
        state.SetIterationTime(GetCpuSeconds() - before);
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
