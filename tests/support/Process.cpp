#include "tests/support/Process.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <utility>

namespace kivo::test {

namespace {

using Clock = std::chrono::steady_clock;

int GetLeft(Clock::time_point deadline)
{
    using std::chrono::milliseconds;
    const auto left = std::chrono::ceil<milliseconds>(deadline - Clock::now()).count();
    return static_cast<int>(std::max<milliseconds::rep>(left, 0));
}

std::vector<char*> ToPointers(const std::vector<std::string>& texts)
{
    std::vector<char*> pointers;
    pointers.reserve(texts.size() + 1);
    for (const std::string& text : texts)
        pointers.push_back(const_cast<char*>(text.c_str()));
    pointers.push_back(nullptr);
    return pointers;
}

std::vector<std::string> MakeEnvironment(const std::vector<std::string>& variables)
{
    std::vector<std::string> all;
    for (char** entry = environ; *entry != nullptr; ++entry) {
        const std::string text = *entry;
        const std::string name = text.substr(0, text.find('=') + 1);
        const bool isReplaced =
            std::any_of(variables.begin(), variables.end(), [&](const std::string& variable) {
                return variable.starts_with(name);
            });
        if (!isReplaced)
            all.push_back(text);
    }
    all.insert(all.end(), variables.begin(), variables.end());
    return all;
}

} // namespace

Process::Process(const std::vector<std::string>& command, const std::vector<std::string>& variables)
{
    std::array<int, 2> in{-1, -1};
    std::array<int, 2> out{-1, -1};
    EXPECT_EQ(pipe2(in.data(), O_CLOEXEC) + pipe2(out.data(), O_CLOEXEC), 0);
    // All that the child needs is made before: the test may have threads.
    const std::vector<char*> argv = ToPointers(command);
    const std::vector<std::string> environment = MakeEnvironment(variables);
    const std::vector<char*> envp = ToPointers(environment);
    const pid_t parent = getpid();
    id_ = fork();
    if (id_ == 0) {
        prctl(PR_SET_PDEATHSIG, SIGKILL);
        if (getppid() != parent)
            _exit(1);
        sigset_t none{};
        sigemptyset(&none);
        // NOLINTNEXTLINE(concurrency-mt-unsafe): the child has one thread
        sigprocmask(SIG_SETMASK, &none, nullptr);
        dup2(in[0], STDIN_FILENO);
        dup2(out[1], STDOUT_FILENO);
        execvpe(argv[0], argv.data(), envp.data());
        _exit(127);
    }
    close(in[0]);
    close(out[1]);
    input_ = in[1];
    outcome_ = out[0];
}

Process::~Process()
{
    Kill();
    CloseInput();
    close(outcome_);
}

void Process::CloseInput()
{
    if (input_ >= 0)
        close(std::exchange(input_, -1));
}

void Process::Say(const std::string& line) const
{
    const std::string text = line + "\n";
    EXPECT_EQ(write(input_, text.data(), text.size()), static_cast<ssize_t>(text.size())) << line;
}

bool Process::ReadMore(int milliseconds)
{
    pollfd entry{outcome_, POLLIN, 0};
    if (poll(&entry, 1, milliseconds) <= 0)
        return false;
    std::array<char, 4096> buffer{};
    const ssize_t count = read(outcome_, buffer.data(), buffer.size());
    if (count <= 0)
        return false;
    output_.append(buffer.data(), static_cast<std::size_t>(count));
    return true;
}

std::string Process::WaitFor(const std::function<bool(const std::string&)>& isMeant,
                             int milliseconds)
{
    const auto deadline = Clock::now() + std::chrono::milliseconds(milliseconds);
    while (true) {
        const std::size_t end = output_.find('\n', position_);
        if (end != std::string::npos) {
            std::string line = output_.substr(position_, end - position_);
            position_ = end + 1;
            if (isMeant(line))
                return line;
        } else if (!ReadMore(GetLeft(deadline))) {
            return {};
        }
    }
}

std::string Process::WaitFor(const std::string& beginning, int milliseconds)
{
    return WaitFor([&](const std::string& line) { return line.starts_with(beginning); },
                   milliseconds);
}

void Process::Kill()
{
    if (id_ <= 0)
        return;
    kill(id_, SIGKILL);
    waitpid(std::exchange(id_, -1), nullptr, 0);
}

int Process::WaitForEnd(int milliseconds)
{
    const auto deadline = Clock::now() + std::chrono::milliseconds(milliseconds);
    while (ReadMore(GetLeft(deadline))) {
    }
    if (id_ <= 0 || Clock::now() >= deadline)
        return -1;
    int status = 0;
    waitpid(std::exchange(id_, -1), &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

void Process::Signal(int number) const
{
    if (id_ > 0)
        kill(id_, number);
}

int RunCommand(const std::vector<std::string>& command)
{
    return Process(command).WaitForEnd(120000);
}

} // namespace kivo::test
