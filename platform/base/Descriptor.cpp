#include "platform/base/Descriptor.h"

#include "shell/contracts/common/Text.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

namespace kivo {

bool Descriptor::Close()
{
    const int number = Release();
    return number < 0 || close(number) == 0 || errno == EINTR;
}

std::optional<std::string> NativePath(StringView path)
{
    if (path.find(u'\0') != StringView::npos)
        return std::nullopt;
    return common::TextToPath(path);
}

Descriptor OpenRegular(const std::string& path, struct stat& status)
{
    Descriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
    if (!file.IsOpen() || fstat(file.Get(), &status) != 0)
        return {};
    if (!S_ISREG(status.st_mode)) {
        file.Close();
        errno = EINVAL;
        return {};
    }
    return file;
}

bool ReadFully(int descriptor, std::size_t offset, char* bytes, std::size_t count, std::size_t& got)
{
    got = 0;
    while (got < count) {
        const ssize_t done =
            pread(descriptor, bytes + got, count - got, static_cast<off_t>(offset + got));
        if (done < 0 && errno == EINTR)
            continue;
        if (done <= 0)
            return done == 0;
        got += static_cast<std::size_t>(done);
    }
    return true;
}

std::string FolderOf(const std::string& path)
{
    const std::size_t last = path.rfind('/');
    return last == std::string::npos ? "./" : path.substr(0, last + 1);
}

std::string NameOf(const std::string& path)
{
    return path.substr(path.rfind('/') + 1);
}

} // namespace kivo
