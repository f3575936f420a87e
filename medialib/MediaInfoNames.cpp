#include "medialib/MediaInfoNames.h"

#include "medialib/MediaInfo.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace kivo::tunehive {

namespace {

// The place of a name is its key.
constexpr std::array<std::string_view, kMediaInfoKeyCount> kAttributes = {"title",
                                                                          "art",
                                                                          "album",
                                                                          "genre",
                                                                          "length",
                                                                          "bitrate",
                                                                          "comm",
                                                                          "cmode",
                                                                          "emp",
                                                                          "hascrc",
                                                                          "iscopy",
                                                                          "mepgv",
                                                                          "srate",
                                                                          "year",
                                                                          "url"};

} // namespace

std::string_view GetInfoAttribute(std::int32_t key)
{
    if (key < 0 || key >= kMediaInfoKeyCount)
        return {};
    return kAttributes.at(static_cast<std::size_t>(key));
}

std::optional<std::int32_t> FindInfoKey(std::string_view attribute)
{
    const auto* const found = std::find(kAttributes.begin(), kAttributes.end(), attribute);
    if (found == kAttributes.end())
        return std::nullopt;
    return static_cast<std::int32_t>(found - kAttributes.begin());
}

} // namespace kivo::tunehive
