#include "tests/end_to_end/KivoRun.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <cmath>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iterator>
#include <memory>

namespace kivo::test {

namespace {

using Clock = std::chrono::steady_clock;

int GetMillisecondsUntil(Clock::time_point deadline)
{
    const auto left =
        std::chrono::duration_cast<std::chrono::milliseconds>(deadline - Clock::now());
    return static_cast<int>(std::max<std::int64_t>(left.count(), 0));
}

// NOLINTBEGIN(concurrency-mt-unsafe): the child and the tests' own process have one thread

// In the child, before the program: nothing here may be shared with the parent.
[[noreturn]] void
Become(const std::vector<std::string>& arguments, const KivoRun::World& world, int stream)
{
    dup2(stream, STDERR_FILENO);
    const int nothing = open("/dev/null", O_RDWR | O_CLOEXEC);
    dup2(nothing, STDIN_FILENO);
    dup2(nothing, STDOUT_FILENO);
    for (const char* const name :
         {"DISPLAY", "WAYLAND_DISPLAY", "DBUS_SESSION_BUS_ADDRESS", "LANG"})
        unsetenv(name);
    setenv("QT_QPA_PLATFORM", "offscreen", 1);
    setenv("LC_ALL", "C.UTF-8", 1);
    setenv("PULSE_SERVER", "unix:/nowhere", 1);
    for (const std::string& variable : world.environment) {
        const std::size_t equals = variable.find('=');
        const std::string name = variable.substr(0, equals);
        if (equals + 1 == variable.size())
            unsetenv(name.c_str());
        else
            setenv(name.c_str(), variable.c_str() + equals + 1, 1);
    }
    if (world.user != 0 && (setgid(world.user) != 0 || setuid(world.user) != 0))
        _exit(126);
    const std::string program = world.program.empty() ? KIVO_PROGRAM : world.program;
    std::vector<char*> argv{const_cast<char*>(program.c_str())};
    for (const std::string& argument : arguments)
        argv.push_back(const_cast<char*>(argument.c_str()));
    argv.push_back(nullptr);
    execv(program.c_str(), argv.data());
    _exit(127);
}

// NOLINTEND(concurrency-mt-unsafe)

Sound Measure(const std::vector<std::int16_t>& samples, int channels, int rate)
{
    double sum = 0;
    for (const std::int16_t sample : samples)
        sum += static_cast<double>(sample) * sample;
    const auto count = static_cast<double>(samples.size());
    if (samples.empty())
        return {};
    return {count / channels / rate, 10 * std::log10(sum / count / (32768.0 * 32768.0) + 1e-30)};
}

std::string Quote(const std::string& text)
{
    std::string quoted = "'";
    for (const char c : text)
        quoted += c == '\'' ? "'\\''" : std::string(1, c);
    return quoted + "'";
}

void RunTool(const std::string& command)
{
    // NOLINTNEXTLINE(concurrency-mt-unsafe): one thread
    ASSERT_EQ(std::system(command.c_str()), 0) << command;
}

} // namespace

KivoRun::KivoRun(const std::vector<std::string>& arguments)
    : KivoRun(arguments, World())
{
}

KivoRun::KivoRun(const std::vector<std::string>& arguments, const World& world)
{
    std::array<int, 2> ends{-1, -1};
    EXPECT_EQ(pipe2(ends.data(), O_CLOEXEC), 0);
    pid_ = fork();
    if (pid_ == 0)
        Become(arguments, world, ends[1]);
    close(ends[1]);
    stream_ = ends[0];
}

KivoRun::~KivoRun()
{
    if (!hasEnded_) {
        kill(pid_, SIGKILL);
        waitpid(pid_, nullptr, 0);
    }
    close(stream_);
}

bool KivoRun::ReadMore(int milliseconds)
{
    pollfd wait{stream_, POLLIN, 0};
    if (poll(&wait, 1, milliseconds) <= 0)
        return false;
    std::array<char, 4096> buffer{};
    const ssize_t count = read(stream_, buffer.data(), buffer.size());
    if (count <= 0)
        return false;
    errors_.append(buffer.data(), static_cast<std::size_t>(count));
    return true;
}

bool KivoRun::WaitFor(const std::string& text, int seconds)
{
    const auto deadline = Clock::now() + std::chrono::seconds(seconds);
    while (errors_.find(text) == std::string::npos)
        if (!ReadMore(GetMillisecondsUntil(deadline)))
            return false;
    return true;
}

int KivoRun::WaitForEnd(int seconds)
{
    const auto deadline = Clock::now() + std::chrono::seconds(seconds);
    while (ReadMore(GetMillisecondsUntil(deadline))) {
    }
    if (Clock::now() >= deadline)
        return -1;
    int status = 0;
    waitpid(pid_, &status, 0);
    hasEnded_ = true;
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

void KivoRun::Signal(int number) const
{
    kill(pid_, number);
}

std::string
MediaFolder::Make(const std::string& name, double seconds, const std::string& options) const
{
    RunTool("ffmpeg -loglevel error -y -f lavfi -i sine=frequency=440:sample_rate=44100:duration=" +
            std::to_string(seconds) + " -ac 2 " + options + " " + Quote(GetPath(name)));
    return GetPath(name);
}

std::string MediaFolder::MakeVideo(const std::string& name, double seconds) const
{
    const std::string length = std::to_string(seconds);
    RunTool("ffmpeg -loglevel error -y -f lavfi -i testsrc=size=160x120:rate=25:duration=" +
            length + " -f lavfi -i sine=frequency=440:sample_rate=44100:duration=" + length +
            " -ac 2 " + Quote(GetPath(name)));
    return GetPath(name);
}

std::string MediaFolder::GetPath(const std::string& name) const
{
    return (folder_.GetNative() / name).native();
}

Sound ReadWaveFile(const std::string& path)
{
    constexpr std::size_t kHeader = 44;
    std::ifstream file(path, std::ios::binary);
    const std::vector<char> bytes(std::istreambuf_iterator<char>(file), {});
    if (bytes.size() < kHeader || std::memcmp(bytes.data(), "RIFF", 4) != 0)
        return {};
    std::uint16_t channels = 0;
    std::uint32_t rate = 0;
    std::memcpy(&channels, bytes.data() + 22, sizeof channels);
    std::memcpy(&rate, bytes.data() + 24, sizeof rate);
    std::vector<std::int16_t> samples((bytes.size() - kHeader) / 2);
    std::memcpy(samples.data(), bytes.data() + kHeader, samples.size() * 2);
    return Measure(samples, channels, static_cast<int>(rate));
}

Sound Decode(const std::string& path)
{
    constexpr int kRate = 44100;
    const std::string command =
        "ffmpeg -loglevel error -i " + Quote(path) + " -vn -f s16le -ac 2 -ar 44100 -";
    struct Close {
        void operator()(FILE* stream) const { pclose(stream); }
    };
    const std::unique_ptr<FILE, Close> stream(popen(command.c_str(), "r"));
    std::vector<std::int16_t> samples;
    std::array<std::int16_t, 4096> buffer{};
    while (const std::size_t count = fread(buffer.data(), 2, buffer.size(), stream.get()))
        samples.insert(samples.end(), buffer.data(), buffer.data() + count);
    return Measure(samples, 2, kRate);
}

} // namespace kivo::test
