#pragma once

#include "shell/contracts/base/Export.h"
#include "shell/contracts/base/Marshallable.h"
#include "shell/contracts/base/String.h"

#include <cstdint>
#include <map>
#include <string>

namespace kivo {

// A small map from numbers to UTF-8 text that host and plug-ins pass by value and that the host can
// put on the wire: a count in four bytes, then key (four bytes), length (two) and bytes of each
// entry, ascending by key, all integers little-endian.
//
// A state sign holds under 0 the track's address, under 1 its title; an entry of a playlist holds
// under 0 the title, under 1 the author, under 14 the address.
// Thread: one object on one thread at a time.
class KIVO_API Property : public Marshallable {
public:
    using Entries = std::map<std::uint32_t, std::string>;

    Property() = default;
    Property(const Property&) = default;
    Property& operator=(const Property&) = default;

    // Throws PackError* when a value has more than 65535 bytes or there is no room.
    void marshal(Pack& pack) const override;

    // Adds to what is there; a key that comes twice ends with its last value. Throws UnpackError*
    // at the end of a cut input, with the entries before it taken over.
    void unmarshal(Unpack& unpack) override;
    ~Property() override = default;

    virtual void merge(Entries entries); // Sets each of these keys.

    // Removes the keys that have the very same value in the other record.
    virtual void subtract(const Property& other);

    void SetText(std::uint32_t key, StringView text);
    [[nodiscard]] String GetText(std::uint32_t key) const;       // Empty: absent, or empty.
    [[nodiscard]] std::string GetBytes(std::uint32_t key) const; // Empty: absent, or empty.
    [[nodiscard]] const Entries& GetEntries() const { return entries_; }

private:
    Entries entries_;
};

} // namespace kivo
