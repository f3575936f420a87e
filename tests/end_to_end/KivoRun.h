#pragma once

#include "tests/support/Process.h"
#include "tests/support/TempFolder.h"

#include <string>
#include <vector>

namespace kivo::test {

// The real program, started as a user would, in a world of its own: an empty home, no display, no
// sound server. What it says on the error stream is kept. Killed at the end if it still runs.
class KivoRun {
public:
    struct World {
        std::string program;                  // Empty: the one that was built.
        std::vector<std::string> environment; // "NAME=value" each; "NAME=" takes it away.
        unsigned user = 0;                    // 0: who runs the tests.
    };

    KivoRun(const std::vector<std::string>& arguments, const World& world);
    explicit KivoRun(const std::vector<std::string>& arguments);

    // True: it has said it in one line, within `seconds`.
    bool WaitFor(const std::string& text, int seconds = 20);

    // The exit status; -1: it still ran after `seconds`, or a signal ended it.
    int WaitForEnd(int seconds = 60) { return process_.WaitForEnd(seconds * 1000); }

    void Signal(int number) const { process_.Signal(number); }
    [[nodiscard]] pid_t GetPid() const { return process_.GetId(); }
    [[nodiscard]] const std::string& GetErrors() const { return process_.GetOutput(); }

private:
    Process process_;
};

// Media made by FFmpeg into a folder of the test's own. Options stand between blanks; the name's
// ending says the kind. Each gives the path.
class MediaFolder {
public:
    std::string Encode(const std::string& name, const std::string& options) const;
    // A tone, which the encoder gets `options` for; with a test picture.
    std::string
    Make(const std::string& name, double seconds, const std::string& options = "") const;
    std::string MakeVideo(const std::string& name, double seconds) const;

    [[nodiscard]] std::string GetPath(const std::string& name) const;
    [[nodiscard]] const TempFolder& Get() const { return folder_; }

private:
    TempFolder folder_;
};

// 16-bit sound.
struct Sound {
    double seconds = 0;
    double level = -1000; // Root mean square in decibels of full scale.
};
[[nodiscard]] Sound ReadWaveFile(const std::string& path); // A 44-byte header and samples.
[[nodiscard]] Sound Decode(const std::string& path);       // By FFmpeg, as the reference.

} // namespace kivo::test
