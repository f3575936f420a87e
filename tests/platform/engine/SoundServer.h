#pragma once

#include "tests/support/TempFolder.h"

#include <sys/types.h>

#include <string>

namespace kivo::test {

// A PulseAudio server of a test's own, with a sink that leads nowhere. The program's sound goes to
// it while it stands.
class SoundServer {
public:
    SoundServer();
    SoundServer(const SoundServer&) = delete;
    SoundServer& operator=(const SoundServer&) = delete;
    ~SoundServer();

    [[nodiscard]] static bool IsInstalled();

    bool Start(); // True: it takes connections.
    void Kill();
    void Freeze() const; // It neither answers nor takes sound until it is thawed.
    void Thaw() const;

    // Somebody plays through it.
    [[nodiscard]] bool HasStream() const;

private:
    const TempFolder folder_;
    const std::string socket_;
    pid_t process_ = 0;
};

} // namespace kivo::test
