#pragma once

#include <mpv/client.h>

#include <string>

namespace kivo {

// Keeps a machine without a sound device from being searched for one at every file, and finds the
// device when it comes back. Thread: user interface.
class SoundOutput {
public:
    // `isChosen`: the output was fixed for the run, and nothing is to be done.
    explicit SoundOutput(bool isChosen)
        : isChosen_(isChosen)
    {
    }

    void Prepare(mpv_handle* core); // Before each load.

    // The core plays through the output of that name; empty: through none.
    void OnCurrent(mpv_handle* core, const std::string& name);

    // The core told the devices: at first those that there are, later a change.
    void OnDevices(mpv_handle* core);

private:
    bool isChosen_;
    bool isMissing_ = false;   // No device was found.
    bool isSilenced_ = false;  // The core was told not to search.
    bool isObserving_ = false; // The core tells of devices.
    bool isListed_ = false;    // It has told those that there are.
};

} // namespace kivo
