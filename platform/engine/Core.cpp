#include "platform/engine/Core.h"

#include <clocale>
#include <cstring>

namespace kivo {

namespace {

struct Option {
    const char* name;
    const char* value;
};

// None of these may be left to a default: each closes a door or was measured.
constexpr Option kOptions[] = {
  // No user's files, scripts or outside programs.
    {"config",                 "no"                                                      },
    {"load-scripts",           "no"                                                      },
    {"ytdl",                   "no"                                                      },
    {"osc",                    "no"                                                      },
    {"load-stats-overlay",     "no"                                                      },
    {"load-osd-console",       "no"                                                      },
    {"load-auto-profiles",     "no"                                                      },
 // No other hand on the player.
    {"terminal",               "no"                                                      },
    {"input-default-bindings", "no"                                                      },
    {"input-builtin-bindings", "no"                                                      },
    {"input-vo-keyboard",      "no"                                                      },
    {"input-media-keys",       "no"                                                      },
    {"input-ipc-server",       ""                                                        },
 // An embedded player.
    {"idle",                   "yes"                                                     },
    {"force-window",           "no"                                                      },
    {"keep-open",              "no"                                                      },
    {"vo",                     "libmpv"                                                  },
    {"osd-level",              "0"                                                       },
    {"stop-screensaver",       "no"                                                      },
 // With this demuxer alone a play list is an unknown format.
    {"demuxer",                "lavf"                                                    },
 // What an address inside a medium may use: no file, no data, no bare UDP.
    {"demuxer-lavf-o",         "protocol_whitelist=[http,https,tls,tcp,crypto,httpproxy]"},
 // The segments of a network play list are references too; the two lines above are the guard.
    {"access-references",      "yes"                                                     },
    {"load-unsafe-playlists",  "no"                                                      },
    {"ordered-chapters",       "no"                                                      },
 // Nothing beside the file is opened; a cover picture is no moving picture.
    {"autoload-files",         "no"                                                      },
    {"sub-auto",               "no"                                                      },
    {"audio-file-auto",        "no"                                                      },
    {"cover-art-auto",         "no"                                                      },
    {"audio-display",          "no"                                                      },
 // No traces, no foreign state.
    {"resume-playback",        "no"                                                      },
    {"save-position-on-quit",  "no"                                                      },
    {"cookies",                "no"                                                      },
    {"network-timeout",        "15"                                                      },
    {"user-agent",             "TuneHive"                                                },
 // A quick start, real waits in mid-stream, bounded memory.
    {"cache-pause",            "yes"                                                     },
    {"cache-pause-initial",    "no"                                                      },
    {"cache-pause-wait",       "1"                                                       },
    {"demuxer-max-bytes",      "32MiB"                                                   },
    {"demuxer-max-back-bytes", "8MiB"                                                    },
 // Without a device the time runs on.
    {"audio-fallback-to-null", "yes"                                                     },
    {"audio-client-name",      "TuneHive"                                                },
 // The end of a file is then the moment at which its last sample was heard.
    {"gapless-audio",          "no"                                                      },
    {"volume-max",             "100"                                                     },
    {"replaygain",             "no"                                                      },
 // No graphics driver in the host's process.
    {"hwdec",                  "no"                                                      },
    {"gpu-hwdec-interop",      "no"                                                      },
};

constexpr Option kFileOptions[] = {
    {"ao",                "pcm"},
    {"ao-pcm-waveheader", "no" },
    {"ao-pcm-append",     "yes"},
    {"audio-format",      "s16"},
};

// The core stays at the end of a file until it is given the next, and keeps the device for it if
// the format allows.
constexpr Option kGaplessOptions[] = {
    {"keep-open",       "yes" },
    {"keep-open-pause", "no"  },
    {"gapless-audio",   "weak"},
};

bool SetOption(mpv_handle* core, const char* name, const std::string& value)
{
    return mpv_set_option_string(core, name, value.c_str()) >= 0;
}

bool SetSound(mpv_handle* core, const CoreSettings& settings)
{
    bool done = SetOption(core, "volume", std::to_string(settings.volume.volume)) &&
                SetOption(core, "mute", settings.volume.mute ? "yes" : "no");
    if (settings.samplePath.empty())
        return SetOption(core, "ao", settings.silent ? "null" : kSoundOutputs) && done;
    for (const auto& [name, value] : kFileOptions)
        done = SetOption(core, name, value) && done;
    return SetOption(core, "ao-pcm-file", settings.samplePath) && done;
}

// The core refuses to work where numbers are written with a comma.
void UseNumbersOfC()
{
    const char* numbers =
        std::setlocale(LC_NUMERIC, nullptr); // NOLINT(concurrency-mt-unsafe): main
    if (numbers == nullptr || std::strcmp(numbers, "C") != 0)
        std::setlocale(LC_NUMERIC, "C"); // NOLINT(concurrency-mt-unsafe): main thread
}

} // namespace

CoreHandle MakeCore(const CoreSettings& settings)
{
    UseNumbersOfC();
    CoreHandle core(mpv_create());
    if (!core)
        return nullptr;
    bool done = true;
    for (const auto& [name, value] : kOptions)
        done = SetOption(core.get(), name, value) && done;
    for (const auto& [name, value] : kGaplessOptions)
        done = (!settings.gapless || SetOption(core.get(), name, value)) && done;
    done = SetSound(core.get(), settings) && done;
    done = SetOption(core.get(), "speed", std::to_string(settings.speed)) && done;
    // An option that isn't known any more would leave its door open.
    if (!done || mpv_initialize(core.get()) < 0)
        return nullptr;
    return core;
}

void SendCommand(mpv_handle* core, std::uint64_t serial, const std::vector<std::string>& words)
{
    std::vector<const char*> arguments;
    arguments.reserve(words.size() + 1);
    for (const std::string& word : words)
        arguments.push_back(word.c_str());
    arguments.push_back(nullptr);
    mpv_command_async(core, serial, arguments.data());
}

void WriteFlag(mpv_handle* core, const char* name, bool on)
{
    int flag = on ? 1 : 0;
    mpv_set_property_async(core, 0, name, MPV_FORMAT_FLAG, &flag);
}

void WriteNumber(mpv_handle* core, const char* name, double number)
{
    mpv_set_property_async(core, 0, name, MPV_FORMAT_DOUBLE, &number);
}

void WriteText(mpv_handle* core, const char* name, const std::string& text)
{
    const char* bytes = text.c_str();
    mpv_set_property_async(core, 0, name, MPV_FORMAT_STRING, &bytes);
}

bool CoreNode::Read(mpv_handle* core, const char* name)
{
    mpv_free_node_contents(&node_);
    node_ = {};
    return mpv_get_property(core, name, MPV_FORMAT_NODE, &node_) >= 0;
}

const mpv_node* FindInMap(const mpv_node& map, const char* key)
{
    if (map.format != MPV_FORMAT_NODE_MAP)
        return nullptr;
    for (int i = 0; i < map.u.list->num; ++i) {
        if (std::strcmp(map.u.list->keys[i], key) == 0)
            return &map.u.list->values[i];
    }
    return nullptr;
}

double GetNumber(const mpv_node* node, double otherwise)
{
    if (node == nullptr)
        return otherwise;
    switch (node->format) {
    case MPV_FORMAT_DOUBLE: return node->u.double_;
    case MPV_FORMAT_INT64: return static_cast<double>(node->u.int64);
    default: return otherwise;
    }
}

bool GetFlag(const mpv_node* node)
{
    return node != nullptr && node->format == MPV_FORMAT_FLAG && node->u.flag != 0;
}

std::string GetText(const mpv_node* node)
{
    const bool isText = node != nullptr && node->format == MPV_FORMAT_STRING;
    return isText ? std::string(node->u.string) : std::string();
}

} // namespace kivo
