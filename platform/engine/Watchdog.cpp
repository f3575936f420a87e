#include "platform/engine/Watchdog.h"

namespace kivo {

namespace {

constexpr std::int64_t kStallAfter = 1'500;
constexpr std::int64_t kDeadAfterStall = 5'000;
constexpr std::int64_t kDeadAfterWait = 45'000;
constexpr std::int64_t kLongestBreak = 3'000;

} // namespace

void Watchdog::Restart(std::int64_t now)
{
    progress_ = now;
    checked_ = now;
}

Watchdog::Verdict Watchdog::Check(std::int64_t now, Phase phase)
{
    if (phase != phase_ || now - checked_ > kLongestBreak)
        progress_ = now;
    phase_ = phase;
    checked_ = now;

    const std::int64_t standing = now - progress_;
    switch (phase) {
    case Phase::Opening:
    case Phase::Buffering: return standing >= kDeadAfterWait ? Verdict::Dead : Verdict::Fine;
    case Phase::Playing:
        if (standing >= kStallAfter + patience_ + kDeadAfterStall)
            return Verdict::Dead;
        return standing >= kStallAfter + patience_ ? Verdict::Stalled : Verdict::Fine;
    case Phase::Resting: break;
    }
    return Verdict::Fine;
}

} // namespace kivo
