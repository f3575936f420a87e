#pragma once

#include <string_view>

namespace kivo::host {

// Which addresses of contacts may be played.
enum class SignAddressRule {
    NotThisMachine, // None that points at this machine or its own link.
    Any,            // Those as well: for tests, which serve on this machine.
};

// Whether addresses of that scheme reach the player: http, https, mms, mmsh, mmst or rtsp, in any
// letters.
[[nodiscard]] bool IsStreamScheme(std::string_view scheme);

// Whether the bytes are an address of a stream that may travel between contacts: one of those
// schemes, a host, no user name or password, at most 2048 bytes of valid UTF-8 without blanks and
// controls.
[[nodiscard]] bool IsSignAddress(std::string_view address);

// Whether the address's host is this machine or lies on its own link: by a name of the machine or
// by a number, in any of the forms that the system takes for one. A name that a server of names
// resolves to such a number isn't seen. Of what IsSignAddress has taken.
[[nodiscard]] bool PointsAtThisMachine(std::string_view address);

// A contact's address that may reach the player.
[[nodiscard]] bool IsPlayable(std::string_view address, SignAddressRule rule);

} // namespace kivo::host
