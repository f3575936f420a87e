#include "bench/support/Measure.h"

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <fstream>

namespace kivo::bench {

namespace {

// A line of a file below /proc/self in megabytes.
double ReadStatus(const char* file, const std::string& name)
{
    std::ifstream status(std::string("/proc/self/") + file);
    for (std::string line; std::getline(status, line);)
        if (line.starts_with(name))
            return std::stod(line.substr(name.size())) / 1024.0;
    return 0.0;
}

[[noreturn]] void Give(int pipe, const Numbers& numbers)
{
    for (const double number : numbers)
        if (write(pipe, &number, sizeof number) != static_cast<ssize_t>(sizeof number))
            _exit(1);
    _exit(0); // No destructors: what they would free isn't measured.
}

} // namespace

Numbers RunAlone(const std::function<Numbers()>& phase)
{
    int ends[2] = {};
    std::fflush(stdout);
    if (pipe(ends) != 0)
        std::abort();
    const pid_t child = fork();
    if (child == 0)
        Give(ends[1], phase());
    close(ends[1]);
    Numbers numbers;
    for (double number = 0; read(ends[0], &number, sizeof number) == sizeof number;)
        numbers.push_back(number);
    close(ends[0]);
    int status = 0;
    waitpid(child, &status, 0);
    if (status != 0) {
        std::fprintf(stderr, "a phase ended with status %d\n", status);
        _exit(1);
    }
    return numbers;
}

double GetSeconds()
{
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    return std::chrono::duration<double>(now).count();
}

double GetCpuSeconds()
{
    rusage usage = {};
    getrusage(RUSAGE_SELF, &usage);
    return ToSeconds(usage);
}

double GetThreadSeconds()
{
    timespec time = {};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9;
}

double ToSeconds(const rusage& usage)
{
    const auto seconds = [](const timeval& time) {
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
    };
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

double GetMemoryMb()
{
    return ReadStatus("status", "VmRSS:");
}

double GetSharedMemoryMb()
{
    return ReadStatus("smaps_rollup", "Pss:");
}

double GetPeakMemoryMb()
{
    return ReadStatus("status", "VmHWM:");
}

double GetMedian(Numbers numbers)
{
    if (numbers.empty())
        return 0.0;
    const auto middle = numbers.begin() + static_cast<std::ptrdiff_t>(numbers.size() / 2);
    std::nth_element(numbers.begin(), middle, numbers.end());
    return *middle;
}

void PrintFigure(const std::string& name, double value, const std::string& unit)
{
    std::printf("figure %s %.3f %s\n", name.c_str(), value, unit.c_str());
}

} // namespace kivo::bench
