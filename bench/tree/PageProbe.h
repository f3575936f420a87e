#pragma once

#include <string>

struct rusage;

namespace kivo::bench {

// What a run of the program does once no row on screen is due.
enum class ProbeTask { Quit, Steps, Leave };

// Runs the real program on a profile, in this process, and prints on stdout what it saw, one
// "NAME VALUE" a line: times of the start in milliseconds since `startNs` of the monotonic clock,
// memory in megabytes, and the times of the task. Gives the program's exit status.
int RunProbe(const std::string& profile, ProbeTask task, long long startNs);

// Nanoseconds of the monotonic clock, which all processes share.
[[nodiscard]] long long GetNowNs();

// Milliseconds of processor time: what counts where others keep the machine busy.
[[nodiscard]] double ToMs(const rusage& usage);
[[nodiscard]] double GetCpuMs(); // Of this process so far.

} // namespace kivo::bench
