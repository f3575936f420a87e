#include "host/sign/SignAddress.h"

#include "shell/contracts/common/Text.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <optional>
#include <string>

namespace kivo::host {

namespace {

constexpr std::size_t kLongestAddress = 2048;
constexpr std::size_t kLongestHost = 253;
constexpr std::string_view kSchemes[] = {"http", "https", "mms", "mmsh", "mmst", "rtsp"};

// Names that every system gives to itself.
constexpr std::string_view kOwnNames[] = {
    "localhost",
    "localhost.localdomain",
    "localhost4",
    "localhost4.localdomain4",
    "localhost6",
    "localhost6.localdomain6",
    "ip6-allnodes",
    "ip6-allrouters",
    "ip6-localhost",
    "ip6-loopback",
};

// An IPv4 address by its first bytes.
struct Net4 {
    std::uint32_t network;
    int bits;
};

constexpr Net4 kOwnNets4[] = {
    {0x00000000, 8 }, // "This host"; the system takes 0.0.0.0 for itself.
    {0x7F000000, 8 }, // Loopback.
    {0xA9FE0000, 16}, // Link-local.
};

struct Authority {
    std::string_view host; // An IPv6 number with its brackets.
    std::string_view port; // Empty: none.
};

bool IsEqual(std::string_view a, std::string_view b)
{
    return common::string_compare_no_case(a, b) == 0;
}

bool IsOf(std::string_view text, std::string_view characters)
{
    return text.find_first_not_of(characters) == std::string_view::npos;
}

// Nothing malformed, no half characters.
bool IsWholeUtf8(std::string_view bytes)
{
    const String text = common::utf8_to_CString(bytes);
    // U+FFFE and U+FFFF are no characters of XML: a server ends the stream that holds one.
    return common::ToDisplayText(text) == text && common::CString_to_utf8(text) == bytes &&
           text.find_first_of(u"\uFFFE\uFFFF") == String::npos;
}

// What stands between "scheme://" and the path; nothing: it isn't such an address.
std::optional<Authority> FindAuthority(std::string_view address)
{
    const std::size_t colon = address.find(':');
    if (colon == std::string_view::npos || address.substr(colon, 3) != "://")
        return std::nullopt;
    if (!IsStreamScheme(address.substr(0, colon)))
        return std::nullopt;
    std::string_view rest = address.substr(colon + 3);
    rest = rest.substr(0, rest.find_first_of("/?#"));
    const std::size_t bracket = rest.starts_with('[') ? rest.find(']') : 0;
    if (bracket == std::string_view::npos)
        return std::nullopt;
    const std::size_t end = rest.find(':', bracket);
    if (end == std::string_view::npos)
        return Authority{rest, {}};
    return Authority{rest.substr(0, end), rest.substr(end + 1)};
}

// The number between the brackets; nothing: it isn't one. A zone behind it ("%eth0") names a link
// of this machine and is never taken.
std::optional<in6_addr> ReadNumber6(std::string_view host)
{
    if (host.size() < 2 || !host.starts_with('[') || !host.ends_with(']'))
        return std::nullopt;
    in6_addr number{};
    const std::string text(host.substr(1, host.size() - 2));
    if (inet_pton(AF_INET6, text.c_str(), &number) != 1)
        return std::nullopt;
    return number;
}

bool IsHost(std::string_view host)
{
    if (host.starts_with('['))
        return ReadNumber6(host).has_value();
    constexpr std::string_view kNameCharacters =
        "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789-._";
    return !host.empty() && host.size() <= kLongestHost && IsOf(host, kNameCharacters) &&
           !host.starts_with('.');
}

bool IsOwnNumber4(std::uint32_t number)
{
    return std::any_of(std::begin(kOwnNets4), std::end(kOwnNets4), [&](const Net4& net) {
        return (number >> (32 - net.bits)) == (net.network >> (32 - net.bits));
    });
}

std::uint32_t ReadNumber4(const std::uint8_t* bytes)
{
    return static_cast<std::uint32_t>(bytes[0]) << 24 | static_cast<std::uint32_t>(bytes[1]) << 16 |
           static_cast<std::uint32_t>(bytes[2]) << 8 | bytes[3];
}

bool IsOwnNumber6(const in6_addr& number)
{
    const std::uint8_t* const bytes = number.s6_addr;
    if (bytes[0] == 0xFE && (bytes[1] & 0xC0) == 0x80)
        return true; // Link-local.
    if (!std::all_of(bytes, bytes + 10, [](std::uint8_t byte) { return byte == 0; }))
        return false;
    // ::, ::1 and the IPv4 addresses in IPv6 clothes, ::a.b.c.d and ::ffff:a.b.c.d.
    const bool isPlain = bytes[10] == 0 && bytes[11] == 0;
    const bool isMapped = bytes[10] == 0xFF && bytes[11] == 0xFF;
    return (isPlain || isMapped) && IsOwnNumber4(ReadNumber4(bytes + 12));
}

bool IsOwnName(std::string_view name)
{
    const auto isName = [&](std::string_view own) { return IsEqual(own, name); };
    // "_gateway", "_localdnsstub" and the like: names that the system's resolver makes up.
    if (name.starts_with('_') || std::any_of(std::begin(kOwnNames), std::end(kOwnNames), isName))
        return true;
    constexpr std::string_view kLocal = ".localhost";
    if (name.size() > kLocal.size() && IsEqual(name.substr(name.size() - kLocal.size()), kLocal))
        return true;
    std::array<char, 256> buffer{};
    if (gethostname(buffer.data(), buffer.size() - 1) != 0 || buffer[0] == '\0')
        return false;
    const std::string machine(buffer.data());
    const std::string label = machine.substr(0, machine.find('.'));
    return isName(machine) || isName(label) || isName(label + ".local");
}

} // namespace

bool IsStreamScheme(std::string_view scheme)
{
    return std::any_of(std::begin(kSchemes), std::end(kSchemes), [&](std::string_view known) {
        return IsEqual(known, scheme);
    });
}

bool IsSignAddress(std::string_view address)
{
    const auto isUnfit = [](char byte) {
        const auto value = static_cast<unsigned char>(byte);
        return value <= 0x20 || value == 0x7F;
    };
    if (address.size() > kLongestAddress || std::any_of(address.begin(), address.end(), isUnfit) ||
        !IsWholeUtf8(address))
        return false;
    const std::optional<Authority> authority = FindAuthority(address);
    constexpr std::size_t kLongestPort = 5;
    return authority && IsHost(authority->host) && authority->port.size() <= kLongestPort &&
           IsOf(authority->port, "0123456789");
}

bool PointsAtThisMachine(std::string_view address)
{
    const std::optional<Authority> authority = FindAuthority(address);
    if (!authority)
        return false;
    if (const std::optional<in6_addr> number = ReadNumber6(authority->host))
        return IsOwnNumber6(*number);
    std::string host(authority->host);
    while (host.ends_with('.'))
        host.pop_back();
    in_addr number{};
    // Takes what the system takes: 127.1, 0x7f000001, 2130706433, 0177.0.0.1.
    if (inet_aton(host.c_str(), &number) != 0)
        return IsOwnNumber4(ntohl(number.s_addr));
    return IsOwnName(host);
}

bool IsPlayable(std::string_view address, SignAddressRule rule)
{
    return IsSignAddress(address) &&
           (rule == SignAddressRule::Any || !PointsAtThisMachine(address));
}

} // namespace kivo::host
