#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

// One folder's entries. Thread: any.
namespace kivo {

// What stands behind a name, links followed. Other: a FIFO, a socket, a device, a dangling link.
enum class EntryKind { File, Folder, Other };

struct FolderEntry {
    std::string name;
    EntryKind kind = EntryKind::Other;
};

using FolderIdentity = std::pair<unsigned long long, unsigned long long>; // Device and inode.

class IFolderFilter {
public:
    [[nodiscard]] virtual bool Enter(FolderIdentity folder) = 0; // False: it lists nothing.

protected:
    ~IFolderFilter() = default;
};

// All entries but "." and "..", in ascending order of the names' bytes. A folder that can't be read
// has none.
[[nodiscard]] std::vector<FolderEntry> ListFolder(const std::string& folder,
                                                  IFolderFilter* filter = nullptr);

[[nodiscard]] std::string JoinPath(std::string_view folder, std::string_view name);

} // namespace kivo
