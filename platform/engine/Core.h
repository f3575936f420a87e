#pragma once

#include "shell/contracts/control/MediaEngineSettings.h"

#include <mpv/client.h>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace kivo {

// What a handle of the core is made with, beyond the fixed options.
struct CoreSettings {
    bool silent = false;    // No sound device.
    bool gapless = false;   // The device stays open at the end of a file, and the core waits there.
    std::string samplePath; // Not empty: sound is appended there, as fast as it decodes.
    MediaEngineVolume volume;
    double speed = 1; // Of the clock.
};

struct CoreDeleter {
    void operator()(mpv_handle* handle) const { mpv_terminate_destroy(handle); } // Waits.
};
using CoreHandle = std::unique_ptr<mpv_handle, CoreDeleter>;

// The sound outputs in order of choice.
inline constexpr const char* kSoundOutputs = "pulse,pipewire,alsa,null";

// An initialised handle with every option set; null: the core refused. It reads no user's files,
// runs no scripts, listens to no other hand, opens nothing beside what it is given, and follows
// addresses inside a medium only over the network's own protocols.
[[nodiscard]] CoreHandle MakeCore(const CoreSettings& settings);

// Queues a command; the reply comes as an event with `serial`. Never waits.
void SendCommand(mpv_handle* core, std::uint64_t serial, const std::vector<std::string>& words);

// Queues a write. Never waits.
void WriteFlag(mpv_handle* core, const char* name, bool on);
void WriteNumber(mpv_handle* core, const char* name, double number);
void WriteText(mpv_handle* core, const char* name, const std::string& text);

// A value of the core's with its nested parts.
class CoreNode {
public:
    CoreNode() = default;
    CoreNode(const CoreNode&) = delete;
    CoreNode& operator=(const CoreNode&) = delete;
    ~CoreNode() { mpv_free_node_contents(&node_); }

    // Waits for the core: only while it waits for us, in a hook. False: there is no such value.
    [[nodiscard]] bool Read(mpv_handle* core, const char* name);
    [[nodiscard]] const mpv_node& Get() const { return node_; }

private:
    mpv_node node_{};
};

// Parts of a node; the default for what is missing or of another kind.
[[nodiscard]] const mpv_node* FindInMap(const mpv_node& map, const char* key);
[[nodiscard]] double GetNumber(const mpv_node* node, double otherwise);
[[nodiscard]] bool GetFlag(const mpv_node* node);
[[nodiscard]] std::string GetText(const mpv_node* node);

} // namespace kivo
