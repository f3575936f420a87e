#pragma once

#include <functional>
#include <string>
#include <vector>

struct rusage;

namespace kivo::bench {

using Numbers = std::vector<double>;

// Runs a phase in a process of its own, so that memory, threads and libraries of one phase don't
// weigh on the next, and gives the numbers that it gave. Ends the program when the phase crashes.
Numbers RunAlone(const std::function<Numbers()>& phase);

double GetSeconds();       // Of a clock that only goes forwards.
double GetCpuSeconds();    // Of all threads of this process.
double GetThreadSeconds(); // The processor's, for the calling thread.
double ToSeconds(const rusage& usage);
double GetMemoryMb();       // Resident now.
double GetSharedMemoryMb(); // The same, with what is shared counted by its part.
double GetPeakMemoryMb();   // Resident at most so far.
double GetMedian(Numbers numbers);

// Prints "figure NAME VALUE UNIT".
void PrintFigure(const std::string& name, double value, const std::string& unit);

} // namespace kivo::bench
