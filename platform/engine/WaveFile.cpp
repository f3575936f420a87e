#include "platform/engine/WaveFile.h"

#include "shell/contracts/common/Text.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <limits>

namespace kivo {

namespace {

constexpr std::int64_t kHeaderBytes = 44;
constexpr int kBytesPerSample = 2;
constexpr int kDefaultRate = 44'100;
constexpr int kDefaultChannels = 2;
constexpr int kMostNames = 100;

void Append(std::string& bytes, std::uint32_t number, int count)
{
    for (int i = 0; i < count; ++i)
        bytes.push_back(static_cast<char>(number >> (8 * i) & 0xFFU));
}

} // namespace

WaveFile::WaveFile(const String& target)
    : target_(common::TextToPath(target))
{
    for (int i = 1; descriptor_ < 0 && i <= kMostNames; ++i) {
        temporary_ = target_ + ".part-" + std::to_string(i);
        descriptor_ = open(temporary_.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    }
    if (descriptor_ < 0)
        return;
    const std::string room(static_cast<std::size_t>(kHeaderBytes), '\0');
    if (write(descriptor_, room.data(), room.size()) != kHeaderBytes) {
        close(descriptor_);
        unlink(temporary_.c_str());
        descriptor_ = -1;
    }
}

WaveFile::~WaveFile()
{
    if (descriptor_ < 0)
        return;
    close(descriptor_);
    unlink(temporary_.c_str());
}

void WaveFile::SetFormat(int rate, int channels)
{
    rate_ = rate;
    channels_ = channels;
}

bool WaveFile::Finish()
{
    struct stat status {};
    if (descriptor_ < 0 || fstat(descriptor_, &status) != 0)
        return false;
    const std::string header = MakeHeader(status.st_size - kHeaderBytes);
    const bool isWritten = pwrite(descriptor_, header.data(), header.size(), 0) == kHeaderBytes &&
                           fsync(descriptor_) == 0 &&
                           std::rename(temporary_.c_str(), target_.c_str()) == 0;
    close(descriptor_);
    descriptor_ = -1;
    if (!isWritten)
        unlink(temporary_.c_str());
    return isWritten;
}

std::string WaveFile::MakeHeader(std::int64_t sampleBytes) const
{
    const int channels = channels_ > 0 ? channels_ : kDefaultChannels;
    const int frameBytes = channels * kBytesPerSample;
    const auto rate = static_cast<std::uint32_t>(rate_ > 0 ? rate_ : kDefaultRate);
    // The format can't say more than four gigabytes; players read on to the end of the file.
    constexpr std::int64_t kMost = std::numeric_limits<std::uint32_t>::max() - kHeaderBytes;
    const auto data = static_cast<std::uint32_t>(
        std::clamp<std::int64_t>(sampleBytes / frameBytes * frameBytes, 0, kMost));

    std::string bytes = "RIFF";
    Append(bytes, data + static_cast<std::uint32_t>(kHeaderBytes) - 8, 4);
    bytes += "WAVEfmt ";
    Append(bytes, 16, 4); // Bytes of the format that follow.
    Append(bytes, 1, 2);  // Plain samples.
    Append(bytes, static_cast<std::uint32_t>(channels), 2);
    Append(bytes, rate, 4);
    Append(bytes, rate * static_cast<std::uint32_t>(frameBytes), 4);
    Append(bytes, static_cast<std::uint32_t>(frameBytes), 2);
    Append(bytes, 8 * kBytesPerSample, 2);
    bytes += "data";
    Append(bytes, data, 4);
    return bytes;
}

} // namespace kivo
