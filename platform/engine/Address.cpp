#include "platform/engine/Address.h"

#include "shell/contracts/common/Text.h"
#include "shell/contracts/framework/Paths.h"

#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <string_view>
#include <system_error>

namespace kivo {

namespace {

struct Scheme {
    std::string_view name;
    bool isBroadcast;
};

constexpr Scheme kSchemes[] = {
    {"http",  false},
    {"https", false},
    {"mms",   true },
    {"mmsh",  true },
    {"mmst",  true },
    {"rtsp",  true },
};

// A line break in an address would add lines to the request that it ends up in.
bool HasControlCharacter(std::string_view bytes)
{
    return std::any_of(bytes.begin(), bytes.end(), [](char c) {
        return static_cast<unsigned char>(c) < 0x20 || c == 0x7F;
    });
}

Address ClassifyNetwork(const String& url)
{
    const std::string bytes = common::CString_to_utf8(url);
    const std::size_t colon = bytes.find(':');
    const std::string scheme =
        common::CString_to_utf8(common::ToLowerAscii(url.substr(0, url.find(u':'))));
    const auto* const found = std::find_if(std::begin(kSchemes),
                                           std::end(kSchemes),
                                           [&](const Scheme& s) { return s.name == scheme; });
    if (found == std::end(kSchemes) || HasControlCharacter(bytes))
        return {};
    return {AddressKind::Network, scheme + bytes.substr(colon), found->isBroadcast};
}

Address ClassifyPath(const String& path)
{
    const std::string bytes = common::TextToPath(path);
    if (bytes.find('\0') != std::string::npos)
        return {};
    std::error_code error;
    const std::string absolute = std::filesystem::absolute(bytes, error).string();
    struct stat status {};
    if (error || stat(absolute.c_str(), &status) != 0) {
        const bool isThere = !error && errno != ENOENT && errno != ENOTDIR;
        return {isThere ? AddressKind::NotPlayable : AddressKind::Missing, {}, false};
    }
    if (!S_ISREG(status.st_mode))
        return {};
    return {AddressKind::LocalFile, absolute, false};
}

} // namespace

Address ClassifyAddress(const String& url)
{
    return UrlIsW(url, URLIS_URL) ? ClassifyNetwork(url) : ClassifyPath(url);
}

std::string GetSecondTry(const std::string& target)
{
    constexpr std::string_view kMms = "mms://";
    return target.starts_with(kMms) ? "mmst://" + target.substr(kMms.size()) : std::string();
}

} // namespace kivo
