#pragma once

#include <functional>

namespace kivo::test {

// Runs `work` in a process of its own that then ends without any clean-up, as an ordinary user if
// the test is run by root. The result is that of `work`, 0 to 99; 100: it died.
int RunAsOrdinaryUser(const std::function<int()>& work);

// Runs `work` again and again, with the numbers 0, 1, 2, …, in a process of its own, and kills that
// without warning some time in or after the run of that number.
void KillAfter(int number, const std::function<void(int)>& work);

// The same, killed inside a run: after that share, 0 to 1, of the time that a run takes.
void KillDuring(double share, const std::function<void(int)>& work);

} // namespace kivo::test
