#pragma once

namespace kivo::tunehive {

// How loud it plays, 0 to 100, as the volume's controls show and set it: the current player's;
// before there is one, what the first will start with. That is beyond the rules of the system:
// without the switch there is no volume then, -1, and none is set. Thread: user interface.
[[nodiscard]] int GetOutputVolume();
void SetOutputVolume(int volume);

} // namespace kivo::tunehive
