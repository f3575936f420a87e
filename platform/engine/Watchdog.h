#pragma once

#include <cstdint>

namespace kivo {

// Notices when a medium that should move stands still: a broken file can leave the core "playing"
// for ever, and a silent server can keep it waiting. All times in milliseconds of one steady clock.
class Watchdog {
public:
    enum class Phase {
        Opening,   // No sound yet.
        Playing,   // The position should move.
        Buffering, // The cache should grow.
        Resting,   // Paused: nothing has to move.
    };
    enum class Verdict { Fine, Stalled, Dead };

    // A new medium, a seek, or a change that excuses what was before.
    void Restart(std::int64_t now);

    // The position moved, or the cache grew.
    void NoteProgress(std::int64_t now) { progress_ = now; }

    // How long one picture may stand beyond the usual, for slide shows without sound.
    void SetPatience(std::int64_t milliseconds) { patience_ = milliseconds; }

    // Stalled: the position stands for 1.5 s. Dead: 5 s more have passed, or 45 s in the phases
    // Opening and Buffering. Call it about twice a second; after a longer break the process was
    // stopped itself and the wait begins anew, as it does when the phase changes.
    [[nodiscard]] Verdict Check(std::int64_t now, Phase phase);

private:
    Phase phase_ = Phase::Resting;
    std::int64_t progress_ = 0;
    std::int64_t checked_ = 0;
    std::int64_t patience_ = 0;
};

} // namespace kivo
