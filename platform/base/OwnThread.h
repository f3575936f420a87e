#pragma once

#include "shell/contracts/framework/Threads.h"

#include <atomic>
#include <cassert>

namespace kivo {

// The one thread that an object belongs to: the first that calls. Debug builds end the program
// where another one calls, since that is always a mistake of ours.
class OwnThread {
public:
    void Check()
    {
        ThreadId owner = 0;
        const ThreadId caller = GetCurrentThreadId();
        const bool isOwner = owner_.compare_exchange_strong(owner, caller) || owner == caller;
        assert(isOwner);
        static_cast<void>(isOwner); // Where asserts are off.
    }

private:
    std::atomic<ThreadId> owner_ = 0;
};

} // namespace kivo
