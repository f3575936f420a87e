#pragma once

#include "shell/base/TuneHiveEvent.h"

namespace kivo::tunehive {

// What the control reports. Every other number passes through without effect.
enum class PlayerState : int {
    Stopped = 1,
    Paused = 2,
    Playing = 3,
    Buffering = 6,
    Ended = 8,
    Transitioning = 9,
    Ready = 10,
};

// A state on its way to a listener, who owns it.
class ITuneHive_PlayerState final : public ITuneHive_AsyncCallbackParam {
public:
    explicit ITuneHive_PlayerState(int playerState)
        : state(playerState)
    {
    }

    const int state; // A PlayerState, or any other number of the control's.
};

} // namespace kivo::tunehive
