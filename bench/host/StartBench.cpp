// From the start of the process to the first frame on the screen: the program with an empty profile
// and one with an account, against a program with an empty window, and one with a single word in
// it, turn by turn; on an X display of its own and off-screen.

#include "tests/support/first_frame/FirstFrame.h"
#include "tests/support/TempFolder.h"
#include "tests/support/XScreen.h"

#include <algorithm>
#include <cstdio>
#include <string>
#include <vector>

namespace kivo::bench {
namespace {

constexpr int kTurns = 21;

struct Program {
    const char* name;
    test::FirstFrame (*start)(const std::string& display);
    std::vector<test::FirstFrame> frames;
};

test::FirstFrame StartEmpty(const std::string& display)
{
    return test::MeasureFirstFrame(display, test::GetEmptyProgram());
}

test::FirstFrame StartWord(const std::string& display)
{
    return test::MeasureFirstFrame(display, test::GetEmptyProgram(), {"Word"});
}

test::FirstFrame StartPlayer(const std::string& display)
{
    const test::TempFolder home;
    const auto path = [&home](const char* name) { return (home.GetNative() / name).native(); };
    // Without a display the form shows itself for a picture alone.
    return test::MeasureFirstFrame(
        display, KIVO_PROGRAM, {"--profile", path("profile"), "--screenshot", path("never.png")});
}

// With an account on a server that isn't there: the program signs in once its window has been seen.
test::FirstFrame StartAccount(const std::string& display)
{
    const test::TempFolder home;
    const auto path = [&home](const char* name) { return (home.GetNative() / name).native(); };
    home.Write("profile/host.ini",
               "account.on=1\naccount.address=ann@example.invalid\naccount.server=127.0.0.1\n"
               "account.port=1\n");
    return test::MeasureFirstFrame(
        display, KIVO_PROGRAM, {"--profile", path("profile"), "--screenshot", path("never.png")});
}

double GetMedian(const Program& program, double test::FirstFrame::*number)
{
    std::vector<double> numbers;
    for (const test::FirstFrame& frame : program.frames)
        numbers.push_back(frame.*number);
    const auto middle = numbers.begin() + static_cast<std::ptrdiff_t>(numbers.size() / 2);
    std::nth_element(numbers.begin(), middle, numbers.end());
    return *middle;
}

void PrintFigures(const std::string& place,
                  const std::vector<Program>& programs,
                  const char* what,
                  const char* unit,
                  double test::FirstFrame::*number)
{
    const double player = GetMedian(programs.front(), number);
    for (const Program& program : programs)
        std::printf("figure start/%s/%s/%s %.1f %s\n",
                    place.c_str(),
                    program.name,
                    what,
                    GetMedian(program, number),
                    unit);
    for (std::size_t other = 1; other < programs.size(); ++other)
        std::printf("figure start/%s/%s/player_to_%s %.2f x\n",
                    place.c_str(),
                    what,
                    programs[other].name,
                    player / GetMedian(programs[other], number));
}

// False: a program showed no frame.
bool Compare(const std::string& place, const std::string& display)
{
    std::vector<Program> programs = {
        {"player",  StartPlayer,  {}},
        {"account", StartAccount, {}},
        {"empty",   StartEmpty,   {}},
        {"word",    StartWord,    {}},
    };
    bool isWhole = StartPlayer(display).milliseconds >= 0; // Warms the disk's cache.
    for (int turn = 0; turn < kTurns && isWhole; ++turn)
        for (Program& program : programs) {
            program.frames.push_back(program.start(display));
            isWhole = isWhole && program.frames.back().milliseconds >= 0;
        }
    if (!isWhole) {
        std::fprintf(stderr, "a program showed no frame: %s\n", place.c_str());
        return false;
    }
    PrintFigures(place, programs, "time", "ms", &test::FirstFrame::milliseconds);
    PrintFigures(place, programs, "resident", "MB", &test::FirstFrame::resident);
    PrintFigures(place, programs, "proportional", "MB", &test::FirstFrame::proportional);
    return true;
}

} // namespace
} // namespace kivo::bench

int main()
{
    const kivo::test::XScreen screen(/*hasManager=*/false);
    const bool isDone = !screen.IsUp() || kivo::bench::Compare("x11", screen.GetName());
    return kivo::bench::Compare("offscreen", "") && isDone ? 0 : 1;
}
