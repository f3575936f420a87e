#include "shell/contracts/base/Beyond.h"

namespace kivo {

namespace {
bool isBeyond = false;
}

bool IsBeyond()
{
    return isBeyond;
}

void SetBeyond(bool on)
{
    isBeyond = on;
}

} // namespace kivo
