#include "platform/base/HeapPools.h"

#include <malloc.h>

namespace kivo {

void LimitHeapPools()
{
#ifdef M_ARENA_MAX
    constexpr int kPools = 2;     // The window's thread has one for itself.
    mallopt(M_ARENA_MAX, kPools); // NOLINT(concurrency-mt-unsafe): there is no other thread
#endif
}

} // namespace kivo
