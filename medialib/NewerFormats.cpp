#include "medialib/NewerFormats.h"

#include "shell/contracts/base/Beyond.h"
#include "shell/contracts/common/Text.h"

namespace kivo::tunehive {

namespace {

constexpr NewerFormat kNewerFormats[] = {
    {u"flac", false, 100},
    {u"ogg",  false, 101},
    {u"oga",  false, 102},
    {u"opus", false, 103},
    {u"m4a",  false, 104},
    {u"aac",  false, 105},
    {u"mka",  false, 106},
    {u"mkv",  true,  107},
    {u"webm", true,  108},
    {u"m4v",  true,  109},
    {u"ts",   true,  110},
    {u"aiff", false, 111},
    {u"wv",   false, 112},
};

} // namespace

std::span<const NewerFormat> GetNewerFormats()
{
    return kNewerFormats;
}

const NewerFormat* FindNewerFormat(StringView extension)
{
    if (!IsBeyond())
        return nullptr;
    const String lower = common::ToLowerAscii(extension);
    for (const NewerFormat& format : kNewerFormats)
        if (format.extension == lower)
            return &format;
    return nullptr;
}

} // namespace kivo::tunehive
