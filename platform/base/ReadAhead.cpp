#include "platform/base/Descriptor.h"
#include "shell/contracts/framework/Files.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>

namespace kivo {

namespace {

// What readers of tags ask for first: headers and ID3v2 stand in front, ID3v1 and the last page of
// an Ogg stream at the end. More would cost a slow disk more than it saves.
constexpr off_t kHead = 16 * 1024;
constexpr off_t kEnd = 4 * 1024;

} // namespace

void AskForFile(const String& path)
{
    const auto native = NativePath(path);
    if (!native)
        return;
    struct stat status = {};
    const Descriptor file = OpenRegular(*native, status);
    if (!file.IsOpen())
        return;
    posix_fadvise(file.Get(), 0, kHead, POSIX_FADV_WILLNEED);
    if (status.st_size > kHead)
        posix_fadvise(
            file.Get(), std::max(kHead, status.st_size - kEnd), kEnd, POSIX_FADV_WILLNEED);
}

} // namespace kivo
