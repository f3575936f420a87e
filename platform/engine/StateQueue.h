#pragma once

#include <deque>
#include <optional>

namespace kivo {

// The numbers that the engine reports.
enum class EngineState : int {
    None = 0, // Nothing was reported yet.
    Stopped = 1,
    Paused = 2,
    Playing = 3,
    Buffering = 6,
    Waiting = 7,
    Ended = 8,
    Transitioning = 9,
    Ready = 10,
};

// The states that wait for their delivery, in order. Not thread-safe.
class StateQueue {
public:
    // Appends the state, unless it is the last one already: two in a row would start a listener's
    // timer twice or look like a fresh start.
    void Push(EngineState state);

    // Throws away what hasn't been delivered, but for a Stopped: what belongs to an older address
    // must not arrive under the newer one.
    void Drop();

    // The oldest waiting state, which counts as delivered from here on.
    [[nodiscard]] std::optional<EngineState> Take();

    [[nodiscard]] bool IsEmpty() const { return waiting_.empty(); }
    [[nodiscard]] EngineState GetDelivered() const { return delivered_; }

    // Whether, once all is delivered, the listener believes that something is under way.
    [[nodiscard]] bool EndsActive() const;

private:
    [[nodiscard]] EngineState GetLast() const;

    std::deque<EngineState> waiting_;
    EngineState delivered_ = EngineState::None;
};

} // namespace kivo
