#include "platform/engine/StateQueue.h"

#include <algorithm>

namespace kivo {

void StateQueue::Push(EngineState state)
{
    if (state != GetLast())
        waiting_.push_back(state);
}

void StateQueue::Drop()
{
    const bool hasStopped =
        std::find(waiting_.begin(), waiting_.end(), EngineState::Stopped) != waiting_.end();
    waiting_.clear();
    if (hasStopped)
        Push(EngineState::Stopped);
}

std::optional<EngineState> StateQueue::Take()
{
    if (waiting_.empty())
        return std::nullopt;
    delivered_ = waiting_.front();
    waiting_.pop_front();
    return delivered_;
}

bool StateQueue::EndsActive() const
{
    switch (GetLast()) {
    case EngineState::Paused:
    case EngineState::Playing:
    case EngineState::Buffering:
    case EngineState::Waiting:
    case EngineState::Transitioning: return true;
    case EngineState::None:
    case EngineState::Stopped:
    case EngineState::Ended:
    case EngineState::Ready: break;
    }
    return false;
}

EngineState StateQueue::GetLast() const
{
    return waiting_.empty() ? delivered_ : waiting_.back();
}

} // namespace kivo
