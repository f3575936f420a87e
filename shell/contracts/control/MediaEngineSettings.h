#pragma once

#include "shell/contracts/base/Export.h"
#include "shell/contracts/base/String.h"

#include <functional>

namespace kivo {

// How loud the engine plays.
struct MediaEngineVolume {
    int volume = 60; // 0 to 100.
    bool mute = false;
    friend bool operator==(const MediaEngineVolume&, const MediaEngineVolume&) = default;
};

// How engines play in this run.
struct MediaEngineSettings {
    // A path: all sound of the run goes into this one WAV file, as fast as it decodes, at full
    // volume, and none to a device. The file appears when the engine is destroyed;
    // `audioFileFailed` is called, if set, when it couldn't be written. Empty: sound goes to the
    // device.
    String audioFile;
    std::function<void()> audioFileFailed;

    // A local track that follows another at once is joined to it without a silence: state 8 comes
    // when the last of the sound is on its way to the device, up to half a second before it is
    // heard. Not used with an audio file.
    bool gapless = false;

    // No sound device is opened; time runs as if one were.
    bool silent = false;

    // What a new engine starts with, and where each change goes to be kept for the next run.
    // Unset: the default above, and nowhere. Not used with an audio file.
    std::function<MediaEngineVolume()> loadVolume;
    std::function<void(const MediaEngineVolume&)> storeVolume;
};

// For engines made from here on. Thread: user interface.
KIVO_API void SetMediaEngineSettings(MediaEngineSettings settings);
[[nodiscard]] KIVO_API const MediaEngineSettings& GetMediaEngineSettings();

} // namespace kivo
