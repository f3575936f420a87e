#include "platform/base/Descriptor.h"
#include "shell/contracts/framework/Files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/uio.h>

#include <algorithm>

namespace kivo {

namespace {

// What readers of tags ask for first: headers and ID3v2 stand in front, ID3v1 and the last page of
// an Ogg stream at the end. More would cost a slow disk more than it saves.
constexpr off_t kHead = 32 * 1024;
constexpr off_t kEnd = 16 * 1024;

// Whether the first byte can be read without the disk. An empty file needs none. The advice keeps
// the question from starting a read of its own, larger than ours.
bool IsInMemory(int descriptor)
{
    posix_fadvise(descriptor, 0, 0, POSIX_FADV_RANDOM);
    char byte = 0;
    const iovec room = {&byte, sizeof byte};
    return preadv2(descriptor, &room, 1, 0, RWF_NOWAIT) >= 0;
}

} // namespace

bool AskForFile(const String& path)
{
    const auto native = NativePath(path);
    if (!native)
        return false;
    struct stat status = {};
    const Descriptor file = OpenRegular(*native, status);
    if (!file.IsOpen() || IsInMemory(file.Get()))
        return false;
    posix_fadvise(file.Get(), 0, kHead, POSIX_FADV_WILLNEED);
    if (status.st_size > kHead)
        posix_fadvise(
            file.Get(), std::max(kHead, status.st_size - kEnd), kEnd, POSIX_FADV_WILLNEED);
    return true;
}

} // namespace kivo
