#include "tests/support/XScreen.h"

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <thread>
#include <vector>

extern char** environ;

namespace kivo::test {

namespace {

constexpr int kWaitMs = 20'000;

// Without its own words on this process's streams. -1: it isn't there. `passed` stays open in it.
pid_t Start(std::vector<std::string> words, int passed, const std::string& display)
{
    std::vector<char*> arguments;
    for (std::string& word : words)
        arguments.push_back(word.data());
    arguments.push_back(nullptr);
    std::string variable = "DISPLAY=" + display;
    std::vector<char*> variables{variable.data()};
    for (char** one = environ; *one != nullptr; ++one)
        if (std::string_view(*one).rfind("DISPLAY=", 0) != 0)
            variables.push_back(*one);
    variables.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
        posix_spawn_file_actions_addopen(&actions, stream, "/dev/null", O_RDWR, 0);
    if (passed >= 0)
        posix_spawn_file_actions_adddup2(&actions, passed, passed); // Keeps it open.
    pid_t child = -1;
    if (posix_spawnp(
            &child, arguments.front(), &actions, nullptr, arguments.data(), variables.data()) != 0)
        child = -1;
    posix_spawn_file_actions_destroy(&actions);
    return child;
}

void End(pid_t child)
{
    if (child < 0)
        return;
    kill(child, SIGTERM);
    waitpid(child, nullptr, 0);
}

// Up to the line's end: the server writes in pieces, and dies when nobody reads the last.
std::string ReadLine(int descriptor)
{
    std::string line;
    pollfd wait{descriptor, POLLIN, 0};
    for (char unit = 0; poll(&wait, 1, kWaitMs) > 0 && read(descriptor, &unit, 1) == 1;) {
        if (unit == '\n')
            return line;
        line += unit;
    }
    return {};
}

} // namespace

XScreen::XScreen(bool hasManager)
{
    std::array<int, 2> ends{-1, -1};
    if (pipe2(ends.data(), O_CLOEXEC) != 0)
        return;
    server_ = Start({"Xvfb",
                     "-displayfd",
                     std::to_string(ends[1]),
                     "-screen",
                     "0",
                     "1280x1024x24",
                     "-nolisten",
                     "tcp",
                     "-noreset"}, // Else it begins anew when the first client goes.
                    ends[1],
                    "");
    close(ends[1]);
    const std::string number = server_ >= 0 ? ReadLine(ends[0]) : std::string();
    close(ends[0]);
    if (number.empty())
        return;
    name_ = ":" + number;
    isUp_ = !hasManager || StartManager();
}

XScreen::~XScreen()
{
    End(manager_);
    End(server_);
}

// It is up once it answers to its own name in the root window's properties.
bool XScreen::StartManager()
{
    manager_ = Start({"openbox", "--sm-disable"}, -1, name_);
    if (manager_ < 0)
        return false;
    const std::string question = "DISPLAY=" + name_ + " xdotool get_num_desktops >/dev/null 2>&1";
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::milliseconds(kWaitMs);
    while (std::chrono::steady_clock::now() < deadline) {
        // NOLINTNEXTLINE(concurrency-mt-unsafe): one thread
        if (std::system(question.c_str()) == 0)
            return true;
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
    }
    return false;
}

} // namespace kivo::test
