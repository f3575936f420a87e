#include "platform/engine/SoundOutput.h"

#include "platform/engine/Core.h"

#include <sys/stat.h>

#include <cstdlib>
#include <string_view>

namespace kivo {

namespace {

// A server's socket stands there a moment before the server answers.
constexpr int kSearches = 3;

std::string GetEnvironment(const char* name)
{
    const char* const value = std::getenv(name); // NOLINT(concurrency-mt-unsafe): nobody sets it
    return value != nullptr ? value : "";
}

std::string DescribeFile(const std::string& path)
{
    struct stat status {};
    if (path.empty() || stat(path.c_str(), &status) != 0)
        return "-;";
    return std::to_string(status.st_ino) + '.' + std::to_string(status.st_ctim.tv_sec) + '.' +
           std::to_string(status.st_ctim.tv_nsec) + ';';
}

} // namespace

std::string DescribeSoundSources()
{
    constexpr std::string_view kUnix = "unix:";
    const std::string runtime = GetEnvironment("XDG_RUNTIME_DIR");
    std::string server = GetEnvironment("PULSE_SERVER");
    if (server.starts_with(kUnix))
        server.erase(0, kUnix.size());
    return DescribeFile(server) + DescribeFile(runtime + "/pulse/native") +
           DescribeFile(runtime + "/pipewire-0") + DescribeFile("/dev/snd");
}

void SoundOutput::Prepare(mpv_handle* core)
{
    Check(core);
    if (!isMissing_ || isSilenced_)
        return;
    isSilenced_ = true;
    WriteText(core, "ao", "null");
}

void SoundOutput::Check(mpv_handle* core)
{
    if (!isMissing_)
        return;
    const std::string sources = DescribeSoundSources();
    if (sources != sources_)
        searches_ = kSearches;
    sources_ = sources;
    if (searches_ == 0)
        return;
    --searches_;
    isSilenced_ = false;
    WriteText(core, "ao", kSoundOutputs);
    SendCommand(core, 0, {"ao-reload"});
}

void SoundOutput::OnCurrent(const std::string& name)
{
    if (isChosen_ || name.empty())
        return;
    const bool wasMissing = isMissing_;
    isMissing_ = name == "null";
    if (isMissing_ && !wasMissing)
        sources_ = DescribeSoundSources();
    if (!isMissing_)
        searches_ = 0;
}

} // namespace kivo
