#pragma once

#include <string>

namespace kivo::bench {

// What a run of the program does once no row on screen is due.
enum class ProbeTask { Quit, Steps, Leave };

// Runs the real program on a profile, in this process, and prints on stdout what it saw, one
// "NAME VALUE" a line: times of the start in milliseconds since `start`, a time of GetSeconds,
// memory in megabytes, and the times of the task. Gives the program's exit status.
int RunProbe(const std::string& profile, ProbeTask task, double start);

} // namespace kivo::bench
