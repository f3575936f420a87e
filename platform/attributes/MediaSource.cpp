#include "platform/attributes/MediaSource.h"

#include "shell/contracts/common/Text.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <utility>

namespace kivo::attributes {

namespace {
// The size that read a collection of five formats fastest; larger ones read more than tags need.
constexpr std::size_t kWindowBytes = 8 * 1024;
constexpr std::size_t kPageBytes = 4 * 1024;
constexpr std::size_t kWholeWindowBytes = kWindowBytes + kPageBytes; // It starts on a page.

// From one file to the next: without it each of them would get fresh memory.
thread_local std::unique_ptr<char[]> spareMemory;
} // namespace

MediaSource::MediaSource(const String& path)
    : descriptor_(
          ::open(common::TextToPath(path).c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY))
{
    struct stat status {};
    if (descriptor_ < 0)
        return;
    if (::fstat(descriptor_, &status) != 0 || !S_ISREG(status.st_mode)) {
        ::close(descriptor_);
        descriptor_ = -1;
        return;
    }
    length_ = status.st_size;
    ::posix_fadvise(descriptor_, 0, 0, POSIX_FADV_RANDOM);
}

MediaSource::~MediaSource()
{
    if (descriptor_ >= 0)
        ::close(descriptor_);
    if (memory_)
        spareMemory = std::move(memory_);
}

void MediaSource::ExpectSequentialReads() const
{
    if (IsOpen())
        ::posix_fadvise(descriptor_, 0, 0, POSIX_FADV_NORMAL);
}

std::size_t MediaSource::ReadThrough(std::int64_t offset, char* bytes, std::size_t count) const
{
    std::size_t done = 0;
    while (done < count) {
        const off_t from = offset + static_cast<std::int64_t>(done);
        const ssize_t got = ::pread(descriptor_, bytes + done, count - done, from);
        if (got < 0 && errno == EINTR)
            continue;
        if (got <= 0)
            break;
        done += static_cast<std::size_t>(got);
    }
    return done;
}

const MediaSource::Window& MediaSource::FindWindow(std::int64_t offset, std::size_t count)
{
    const auto holds = [&](const Window& window) {
        return offset >= window.start && offset + static_cast<std::int64_t>(count) <=
                                             window.start + static_cast<std::int64_t>(window.size);
    };
    if (!memory_) {
        memory_ = spareMemory
                      ? std::move(spareMemory)
                      : std::make_unique_for_overwrite<char[]>(windows_.size() * kWholeWindowBytes);
        for (std::size_t i = 0; i < windows_.size(); ++i)
            windows_.at(i).bytes = memory_.get() + i * kWholeWindowBytes;
    }
    auto found = std::find_if(windows_.begin(), windows_.end(), holds);
    if (found == windows_.end()) {
        found = windows_.end() - 1;
        found->start = offset - offset % static_cast<std::int64_t>(kPageBytes);
        found->size = ReadThrough(found->start, found->bytes, kWholeWindowBytes);
    }
    std::rotate(windows_.begin(), found, found + 1);
    return windows_.front();
}

std::size_t MediaSource::ReadAt(std::int64_t offset, void* bytes, std::size_t count)
{
    if (!IsOpen() || offset < 0 || offset >= length_)
        return 0;
    count = std::min(count, static_cast<std::size_t>(length_ - offset));
    if (count > kWindowBytes)
        return ReadThrough(offset, static_cast<char*>(bytes), count);

    const Window& window = FindWindow(offset, count);
    const auto skipped = static_cast<std::size_t>(offset - window.start);
    if (skipped >= window.size)
        return 0; // The file has become shorter.
    const std::size_t got = std::min(count, window.size - skipped);
    std::memcpy(bytes, window.bytes + skipped, got);
    return got;
}

} // namespace kivo::attributes
