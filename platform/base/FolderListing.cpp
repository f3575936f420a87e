#include "platform/base/FolderListing.h"

#include "platform/base/Descriptor.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <memory>

namespace kivo {
namespace {

struct CloseFolder {
    void operator()(DIR* folder) const { closedir(folder); }
};

EntryKind KindOf(const DIR* folder, const dirent& entry)
{
    if (entry.d_type == DT_REG)
        return EntryKind::File;
    if (entry.d_type == DT_DIR)
        return EntryKind::Folder;
    if (entry.d_type != DT_LNK && entry.d_type != DT_UNKNOWN)
        return EntryKind::Other;
    struct stat status = {};
    // dirfd takes its argument without const and leaves it as it is.
    if (fstatat(dirfd(const_cast<DIR*>(folder)), entry.d_name, &status, 0) != 0)
        return EntryKind::Other;
    if (S_ISREG(status.st_mode))
        return EntryKind::File;
    return S_ISDIR(status.st_mode) ? EntryKind::Folder : EntryKind::Other;
}

} // namespace

std::vector<FolderEntry> ListFolder(const std::string& folder, IFolderFilter* filter)
{
    std::vector<FolderEntry> entries;
    Descriptor descriptor(open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    struct stat status = {};
    if (!descriptor.IsOpen() || fstat(descriptor.Get(), &status) != 0)
        return entries;
    if (filter != nullptr && !filter->Enter({status.st_dev, status.st_ino}))
        return entries;
    const std::unique_ptr<DIR, CloseFolder> open(fdopendir(descriptor.Get()));
    if (!open)
        return entries;
    static_cast<void>(descriptor.Release()); // closedir closes it.
    // NOLINTNEXTLINE(concurrency-mt-unsafe): safe on a stream that no other thread has
    while (const dirent* entry = readdir(open.get())) {
        const std::string_view name = entry->d_name;
        if (name != "." && name != "..")
            entries.push_back({std::string(name), KindOf(open.get(), *entry)});
    }
    std::sort(entries.begin(), entries.end(), [](const FolderEntry& a, const FolderEntry& b) {
        return a.name < b.name;
    });
    return entries;
}

std::string JoinPath(std::string_view folder, std::string_view name)
{
    std::string path(folder);
    if (!path.empty() && path.back() != '/')
        path += '/';
    path += name;
    return path;
}

} // namespace kivo
