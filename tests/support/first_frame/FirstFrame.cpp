#include "tests/support/first_frame/FirstFrame.h"

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <string_view>

namespace kivo::test {

namespace {

constexpr int kLongestMs = 30'000;
constexpr double kKilobytesPerMegabyte = 1024.0;

// This process's own, with the library that tells the first frame.
std::vector<std::string> MakeEnvironment(const std::string& display, int descriptor)
{
    constexpr std::array<std::string_view, 4> kOwn = {
        "DBUS_SESSION_BUS_ADDRESS=", "DISPLAY=", "QT_QPA_PLATFORM=", "WAYLAND_DISPLAY="};
    std::vector<std::string> variables;
    for (char** variable = environ; *variable != nullptr; ++variable)
        if (std::none_of(kOwn.begin(), kOwn.end(), [variable](std::string_view own) {
                return std::string_view(*variable).starts_with(own);
            }))
            variables.emplace_back(*variable);
    variables.push_back(display.empty() ? "QT_QPA_PLATFORM=offscreen" : "QT_QPA_PLATFORM=xcb");
    variables.push_back("DISPLAY=" + display);
    variables.emplace_back("LD_PRELOAD=" KIVO_FIRST_FRAME_PRELOAD);
    variables.push_back("FIRST_FRAME_FD=" + std::to_string(descriptor));
    return variables;
}

std::vector<char*> PointTo(std::vector<std::string>& texts)
{
    std::vector<char*> pointers;
    pointers.reserve(texts.size() + 1);
    for (std::string& text : texts)
        pointers.push_back(text.data());
    pointers.push_back(nullptr);
    return pointers;
}

double GetMilliseconds()
{
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    return std::chrono::duration<double, std::milli>(now).count();
}

FirstFrame ReadAnswer(int descriptor, double start)
{
    pollfd wait{descriptor, POLLIN, 0};
    std::array<char, 128> text{};
    if (poll(&wait, 1, kLongestMs) <= 0 || read(descriptor, text.data(), text.size() - 1) <= 0)
        return {};
    long long seconds = 0;
    long nanoseconds = 0;
    long resident = 0;
    long proportional = 0;
    if (std::sscanf(
            text.data(), "%lld %ld %ld %ld", &seconds, &nanoseconds, &resident, &proportional) != 4)
        return {};
    const double end = static_cast<double>(seconds) * 1e3 + static_cast<double>(nanoseconds) / 1e6;
    return {end - start,
            static_cast<double>(resident) / kKilobytesPerMegabyte,
            static_cast<double>(proportional) / kKilobytesPerMegabyte};
}

} // namespace

FirstFrame MeasureFirstFrame(const std::string& display,
                             const std::string& program,
                             const std::vector<std::string>& arguments)
{
    std::array<int, 2> ends{-1, -1};
    if (pipe(ends.data()) != 0)
        return {};
    fcntl(ends[0], F_SETFD, FD_CLOEXEC);
    std::vector<std::string> words{program};
    words.insert(words.end(), arguments.begin(), arguments.end());
    std::vector<std::string> variables = MakeEnvironment(display, ends[1]);
    pid_t child = -1;
    const double start = GetMilliseconds();
    const int failure = posix_spawn(&child,
                                    program.c_str(),
                                    nullptr,
                                    nullptr,
                                    PointTo(words).data(),
                                    PointTo(variables).data());
    close(ends[1]);
    FirstFrame frame;
    if (failure == 0) {
        frame = ReadAnswer(ends[0], start);
        kill(child, SIGKILL); // It has ended by itself, unless there was no frame.
        waitpid(child, nullptr, 0);
    }
    close(ends[0]);
    return frame;
}

std::string GetEmptyProgram()
{
    return KIVO_EMPTY_PROGRAM;
}

} // namespace kivo::test
