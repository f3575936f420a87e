#pragma once

#include "tests/support/TempFolder.h"

#include <sys/types.h>

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
    KivoRun(const KivoRun&) = delete;
    KivoRun& operator=(const KivoRun&) = delete;
    ~KivoRun();

    // True: it has said it, within `seconds`.
    bool WaitFor(const std::string& text, int seconds = 20);

    // The exit status; -1: it still ran after `seconds`, or a signal ended it.
    int WaitForEnd(int seconds = 60);

    void Signal(int number) const;
    [[nodiscard]] pid_t GetPid() const { return pid_; }
    [[nodiscard]] const std::string& GetErrors() const { return errors_; }

private:
    bool ReadMore(int milliseconds); // False: nothing came, or the stream has ended.

    pid_t pid_ = -1;
    int stream_ = -1;
    bool hasEnded_ = false;
    std::string errors_;
};

// Media made by FFmpeg into a folder of the test's own.
class MediaFolder {
public:
    // `options` are those of the encoder; the name's ending says the kind. Gives the path.
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
