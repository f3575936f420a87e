#include "platform/base/Descriptor.h"
#include "platform/base/FailedWrites.h"
#include "platform/base/TemporaryName.h"
#include "shell/contracts/framework/Files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <optional>
#include <utility>

namespace kivo {
namespace {

constexpr std::size_t kChunk = std::size_t{256} * 1024;
constexpr int kMostLinks = 40;

bool WriteFully(int descriptor, const char* bytes, std::size_t count)
{
    while (count > 0) {
        const ssize_t done = write(descriptor, bytes, count);
        if (done < 0 && errno == EINTR)
            continue;
        if (done <= 0)
            return false;
        bytes += done;
        count -= static_cast<std::size_t>(done);
    }
    return true;
}

// Where a chain of links ends, so that the links stay and what they name is replaced; nothing for
// one that never ends. The end need not exist.
std::optional<std::string> FollowLinks(std::string path)
{
    for (int i = 0; i < kMostLinks; ++i) {
        std::string target(4096, '\0');
        const ssize_t length = readlink(path.c_str(), target.data(), target.size());
        if (length < 0)
            return path;
        target.resize(static_cast<std::size_t>(length));
        if (!target.starts_with('/'))
            target.insert(0, FolderOf(path));
        path = std::move(target);
    }
    return std::nullopt;
}

bool IsSame(const struct stat& a, const struct stat& b)
{
    return a.st_dev == b.st_dev && a.st_ino == b.st_ino && a.st_size == b.st_size &&
           a.st_mtim.tv_sec == b.st_mtim.tv_sec && a.st_mtim.tv_nsec == b.st_mtim.tv_nsec &&
           a.st_ctim.tv_sec == b.st_ctim.tv_sec && a.st_ctim.tv_nsec == b.st_ctim.tv_nsec;
}

// The name's entry reaches the disk with its folder. A folder that may not be read, or a file
// system that knows no such thing, is no failure of the write.
bool SyncFolder(const std::string& folder)
{
    const Descriptor open(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!open.IsOpen())
        return errno == EACCES;
    return fsync(open.Get()) == 0 || errno == EINVAL || errno == ENOTSUP;
}

} // namespace

// As long as what comes equals what stands on the disk nothing is written; the first difference
// starts the temporary file with the part that was equal.
struct CDurableFile::Impl {
    String path;
    std::string target; // The file behind the links.
    std::string temporaryPath;
    Descriptor old;
    struct stat oldStatus = {};
    Descriptor temporary;
    std::string buffer;
    std::size_t equal = 0; // Bytes that stand in the old file too.
    bool started = false;
    bool failed = false;

