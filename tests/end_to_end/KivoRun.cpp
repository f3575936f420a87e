#include "tests/end_to_end/KivoRun.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <cstring>
#include <fstream>
#include <iterator>
#include <sstream>

namespace kivo::test {

namespace {

// The program becomes the child: its errors go to the one stream that is read.
std::vector<std::string> MakeCommand(const std::vector<std::string>& arguments,
                                     const KivoRun::World& world)
{
    std::vector<std::string> unset{
        "DISPLAY", "WAYLAND_DISPLAY", "DBUS_SESSION_BUS_ADDRESS", "LANG"};
    std::vector<std::string> set{
        "QT_QPA_PLATFORM=offscreen", "LC_ALL=C.UTF-8", "PULSE_SERVER=unix:/nowhere"};
    for (const std::string& variable : world.environment) {
        if (variable.back() == '=')
            unset.push_back(variable.substr(0, variable.size() - 1));
        else
            set.push_back(variable);
    }
    std::vector<std::string> command{"env"};
    for (const std::string& name : unset)
        command.insert(command.end(), {"-u", name});
    command.insert(command.end(), set.begin(), set.end());
    if (const std::string user = std::to_string(world.user); world.user != 0)
        command.insert(command.end(),
                       {"setpriv", "--reuid", user, "--regid", user, "--clear-groups"});
    command.insert(command.end(),
                   {"sh",
                    "-c",
                    R"(exec "$0" "$@" 2>&1 >/dev/null </dev/null)",
                    world.program.empty() ? KIVO_PROGRAM : world.program});
    command.insert(command.end(), arguments.begin(), arguments.end());
    return command;
}

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

} // namespace

KivoRun::KivoRun(const std::vector<std::string>& arguments)
    : KivoRun(arguments, World())
{
}

KivoRun::KivoRun(const std::vector<std::string>& arguments, const World& world)
    : process_(MakeCommand(arguments, world))
{
}

bool KivoRun::WaitFor(const std::string& text, int seconds)
{
    const auto isMeant = [&text](const std::string& line) {
        return line.find(text) != std::string::npos;
    };
    return isMeant(GetErrors()) || !process_.WaitFor(isMeant, seconds * 1000).empty();
}

std::string MediaFolder::Encode(const std::string& name, const std::string& options) const
{
    std::vector<std::string> command{"ffmpeg", "-nostdin", "-loglevel", "error", "-y"};
    std::istringstream words(options);
    for (std::string word; words >> word;)
        command.push_back(word);
    command.push_back(GetPath(name));
    EXPECT_EQ(RunCommand(command), 0) << options;
    return GetPath(name);
}

std::string
MediaFolder::Make(const std::string& name, double seconds, const std::string& options) const
{
    return Encode(name,
                  "-f lavfi -i sine=frequency=440:sample_rate=44100:duration=" +
                      std::to_string(seconds) + " " + options + " -ac 2");
}

std::string MediaFolder::MakeVideo(const std::string& name, double seconds) const
{
    const std::string picture = "-f lavfi -i testsrc=size=160x120:rate=25:duration=";
    return Make(name, seconds, picture + std::to_string(seconds));
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
    Process ffmpeg({"ffmpeg",
                    "-nostdin",
                    "-loglevel",
                    "error",
                    "-i",
                    path,
                    "-vn",
                    "-f",
                    "s16le",
                    "-ac",
                    "2",
                    "-ar",
                    "44100",
                    "-"});
    EXPECT_EQ(ffmpeg.WaitForEnd(), 0) << path;
    std::vector<std::int16_t> samples(ffmpeg.GetOutput().size() / 2);
    std::memcpy(samples.data(), ffmpeg.GetOutput().data(), samples.size() * 2);
    return Measure(samples, 2, 44100);
}

} // namespace kivo::test
