#include "tests/platform/engine/SoundServer.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>

// NOLINTBEGIN(concurrency-mt-unsafe): nobody else reads or sets these variables meanwhile

namespace kivo::test {

namespace {

constexpr int kTries = 200;
constexpr int kPause = 20; // Milliseconds.

std::string ReadOutput(const std::string& command)
{
    std::string output;
    if (FILE* const pipe = popen(command.c_str(), "r")) {
        std::array<char, 4096> bytes{};
        while (const std::size_t count = fread(bytes.data(), 1, bytes.size(), pipe))
            output.append(bytes.data(), count);
        pclose(pipe);
    }
    return output;
}

} // namespace

SoundServer::SoundServer()
    : socket_(folder_.GetNative() / "sound")
{
    setenv("PULSE_SERVER", ("unix:" + socket_).c_str(), 1);
    setenv("PULSE_COOKIE", (folder_.GetNative() / "cookie").c_str(), 1);
}

SoundServer::~SoundServer()
{
    Kill();
    unsetenv("PULSE_SERVER");
    unsetenv("PULSE_COOKIE");
}

bool SoundServer::IsInstalled()
{
    return std::filesystem::exists("/usr/bin/pulseaudio") &&
           std::filesystem::exists("/usr/bin/pactl");
}

bool SoundServer::Start()
{
    std::filesystem::remove(socket_);
    const std::string home = folder_.GetNative();
    const std::string protocol = "module-native-protocol-unix auth-anonymous=1 socket=" + socket_;
    process_ = fork();
    if (process_ == 0) {
        setenv("HOME", home.c_str(), 1);
        setenv("XDG_RUNTIME_DIR", home.c_str(), 1);
        unsetenv("PULSE_SERVER");
        const int nowhere = open("/dev/null", O_WRONLY);
        dup2(nowhere, STDERR_FILENO);
        execl("/usr/bin/pulseaudio",
              "pulseaudio",
              "-n",
              "--daemonize=no",
              "--use-pid-file=no",
              "--exit-idle-time=-1",
              "-L",
              "module-null-sink",
              "-L",
              protocol.c_str(),
              nullptr);
        _exit(1);
    }
    for (int i = 0; i < kTries; ++i) {
        if (ReadOutput("pactl info 2>/dev/null").find("Server Name") != std::string::npos)
            return true;
        poll(nullptr, 0, kPause);
    }
    return false;
}

void SoundServer::Kill()
{
    if (recorder_ != 0)
        static_cast<void>(StopRecording());
    if (process_ == 0)
        return;
    kill(process_, SIGKILL);
    waitpid(process_, nullptr, 0);
    process_ = 0;
}

void SoundServer::Freeze() const
{
    kill(process_, SIGSTOP);
}

void SoundServer::Thaw() const
{
    kill(process_, SIGCONT);
}

bool SoundServer::HasStream() const
{
    return !ReadOutput("pactl list short sink-inputs 2>/dev/null").empty();
}

void SoundServer::StartRecording()
{
    const std::string target = folder_.GetNative() / "recording";
    recorder_ = fork();
    if (recorder_ != 0)
        return;
    const int file = open(target.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
    dup2(file, STDOUT_FILENO);
    const std::string rate = "--rate=" + std::to_string(kRecordedRate);
    execlp("parec",
           "parec",
           "--device=@DEFAULT_MONITOR@",
           "--raw",
           "--latency-msec=20",
           "--format=s16le",
           "--channels=1",
           rate.c_str(),
           nullptr);
    _exit(1);
}

std::vector<std::int16_t> SoundServer::StopRecording()
{
    kill(recorder_, SIGTERM);
    waitpid(recorder_, nullptr, 0);
    recorder_ = 0;
    const std::string bytes = folder_.Read("recording");
    std::vector<std::int16_t> samples(bytes.size() / sizeof(std::int16_t));
    std::memcpy(samples.data(), bytes.data(), samples.size() * sizeof(std::int16_t));
    return samples;
}

} // namespace kivo::test

// NOLINTEND(concurrency-mt-unsafe)
