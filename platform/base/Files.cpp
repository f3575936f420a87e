#include "shell/contracts/framework/Files.h"

#include "platform/base/Descriptor.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

namespace kivo {

CBinaryFile::CBinaryFile() = default;

CBinaryFile::~CBinaryFile()
{
    Close();
}

bool CBinaryFile::Open(const String& path)
{
    Close();
    const auto native = NativePath(path);
    if (!native)
        return false;
    struct stat status = {};
    Descriptor file = OpenRegular(*native, status);
    descriptor_ = file.Release();
    length_ = descriptor_ >= 0 ? status.st_size : 0;
    return descriptor_ >= 0;
}

void CBinaryFile::Close()
{
    Descriptor(descriptor_).Close();
    descriptor_ = -1;
    length_ = 0;
}

std::int64_t CBinaryFile::GetLength() const
{
    return length_;
}

std::size_t CBinaryFile::ReadAt(std::int64_t offset, void* bytes, std::size_t count) const
{
    if (descriptor_ < 0 || offset < 0)
        return 0;
    std::size_t got = 0;
    const bool read = ReadFully(
        descriptor_, static_cast<std::size_t>(offset), static_cast<char*>(bytes), count, got);
    return read ? got : 0;
}

ReadResult ReadFileBytes(const String& path, std::string& bytes, std::size_t limit)
{
    const auto native = NativePath(path);
    if (!native)
        return ReadResult::Missing;
    struct stat status = {};
    const Descriptor file = OpenRegular(*native, status);
    if (!file.IsOpen())
        return errno == ENOENT || errno == ENOTDIR ? ReadResult::Missing : ReadResult::Failed;
    // The size is a hint: a file may grow under us, and those of /proc say 0.
    std::string content;
    std::size_t want = static_cast<std::size_t>(status.st_size);
    for (;;) {
        if (want > limit)
            return ReadResult::TooLarge;
        const std::size_t had = content.size();
        content.resize(want + 1);
        std::size_t got = 0;
        if (!ReadFully(file.Get(), had, content.data() + had, want + 1 - had, got))
            return ReadResult::Failed;
        content.resize(had + got);
        if (content.size() <= want)
            break;
        want = std::max(content.size(), std::min(limit, want * 2));
    }
    bytes = std::move(content);
    return ReadResult::Read;
}

} // namespace kivo
