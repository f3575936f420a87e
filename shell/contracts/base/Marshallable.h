#pragma once

#include "shell/contracts/base/Export.h"

#include <iosfwd>

namespace kivo {

class Pack;
class Unpack;

// What the host can carry across its network. Thread: one object on one thread at a time.
class KIVO_API Marshallable {
public:
    virtual void marshal(Pack& pack) const = 0; // Throws PackError*.
    virtual void unmarshal(Unpack& unpack) = 0; // Throws UnpackError*; what was read stays.
    virtual ~Marshallable() = default;
    virtual std::ostream& trace(std::ostream& stream) const; // Only says that it is not there.

protected:
    Marshallable() = default;
    Marshallable(const Marshallable&) = default;
    Marshallable& operator=(const Marshallable&) = default;
};

} // namespace kivo
