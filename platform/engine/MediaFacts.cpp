#include "platform/engine/MediaFacts.h"

#include "platform/engine/Core.h"
#include "shell/contracts/common/Text.h"

#include <algorithm>
#include <cmath>

namespace kivo {

namespace {

constexpr double kLengthOfUnknownFile = 0.4;
constexpr double kLongestLength = 2e9; // Cut to an integer by whoever counts it.
constexpr double kLargestPicture = 32'768;

int ToPixels(double number)
{
    return number > 0 ? static_cast<int>(std::min(number, kLargestPicture)) : 0;
}

void ReadVideoTrack(const mpv_node& track, MediaFacts& facts)
{
    if (GetFlag(FindInMap(track, "albumart")) || GetFlag(FindInMap(track, "image")))
        return;
    facts.hasVideo = true;
    facts.width = ToPixels(GetNumber(FindInMap(track, "demux-w"), 0));
    facts.height = ToPixels(GetNumber(FindInMap(track, "demux-h"), 0));
    const double rate = GetNumber(FindInMap(track, "demux-fps"), 0);
    facts.frameSeconds = rate > 0 ? 1 / rate : 0;
}

void ReadAudioTrack(const mpv_node& track, MediaFacts& facts)
{
    facts.hasAudio = true;
    const double rate = GetNumber(FindInMap(track, "demux-samplerate"), 0);
    const double channels = GetNumber(FindInMap(track, "demux-channel-count"), 0);
    facts.rate = rate > 0 && rate < 1e6 ? static_cast<int>(rate) : 0;
    facts.channels = channels > 0 && channels < 64 ? static_cast<int>(channels) : 0;
    facts.channelLayout = GetText(FindInMap(track, "demux-channels"));
}

void ReadTracks(const mpv_node& tracks, MediaFacts& facts)
{
    if (tracks.format != MPV_FORMAT_NODE_ARRAY)
        return;
    for (int i = 0; i < tracks.u.list->num; ++i) {
        const mpv_node& track = tracks.u.list->values[i];
        const std::string type = GetText(FindInMap(track, "type"));
        if (type == "video" && !facts.hasVideo)
            ReadVideoTrack(track, facts);
        else if (type == "audio" && !facts.hasAudio)
            ReadAudioTrack(track, facts);
    }
}

double ReadNumber(mpv_handle* core, const char* name)
{
    CoreNode node;
    return node.Read(core, name) ? GetNumber(&node.Get(), 0) : 0;
}

bool ReadFlag(mpv_handle* core, const char* name)
{
    CoreNode node;
    return node.Read(core, name) && GetFlag(&node.Get());
}

} // namespace

MediaFacts ReadMediaFacts(mpv_handle* core)
{
    MediaFacts facts;
    const double duration = ReadNumber(core, "duration");
    facts.duration = duration > 0 ? std::min(duration, kLongestLength) : 0;
    facts.seekable = ReadFlag(core, "seekable");
    facts.partiallySeekable = ReadFlag(core, "partially-seekable");
    CoreNode node;
    if (node.Read(core, "track-list"))
        ReadTracks(node.Get(), facts);
    facts.fileSize = ReadNumber(core, "file-size");
    if (node.Read(core, "file-format"))
        facts.fileFormat = GetText(&node.Get());
    return facts;
}

double GetTellableLength(const MediaFacts& facts, bool isNetwork)
{
    if (isNetwork)
        return facts.seekable && !facts.partiallySeekable ? facts.duration : 0;
    return facts.duration > 0 ? facts.duration : kLengthOfUnknownFile;
}

std::string FindTag(const mpv_node& metadata, const char* key)
{
    if (metadata.format != MPV_FORMAT_NODE_MAP)
        return {};
    for (int i = 0; i < metadata.u.list->num; ++i) {
        if (common::string_compare_no_case(metadata.u.list->keys[i], key) == 0)
            return GetText(&metadata.u.list->values[i]);
    }
    return {};
}

} // namespace kivo
