#pragma once

#include "shell/contracts/base/String.h"

#include <cstdint>
#include <string>

namespace kivo {

// The one file that takes the sound of a run: samples are appended by the core to a temporary file
// beside the target, behind room for the header; Finish writes that and gives the file its name.
// Thread: one at a time.
class WaveFile {
public:
    explicit WaveFile(const String& target);
    WaveFile(const WaveFile&) = delete;
    WaveFile& operator=(const WaveFile&) = delete;
    ~WaveFile(); // Without a Finish the target stays as it was.

    // False: the folder is missing or read-only; nothing can be taken.
    [[nodiscard]] bool IsOpen() const { return descriptor_ >= 0; }
    [[nodiscard]] const std::string& GetSamplePath() const { return temporary_; }

    // Once, from the first track: what the samples of the whole run are.
    void SetFormat(int rate, int channels);
    [[nodiscard]] bool HasFormat() const { return rate_ != 0; }

    // Once, when nothing appends any more. False: the target wasn't written.
    [[nodiscard]] bool Finish();

private:
    [[nodiscard]] std::string MakeHeader(std::int64_t sampleBytes) const;

    std::string target_;
    std::string temporary_;
    int descriptor_ = -1;
    int rate_ = 0;
    int channels_ = 0;
};

} // namespace kivo
