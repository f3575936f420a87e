#pragma once

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

} // namespace kivo::tunehive
