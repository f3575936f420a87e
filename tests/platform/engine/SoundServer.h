#pragma once

#include "tests/support/TempFolder.h"

#include <sys/types.h>

#include <cstdint>
#include <string>
#include <vector>

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

    // Records what the sink plays, from now until StopRecording, which gives the samples of one
    // channel, kRecordedRate of them a second.
    static constexpr int kRecordedRate = 44'100;
    void StartRecording();
    [[nodiscard]] std::vector<std::int16_t> StopRecording();

private:
    const TempFolder folder_;
    const std::string socket_;
    pid_t process_ = 0;
    pid_t recorder_ = 0;
};

} // namespace kivo::test
