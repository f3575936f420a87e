#include "shell/contracts/base/PackError.h"

namespace kivo {

PException::PException(StringView message, unsigned code)
    : message_(message)
    , code_(code)
{
}

PackError::PackError(StringView message)
    : PException(message, 999)
{
}

UnpackError::UnpackError(StringView message)
    : PException(message, 998)
{
}

} // namespace kivo
