#include "platform/engine/SampleFormat.h"

#include <string>

namespace kivo {

namespace {

constexpr int kUsualRate = 44'100;
constexpr int kUsualChannels = 2;

void SetWhileWaiting(mpv_handle* core, const char* name, const std::string& value)
{
    mpv_set_property_string(core, name, value.c_str());
}

// Gives how many channels the core will write.
int SetChannels(mpv_handle* core, const MediaFacts& facts)
{
    if (facts.channels == 1) {
        SetWhileWaiting(core, "audio-channels", "mono");
        return 1;
    }
    const bool isWide =
        facts.channels > kUsualChannels &&
        mpv_set_property_string(core, "audio-channels", facts.channelLayout.c_str()) >= 0;
    if (isWide)
        return facts.channels;
    SetWhileWaiting(core, "audio-channels", "stereo");
    return kUsualChannels;
}

} // namespace

void PrepareSamples(mpv_handle* core, const MediaFacts& facts, WaveFile& wave)
{
    SetWhileWaiting(core, "vid", facts.hasAudio ? "no" : "auto");
    if (!facts.hasAudio || wave.HasFormat())
        return;
    const int rate = facts.rate > 0 ? facts.rate : kUsualRate;
    SetWhileWaiting(core, "audio-samplerate", std::to_string(rate));
    wave.SetFormat(rate, SetChannels(core, facts));
}

} // namespace kivo
