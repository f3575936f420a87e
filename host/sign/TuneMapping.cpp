#include "host/sign/TuneMapping.h"

#include "host/sign/SignText.h"
#include "shell/contracts/common/Text.h"

#include <algorithm>
#include <iterator>
#include <string_view>

namespace kivo::host {

namespace {

constexpr std::uint32_t kAddressKey = 0;
constexpr std::uint32_t kTitleKey = 1;
constexpr StringView kMusic = u"music";
constexpr StringView kVideo = u"video";

// The endings by which a foreign tune's `uri` is a stream and not a page about the song.
constexpr std::string_view kMediaEndings[] = {
    ".mp3", ".ogg",  ".oga", ".opus", ".flac", ".aac", ".m4a", ".wav",
    ".wma", ".mka",  ".mp4", ".m4v",  ".webm", ".mkv", ".avi", ".wmv",
    ".mpg", ".mpeg", ".mov", ".asf",  ".m3u8", ".m3u", ".pls", ".asx",
};

bool HasMediaEnding(std::string_view address)
{
    const std::string_view path = address.substr(0, address.find_first_of("?#"));
    return std::any_of(
        std::begin(kMediaEndings), std::end(kMediaEndings), [&](std::string_view ending) {
            return path.size() > ending.size() &&
                   common::string_compare_no_case(path.substr(path.size() - ending.size()),
                                                  ending) == 0;
        });
}

String Clean(std::string_view bytes)
{
    return CleanSignText(common::utf8_to_CString(bytes));
}

// The plug-in's own rule for a track with an artist.
String MakeForeignTitle(const Tune& tune)
{
    const String title = Clean(tune.title);
    const String artist = Clean(tune.artist);
    if (title.empty())
        return artist.empty() ? Clean(tune.source) : artist;
    return artist.empty() ? title : CleanSignText(title + u" - " + artist);
}

// Empty: none that may be played.
std::string FindAddress(const Tune& tune, SignAddressRule rule)
{
    if (tune.isOurs)
        return IsPlayable(tune.uri, rule) ? tune.uri : std::string();
    if (IsPlayable(tune.track, rule))
        return tune.track;
    return HasMediaEnding(tune.uri) && IsPlayable(tune.uri, rule) ? tune.uri : std::string();
}

} // namespace

bool IsEmpty(const Tune& tune)
{
    return tune.artist.empty() && tune.source.empty() && tune.title.empty() && tune.track.empty() &&
           tune.uri.empty();
}

Tune MakeTune(const Sign& sign, bool withAddress)
{
    Tune tune;
    const String title = sign.record.GetText(kTitleKey);
    tune.title = common::CString_to_utf8(CleanSignText(title.empty() ? sign.title : title));
    const std::string address = sign.record.GetBytes(kAddressKey);
    const bool isStream = IsSignAddress(address);
    if (isStream && withAddress)
        tune.uri = address;
    if (IsEmpty(tune))
        return tune;
    tune.isOurs = true;
    tune.isLocal = !isStream;
    tune.kind = common::CString_to_utf8(sign.kind == kVideo ? kVideo : kMusic);
    return tune;
}

std::optional<Sign> ReadTune(const Tune& tune, SignAddressRule rule)
{
    const std::string address = FindAddress(tune, rule);
    String title = tune.isOurs ? Clean(tune.title) : MakeForeignTitle(tune);
    if (title.empty())
        title = Clean(address);
    if (title.empty())
        return std::nullopt;
    Sign sign;
    sign.kind = tune.isOurs && tune.kind == "video" ? kVideo : kMusic;
    sign.title = title;
    sign.record.SetText(kAddressKey,
                        address.empty() ? u"/" + title : common::utf8_to_CString(address));
    sign.record.SetText(kTitleKey, title);
    return sign;
}

} // namespace kivo::host
