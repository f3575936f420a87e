#pragma once

#include "host/sign/SignAddress.h"
#include "shell/contracts/base/Property.h"
#include "shell/contracts/base/String.h"

#include <optional>
#include <string>

namespace kivo::host {

// What User Tune carries, in UTF-8. All empty: nobody plays anything.
struct Tune {
    std::string artist;
    std::string source; // An album or a station.
    std::string title;
    std::string track; // A number, or the address of a stream.
    std::string uri;   // Of a page about the song; in a tune of ours, the address that plays.
    bool isOurs = false;
    bool isLocal = false; // Ours: it plays a file that only its owner has.
    std::string kind;     // Ours: "music" or "video".

    bool operator==(const Tune&) const = default;
};

[[nodiscard]] bool IsEmpty(const Tune& tune); // It shows nothing.

// A sign as plug-ins know it.
struct Sign {
    String kind;
    String title;
    Property record;
};

// What may leave this machine of a sign: its title, cleaned, and its address if it is one of a
// stream. A path never does. Without title and address: an empty tune.
[[nodiscard]] Tune MakeTune(const Sign& sign, bool withAddress);

// What a contact's tune shows here; nothing: it shows nothing. The address is one that may be
// played; where there is none, it is "/" and the title, which is neither empty nor an address.
[[nodiscard]] std::optional<Sign> ReadTune(const Tune& tune, SignAddressRule rule);

} // namespace kivo::host
