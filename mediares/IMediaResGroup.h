#pragma once

#include "medialib/MediaInfo.h"
#include "shell/contracts/base/String.h"

#include <set>
#include <vector>

namespace kivo::tunehive {

// A named collection of tracks, without an order of its own: the rows of the tree keep that, and
// hand it back at a save. A track is a stored record (ItemKey) under a SID. The group tells nobody
// of changes. Look it up anew through the manager each time. Thread: user interface.
class IMediaResGroup {
public:
    virtual void Release() = 0; // By the manager alone.

    [[nodiscard]] virtual String GetID() = 0;
    [[nodiscard]] virtual String GetName() = 0;  // As it is shown, in today's language.
    [[nodiscard]] virtual int IsUserGroup() = 0; // 0 for the three fixed groups.
    [[nodiscard]] virtual int IsEditable() = 0;  // 0 for "hot": nothing adds to it or takes away.

    // Fills the group from its file, under new SIDs, which it appends in the order of the file.
    // Whatever it held before is gone. A file that can't be read gives an empty group.
    virtual void Load(std::vector<String>& sids) = 0;

    // Writes these tracks in this order; unknown SIDs are passed over, and a track that is not
    // named is not written. A group that isn't editable is never written.
    virtual void Save(const std::vector<String>& sids) = 0;

    // The new SID; empty when the group isn't editable or the record has no path. The same path
    // may be added again.
    virtual String AddItem(MediaInfo item) = 0;
    virtual void RemoveItem(const String& sid) = 0; // Nothing for an unknown SID.
    virtual void Clear() = 0;

    // The metadata of the track, asked from the library; it may read the file. Untouched for an
    // unknown SID.
    virtual void GetItemMediaInfo(const String& sid, MediaInfo& info) = 0;

    // The stored record. 1: the SID is known; else 0, and `item` is untouched.
    virtual int GetItem(const String& sid, MediaInfo& item) = 0;

    // Replaces the stored record, in any group; its path must stay. 1: the SID is known, else 0.
    virtual int SetItem(const String& sid, const MediaInfo& item) = 0;

    // Adds the SIDs that bear exactly this path to the set.
    virtual void FindItems(const String& path, std::set<String>& sids) = 0;

    virtual ~IMediaResGroup() = default;
};

} // namespace kivo::tunehive
