#pragma once

#include <algorithm>
#include <chrono>

namespace kivo::host {

// How long to wait before the next attempt: half a second at first, then twice as long each time, a
// minute at most. A bit of chance keeps many from coming back at the same moment.
class ReconnectDelay {
public:
    using Milliseconds = std::chrono::milliseconds;

    static constexpr Milliseconds kFirst{500};
    static constexpr Milliseconds kLongest{60000};

    // `chance` from 0 to 1 gives three to five quarters of the time.
    [[nodiscard]] Milliseconds Next(double chance)
    {
        const double factor = 0.75 + 0.5 * std::clamp(chance, 0.0, 1.0);
        const auto delay = std::chrono::duration_cast<Milliseconds>(next_ * factor);
        next_ = std::min(next_ * 2, kLongest);
        return std::min(delay, kLongest);
    }

    void Reset() { next_ = kFirst; }

private:
    Milliseconds next_ = kFirst;
};

} // namespace kivo::host
