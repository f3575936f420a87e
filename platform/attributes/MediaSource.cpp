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
// The size that read a mix of formats fastest; larger windows read more than the tags need.
constexpr std::size_t kWindowBytes = 16 * 1024;
constexpr std::size_t kPageBytes = 4 * 1024;

// From one file to the next: without it each of them would get fresh memory.
thread_local std::unique_ptr<char[]> spareWindow;
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
    if (window_)
        spareWindow = std::move(window_);
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

bool MediaSource::MoveWindow(std::int64_t offset)
{
    const std::int64_t start = offset - offset % static_cast<std::int64_t>(kPageBytes);
    constexpr std::size_t kSize = kWindowBytes + kPageBytes;
    if (!window_)
        window_ =
            spareWindow ? std::move(spareWindow) : std::make_unique_for_overwrite<char[]>(kSize);
    windowSize_ = ReadThrough(start, window_.get(), kSize);
    windowStart_ = start;
    return windowSize_ > 0;
}

std::size_t MediaSource::ReadAt(std::int64_t offset, void* bytes, std::size_t count)
{
    if (!IsOpen() || offset < 0 || offset >= length_)
        return 0;
    count = std::min(count, static_cast<std::size_t>(length_ - offset));
    if (count > kWindowBytes)
        return ReadThrough(offset, static_cast<char*>(bytes), count);

    const auto end = [this] { return windowStart_ + static_cast<std::int64_t>(windowSize_); };
    const bool inside =
        offset >= windowStart_ && offset + static_cast<std::int64_t>(count) <= end();
    if (!inside && !MoveWindow(offset))
        return 0;
    if (offset >= end())
        return 0; // The file has become shorter.
    const std::size_t got = std::min(count, static_cast<std::size_t>(end() - offset));
    std::memcpy(bytes, window_.get() + (offset - windowStart_), got);
    return got;
}

} // namespace kivo::attributes
