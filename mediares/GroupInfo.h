#pragma once

#include "shell/contracts/base/String.h"

#include <map>

namespace kivo::tunehive {

// The names of the user groups, by id, and their file "ginfo.xml". Names differ from each other and
// from those of the fixed groups in today's language. Thread: user interface.
class CGroupInfo {
public:
    CGroupInfo() = default;
    CGroupInfo(const CGroupInfo&) = delete;
    CGroupInfo& operator=(const CGroupInfo&) = delete;
    virtual ~CGroupInfo() = default;

    // Reads the file of the folder, which ends in a separator, through SetName; saves go there from
    // here on. An entry that SetName refuses has no name. Beyond the letter, it is kept and written
    // back until its group is renamed or removed: a change of language must not cost a name.
    void Load(const String& folder);

    // 1: the file holds the names. A file that gave nothing is kept aside first. 0: that failed.
    int Save();

    [[nodiscard]] int HasName(const String& name) const;     // 1: a user group bears it.
    [[nodiscard]] int IsNameValid(const String& name) const; // 1: free, and no fixed group's.
    [[nodiscard]] String GetName(const String& id) const;    // The id itself if it has none.

    // Of a fixed group, or of a user group as GetName has it; else empty.
    [[nodiscard]] String GetDisplayName(const String& id) const;

    // 0 and no change for a name that isn't valid; else the result of Save, with the name set.
    int SetName(const String& id, const String& name);
    int Remove(const String& id); // 0 for an id without a name; else the result of Save.

    [[nodiscard]] String GetNewName() const; // The default name and the first free number.

private:
    void TakeEntry(const String& id, const String& name);

    std::map<String, String> names_;
    std::map<String, String> refused_; // What the file holds and SetName refused for its name.
    String path_;
    bool isLoading_ = false; // Saves count as done; one follows.
    bool isUnread_ = false;  // The file stands there and did not give its content.
};

} // namespace kivo::tunehive
