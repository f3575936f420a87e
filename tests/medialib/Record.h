#pragma once

#include "medialib/MediaInfo.h"
#include "medialib/MediaInfoNames.h"
#include "shell/contracts/common/Text.h"

#include <string>

namespace kivo::tunehive {

// A record of one value.
[[nodiscard]] inline MediaInfo Record(std::int32_t key, const String& text)
{
    return {
        {key, text}
    };
}

// A record as a library file shows it: "title='T' length='216'".
[[nodiscard]] inline std::string Describe(const MediaInfo& info)
{
    std::string text;
    for (const auto& [key, value] : info) {
        text += text.empty() ? "" : " ";
        text += GetInfoAttribute(key);
        text += "='" + common::CString_to_utf8(value) + "'";
    }
    return text;
}

} // namespace kivo::tunehive
