#include "platform/ui/qt/UriList.h"

#include "shell/contracts/common/Text.h"

#include <algorithm>
#include <array>
#include <string>

namespace kivo::ui::qt {

namespace {

constexpr std::size_t kMostEntries = 100000;
constexpr std::size_t kLongestEntry = 16384; // Bytes; a path has at most 4096, each as "%xx".

constexpr std::array<std::string_view, 6> kAddressSchemes = {
    "http://", "https://", "mms://", "mmsh://", "mmst://", "rtsp://"};

int HexValue(char digit)
{
    if (digit >= '0' && digit <= '9')
        return digit - '0';
    if (digit >= 'a' && digit <= 'f')
        return digit - 'a' + 10;
    if (digit >= 'A' && digit <= 'F')
        return digit - 'A' + 10;
    return -1;
}

std::string Decode(std::string_view text)
{
    std::string bytes;
    bytes.reserve(text.size());
    for (std::size_t index = 0; index < text.size(); ++index) {
        const bool coded = text[index] == '%' && index + 2 < text.size() &&
                           HexValue(text[index + 1]) >= 0 && HexValue(text[index + 2]) >= 0;
        if (!coded) {
            bytes += text[index];
            continue;
        }
        bytes += static_cast<char>(HexValue(text[index + 1]) * 16 + HexValue(text[index + 2]));
        index += 2;
    }
    return bytes;
}

bool StartsWith(std::string_view text, std::string_view start)
{
    return text.size() >= start.size() &&
           common::string_compare_no_case(text.substr(0, start.size()), start) == 0;
}

// The decoded path; empty: no file of this machine.
std::string PathOf(std::string_view uri)
{
    constexpr std::string_view kScheme = "file://";
    constexpr std::string_view kLocal = "localhost";
    std::string_view rest = uri.substr(kScheme.size());
    if (StartsWith(rest, kLocal))
        rest.remove_prefix(kLocal.size());
    if (rest.empty() || rest.front() != '/')
        return {};
    std::string path = Decode(rest);
    // No file name holds a zero byte; what stands behind one would be lost.
    return path.find('\0') == std::string::npos ? path : std::string();
}

void AddEntry(std::string_view line, CStringArray& entries)
{
    if (line.empty() || line.front() == '#' || line.size() > kLongestEntry)
        return;
    if (StartsWith(line, "file://")) {
        const std::string path = PathOf(line);
        if (!path.empty())
            entries.push_back(common::PathToText(path));
        return;
    }
    const bool isAddress =
        std::any_of(kAddressSchemes.begin(),
                    kAddressSchemes.end(),
                    [line](std::string_view scheme) { return StartsWith(line, scheme); });
    if (isAddress)
        entries.push_back(common::utf8_to_CString(line));
}

} // namespace

CStringArray ReadUriList(std::string_view bytes)
{
    CStringArray entries;
    while (!bytes.empty() && entries.size() < kMostEntries) {
        const std::size_t end = std::min(bytes.find('\n'), bytes.size());
        std::string_view line = bytes.substr(0, end);
        while (!line.empty() && (line.back() == '\r' || line.back() == ' ' || line.back() == '\0'))
            line.remove_suffix(1);
        AddEntry(line, entries);
        bytes.remove_prefix(std::min(end + 1, bytes.size()));
    }
    return entries;
}

} // namespace kivo::ui::qt
