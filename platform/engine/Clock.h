#pragma once

#include <chrono>
#include <cstdint>

namespace kivo {

// Milliseconds of a clock that never goes back.
[[nodiscard]] inline std::int64_t GetSteadyTime()
{
    const auto time = std::chrono::steady_clock::now().time_since_epoch();
    return std::chrono::duration_cast<std::chrono::milliseconds>(time).count();
}

} // namespace kivo
