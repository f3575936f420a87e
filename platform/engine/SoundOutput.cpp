#include "platform/engine/SoundOutput.h"

#include "platform/engine/Core.h"
#include "platform/engine/CoreProperties.h"

namespace kivo {

void SoundOutput::Prepare(mpv_handle* core)
{
    if (!isMissing_ || isSilenced_)
        return;
    isSilenced_ = true;
    WriteText(core, "ao", "null");
}

void SoundOutput::OnCurrent(mpv_handle* core, const std::string& name)
{
    if (isChosen_ || name.empty())
        return;
    isMissing_ = name == "null";
    if (!isMissing_ || isObserving_)
        return;
    // Only now: watching the devices costs a connection to the sound server.
    isObserving_ = true;
    mpv_observe_property(core,
                         static_cast<std::uint64_t>(CoreProperty::Devices),
                         "audio-device-list",
                         MPV_FORMAT_NODE);
}

void SoundOutput::OnDevices(mpv_handle* core)
{
    if (!isListed_) {
        isListed_ = true;
        return;
    }
    if (!isMissing_)
        return;
    isMissing_ = false;
    isSilenced_ = false;
    WriteText(core, "ao", kSoundOutputs);
    SendCommand(core, 0, {"ao-reload"});
}

} // namespace kivo
