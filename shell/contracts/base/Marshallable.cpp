#include "shell/contracts/base/Marshallable.h"

#include <ostream>

namespace kivo {

std::ostream& Marshallable::trace(std::ostream& stream) const
{
    return stream << "trace Marshallable [ not immplement ]";
}

} // namespace kivo
