#pragma once

#include "shell/contracts/base/String.h"

namespace kivo::tunehive {

// Three values that outlive a run, and their file "config.xml". Nobody is told of a change.
// Thread: user interface.

[[nodiscard]] int GetPlayMode(); // 2, sequence, before anything else was read or set.
void SetPlayMode(int mode);

// The folder that was last used in a picker; empty before the first.
[[nodiscard]] const String& GetOpenPath();
void SetOpenPath(const String& folder);

// The volume that was last set, 60 at first. Only remembered: the player starts with its own.
[[nodiscard]] int GetRememberedVolume();
void SetRememberedVolume(int volume);

// Takes the values over from the file. A value that the file lacks stays as it is; so do all when
// there is no file or it can't be read. A file of the older form is set aside afterwards.
void ReadConfig();

// Writes the file, once for each ReadConfig: without one before it, it does nothing, lest defaults
// replace what a user has set. A file that gave nothing is kept aside first. The file is old or
// new at any moment, never a part.
void WriteConfig();

} // namespace kivo::tunehive
