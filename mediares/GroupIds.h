#pragma once

#include "shell/contracts/base/String.h"

// A group is named by its id: "playing", "mine", "hot", or "user" followed by a SID. Ids compare
// exactly. Thread: user interface.
namespace kivo::tunehive {

inline constexpr StringView kPlayingGroup = u"playing";
inline constexpr StringView kMineGroup = u"mine";
inline constexpr StringView kHotGroup = u"hot";
inline constexpr StringView kUserGroup = u"user"; // No group by itself: the start of its ids.

[[nodiscard]] bool IsFixedGroupID(StringView id);
[[nodiscard]] bool IsUserGroupID(StringView id);
[[nodiscard]] String UserGroupSuffix(StringView id); // The SID behind "user"; else empty.

// The name of a fixed group in the user's language; of "user" the base of new names; else empty.
[[nodiscard]] String GroupDefaultName(StringView id);
[[nodiscard]] bool IsDefaultGroupName(StringView name); // One of the three fixed groups' names.

// "playing" 0, "mine" 1, user groups 2, "hot" 3; -1 for anything else.
[[nodiscard]] int GroupDisplayOrder(StringView id);

// The name of a group's file, and back: empty for what is no group's file.
[[nodiscard]] String GroupFileName(StringView id);
[[nodiscard]] String GroupIdFromFileName(StringView name);

} // namespace kivo::tunehive
