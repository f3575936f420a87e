#pragma once

#include "shell/contracts/base/String.h"

#include <set>
#include <vector>

namespace kivo::tunehive {

class IMediaResGroup;

// Owns the groups of the user: finds them on disk, hands them out by id, makes, renames and deletes
// user groups, and says in which order they are shown. Thread: user interface.
class IMediaResManager {
public:
    // Starts with the folder of the groups, which ends in a separator; it is made if need be. A
    // group is then there for each group file, not yet filled. 0: started before; nothing changes.
    virtual int Init(const String& folder) = 0;
    virtual int Uninit() = 0; // Saves the names and frees all groups. 1.

    virtual void GetGroupIDs(std::set<String>& ids) = 0; // Adds every id.

    // Appends every id, then sorts the whole vector as groups are shown.
    virtual void GetSortedGroupIDs(std::vector<String>& ids) = 0;

    virtual int RemoveGroup(const String& id) = 0; // With its file. 1: removed. User groups alone.

    // 1: renamed, and the names are on disk. 0: no user group, a name that is taken, or no write.
    virtual int RenameGroup(const String& id, const String& name) = 0;

    // Null: no such group. Owned by the manager; don't keep it.
    [[nodiscard]] virtual IMediaResGroup* GetGroup(const String& id) = 0;

    virtual String CreateGroup(const String& name) = 0; // The new id; empty: refused, or no write.
    [[nodiscard]] virtual String GetNewGroupName() = 0; // A free default name.

    // <0, 0, >0 in the order of display; user groups among themselves by name, without case.
    [[nodiscard]] virtual int CompareGroups(const String& a, const String& b) = 0;

    virtual ~IMediaResManager() = default;
    virtual void Release() = 0;
};

// The one manager. GetMediaResManager creates it at the first call and belongs to the plug-in's
// load; everybody who may come late asks FindMediaResManager, which is null when there is none.
// Thread: user interface.
[[nodiscard]] IMediaResManager* GetMediaResManager();
[[nodiscard]] IMediaResManager* FindMediaResManager();
void DestroyMediaResManager(); // Releases it; harmless without one.

} // namespace kivo::tunehive
