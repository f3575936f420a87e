#pragma once

#include <cstdint>

namespace kivo::tunehive {

// Counts the addresses that were set and the stops, over all players: what was chosen before one of
// them is overtaken by it. Thread: user interface.
[[nodiscard]] std::uint64_t GetPlayTurn();
void NextPlayTurn();

// True from the setting of an address until the control reports a state.
[[nodiscard]] bool IsStartUnderWay();
void SetStartUnderWay(bool underWay);

} // namespace kivo::tunehive
