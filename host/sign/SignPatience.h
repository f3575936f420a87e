#pragma once

#include <chrono>

namespace kivo::host {

// How long the network waits for a server. Tests have less patience.
struct SignPatience {
    std::chrono::milliseconds attempt{30'000};  // From the first byte until the user is let in.
    std::chrono::milliseconds arrival{30'000};  // From there to the first answers.
    std::chrono::milliseconds silence{120'000}; // Then the server is asked for a word,
    std::chrono::milliseconds answer{30'000};   // and has so long to give one.
};

} // namespace kivo::host
