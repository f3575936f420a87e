#pragma once

#include <benchmark/benchmark.h>

#include <cstdio>

namespace kivo::bench {

// Prints each result, and each of its counters, also as a line "figure NAME VALUE UNIT".
class FigureReporter : public benchmark::ConsoleReporter {
public:
    FigureReporter()
        : ConsoleReporter(OO_None)
    {
    }

    void ReportRuns(const std::vector<Run>& runs) override
    {
        ConsoleReporter::ReportRuns(runs);
        for (const Run& run : runs) {
            if (run.error_occurred)
                continue;
            const std::string name = run.benchmark_name();
            std::printf("figure %s %.3f %s\n",
                        name.c_str(),
                        run.GetAdjustedRealTime(),
                        benchmark::GetTimeUnitString(run.time_unit));
            for (const auto& [counter, value] : run.counters)
                std::printf(
                    "figure %s/%s %.1f count\n", name.c_str(), counter.c_str(), value.value);
        }
        std::fflush(stdout);
    }
};

inline int RunWithFigures(int argc, char** argv)
{
    benchmark::Initialize(&argc, argv);
    FigureReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    return 0;
}

} // namespace kivo::bench
