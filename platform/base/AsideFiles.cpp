#include "platform/base/Descriptor.h"
#include "platform/base/FailedWrites.h"
#include "platform/base/FolderListing.h"
#include "platform/base/TemporaryName.h"
#include "shell/contracts/framework/Files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <ctime>

namespace kivo {
namespace {

constexpr std::string_view kOlder = ".older";
constexpr int kMostBroken = 9999;
constexpr std::time_t kDay = 24 * 60 * 60;

// 0, or the error of the rename. Never replaces a file.
int RenameWithoutReplacing(const std::string& from, const std::string& to)
{
    if (renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0)
        return 0;
    if (errno != EINVAL)
        return errno;
    // A file system without that operation: the look and the rename are two steps there.
    struct stat status = {};
    if (lstat(to.c_str(), &status) == 0)
        return EEXIST;
    return rename(from.c_str(), to.c_str()) == 0 ? 0 : errno;
}

bool KeepAsideNative(const std::string& path)
{
    for (int number = 1; number <= kMostBroken; ++number) {
        const int error = RenameWithoutReplacing(path, path + ".broken-" + std::to_string(number));
        if (error == 0 || error == ENOENT || error == ENOTDIR)
            return true;
        if (error != EEXIST)
            return false;
    }
    return false;
}

// A new form is never empty: an empty file beside an older form is one that was only created.
void RestoreOne(const std::string& older)
{
    const std::string path = older.substr(0, older.size() - kOlder.size());
    if (RenameWithoutReplacing(older, path) != EEXIST)
        return;
    struct stat status = {};
    if (stat(path.c_str(), &status) != 0 || !S_ISREG(status.st_mode))
        return; // A folder or a link to nowhere is no successor.
    if (status.st_size == 0)
        rename(older.c_str(), path.c_str());
    else
        unlink(older.c_str());
}

void RemoveLeftover(const std::string& path)
{
    struct stat status = {};
    if (lstat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode) &&
        status.st_uid == geteuid() && status.st_mtim.tv_sec < std::time(nullptr) - kDay)
        unlink(path.c_str());
}

} // namespace

int KeepAside(const String& path)
{
    const auto native = NativePath(path);
    if (!native || KeepAsideNative(*native))
        return 1;
    NoteFailedWrite(path);
    return 0;
}

int SetOlderAside(const String& path)
{
    const auto native = NativePath(path);
    if (!native)
        return 0;
    return rename(native->c_str(), (*native + std::string(kOlder)).c_str()) == 0 ? 1 : 0;
}

void DropOlder(const String& path)
{
    if (const auto native = NativePath(path))
        unlink((*native + std::string(kOlder)).c_str());
}

int CreateFileIfMissing(const String& path)
{
    const auto native = NativePath(path);
    if (native && RenameWithoutReplacing(*native + std::string(kOlder), *native) == 0)
        return 1;
    const Descriptor made(
        native ? open(native->c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666) : -1);
    if (made.IsOpen() || (native && errno == EEXIST))
        return 1;
    NoteFailedWrite(path);
    return 0;
}

void RestoreOlder(const String& folder)
{
    const auto native = NativePath(folder);
    if (!native)
        return;
    for (const FolderEntry& entry : ListFolder(*native)) {
        const std::string path = JoinPath(*native, entry.name);
        if (entry.kind == EntryKind::File && entry.name.size() > kOlder.size() &&
            entry.name.ends_with(kOlder))
            RestoreOne(path);
        else if (IsTemporaryName(entry.name))
            RemoveLeftover(path);
    }
}

} // namespace kivo
