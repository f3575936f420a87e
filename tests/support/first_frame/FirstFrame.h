#pragma once

#include <string>
#include <vector>

namespace kivo::test {

// What a program took from its start until its first frame was on the screen.
struct FirstFrame {
    double milliseconds = -1; // Negative: there was none within half a minute.
    double resident = 0;      // Megabytes then, shared pages counted whole.
    double proportional = 0;  // Megabytes then, shared pages counted by their part.
};

// Starts a program that shows a Qt window and ends it at its first frame. It gets the environment
// of this process, but no session bus. `display`: as in DISPLAY; empty: it runs off-screen.
[[nodiscard]] FirstFrame MeasureFirstFrame(const std::string& display,
                                           const std::string& program,
                                           const std::vector<std::string>& arguments = {});

// The program to compare with: a window with nothing in it, or with this argument as its one label.
[[nodiscard]] std::string GetEmptyProgram();

} // namespace kivo::test
