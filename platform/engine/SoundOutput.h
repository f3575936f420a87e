#pragma once

#include <mpv/client.h>

#include <string>

namespace kivo {

// Keeps a machine without a sound device from being searched for one at every file, which takes
// time and fills standard error, and finds the device when one comes. The core itself doesn't
// notice a sound server that comes up again. Thread: user interface.
class SoundOutput {
public:
    // `isChosen`: the output was fixed for the run, and nothing is to be done.
    explicit SoundOutput(bool isChosen)
        : isChosen_(isChosen)
    {
    }

    void Prepare(mpv_handle* core); // Before each load.
    void Check(mpv_handle* core);   // Now and then while something plays.

    // The core plays through the output of that name; empty: through none.
    void OnCurrent(const std::string& name);

private:
    bool isChosen_;
    bool isMissing_ = false;  // No device was found,
    std::string sources_;     // among these.
    int searches_ = 0;        // Still to be made, since these have changed.
    bool isSilenced_ = false; // The core was told not to search.
};

// Where sound could go to, as far as the file system shows it: sockets of sound servers and the
// devices of the machine. It changes when one comes, goes or is started anew.
[[nodiscard]] std::string DescribeSoundSources();

} // namespace kivo