    void Start();
    void Flush();
    bool EqualsOld(std::string_view bytes) const;
    bool StartTemporary();
    void TakeOwnerAndMode() const;
    bool CopyEqualPart() const;
    bool IsOldUnchanged() const;
    bool Finish();
    void Discard();
};

void CDurableFile::Impl::Start()
{
    started = true;
    const auto native = NativePath(path);
    const auto end = native ? FollowLinks(*native) : std::nullopt;
    if (!end) {
        failed = true;
        return;
    }
    target = *end;
    // What exists and is no regular file (a folder, a device) is never replaced; what can't be read
    // can't be compared, but it can be replaced.
    struct stat status = {};
    if (stat(target.c_str(), &status) == 0) {
        failed = !S_ISREG(status.st_mode);
        oldStatus = status;
    } else {
        failed = errno != ENOENT;
    }
    if (failed || !S_ISREG(oldStatus.st_mode))
        return;
    old = OpenRegular(target, status);
    if (old.IsOpen())
        oldStatus = status;
}

bool CDurableFile::Impl::EqualsOld(std::string_view bytes) const
{
    if (!old.IsOpen() || equal + bytes.size() > static_cast<std::size_t>(oldStatus.st_size))
        return false;
    std::string there(bytes.size(), '\0');
    std::size_t got = 0;
    return ReadFully(old.Get(), equal, there.data(), there.size(), got) && got == bytes.size() &&
           there == bytes;
}

void CDurableFile::Impl::Flush()
{
    if (!started)
        Start();
    if (failed || buffer.empty())
        return;
    if (!temporary.IsOpen() && EqualsOld(buffer)) {
        equal += buffer.size();
    } else {
        failed = (!temporary.IsOpen() && !StartTemporary()) ||
                 !WriteFully(temporary.Get(), buffer.data(), buffer.size());
    }
    buffer.clear();
}

bool CDurableFile::Impl::StartTemporary()
{
    const bool replaces = S_ISREG(oldStatus.st_mode);
    temporary = CreateTemporary(target, replaces ? 0600 : 0666, temporaryPath);
    if (!temporary.IsOpen())
        return false;
    if (replaces)
        TakeOwnerAndMode();
    return CopyEqualPart();
}

// An owner that may not be given away stays ours; the mode then keeps no bits that act for it.
void CDurableFile::Impl::TakeOwnerAndMode() const
{
    const bool owned = fchown(temporary.Get(), oldStatus.st_uid, oldStatus.st_gid) == 0;
    const mode_t mode = oldStatus.st_mode & (owned ? 07777U : 0777U);
    if (fchmod(temporary.Get(), mode) != 0)
        return; // A file system without modes: nothing is lost by it.
}

bool CDurableFile::Impl::CopyEqualPart() const
{
    std::string chunk(std::min(kChunk, equal), '\0');
    for (std::size_t done = 0; done < equal;) {
        const std::size_t count = std::min(chunk.size(), equal - done);
        std::size_t got = 0;
        if (!ReadFully(old.Get(), done, chunk.data(), count, got) || got != count ||
            !WriteFully(temporary.Get(), chunk.data(), count))
            return false;
        done += count;
    }
    return equal == 0 || IsOldUnchanged();
}

// Somebody else may write the old file while it is compared: what was equal may be so no more.
bool CDurableFile::Impl::IsOldUnchanged() const
{
    struct stat now = {};
    return fstat(old.Get(), &now) == 0 && IsSame(now, oldStatus);
}

bool CDurableFile::Impl::Finish()
{
    Flush();
    if (failed)
        return false;
    if (!temporary.IsOpen()) {
        struct stat now = {};
        const bool whole = old.IsOpen() && equal == static_cast<std::size_t>(oldStatus.st_size);
        if (whole && stat(target.c_str(), &now) == 0 && IsSame(now, oldStatus))
            return true;
        if (!StartTemporary())
            return false;
    }
    if (fsync(temporary.Get()) != 0 || !temporary.Close())
        return false;
    if (rename(temporaryPath.c_str(), target.c_str()) != 0)
        return false;
    temporaryPath.clear();
    return SyncFolder(FolderOf(target));
}

void CDurableFile::Impl::Discard()
{
    temporary.Close();
    if (!temporaryPath.empty())
        unlink(temporaryPath.c_str());
    temporaryPath.clear();
}

CDurableFile::CDurableFile(const String& path)
    : impl_(std::make_unique<Impl>())
{
    impl_->path = path;
}

CDurableFile::~CDurableFile()
{
    impl_->Discard();
}

void CDurableFile::Write(std::string_view bytes)
{
    while (!bytes.empty() && !impl_->failed) {
        const std::size_t room = kChunk - impl_->buffer.size();
        impl_->buffer.append(bytes.substr(0, room));
        bytes.remove_prefix(std::min(room, bytes.size()));
        if (impl_->buffer.size() == kChunk)
            impl_->Flush();
    }
}

bool CDurableFile::Commit()
{
    const bool done = impl_->Finish();
    impl_->Discard();
    impl_->failed = true; // A second commit has nothing to give.
    if (done)
        NoteGoodWrite(impl_->path);
    else
        NoteFailedWrite(impl_->path);
    return done;
}

int WriteFileDurably(const String& path, std::string_view bytes)
{
    CDurableFile file(path);
    file.Write(bytes);
    return file.Commit() ? 1 : 0;
}

} // namespace kivo
