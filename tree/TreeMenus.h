#pragma once

#include "shell/contracts/base/String.h"
#include "shell/contracts/ui/Menu.h"

namespace kivo::tunehive {

// Command ids of the entries. Those of a target group are a base and the group's index.
enum MenuCommand : int {
    kCommandPlay = 1,
    kCommandPause = 2,
    kCommandNewGroup = 3,
    kCommandSaveGroup = 4,
    kCommandClearGroup = 5,
    kCommandDeleteGroup = 6,
    kCommandRenameGroup = 7,
    kCommandSearch = 8,
    kCommandDeleteTrack = 9,
    kCommandRenameTrack = 10,
    kCommandOpenTrack = 11,
    // 12 to 16: the play modes, see kPlayModes.
    kCommandAddFiles = 17,
    kCommandAddFolder = 18,
    kCommandAddURL = 19,
    kCommandAddGroup = 20,
    kCommandDeleteTracks = 22,
    kCommandDeleteDuplicates = 23,
    kCommandDeleteGroups = 25,
    kCommandMoveTo = 0xE000,
    kCommandCopyTo = 0xF000,
};

// Each makes a menu afresh, which belongs to the popup. The delegate gets the chosen entry.
// Thread: user interface.
[[nodiscard]] ui::IMenu* MakeGroupMenu(const ui::MenuDelegate& delegate, const String& group);
[[nodiscard]] ui::IMenu*
MakeTrackMenu(const ui::MenuDelegate& delegate, const String& group, bool offersPause);
[[nodiscard]] ui::IMenu* MakeMultiSelectMenu(const ui::MenuDelegate& delegate);
[[nodiscard]] ui::IMenu* MakeAddMenu(const ui::MenuDelegate& delegate);

// `hasGroup`: a group row is what is selected; `canDeleteGroup`: and it may be deleted, or tracks
// are selected.
[[nodiscard]] ui::IMenu*
MakeDeleteMenu(const ui::MenuDelegate& delegate, int hasGroup, int canDeleteGroup);
[[nodiscard]] ui::IMenu* MakeModeMenu(const ui::MenuDelegate& delegate);

// The target group of a command of the menu that was built last; empty: no such command.
[[nodiscard]] String GroupFromCommand(int command, MenuCommand base);

} // namespace kivo::tunehive
