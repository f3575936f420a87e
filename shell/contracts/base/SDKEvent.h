#pragma once

namespace kivo {

// Work that runs later on the user-interface thread. Whoever posts it gives it away; the host calls
// Execute, then Release, or Release alone when it can't be delivered any more.
class ISDKEvent {
public:
    virtual void Execute() = 0; // Thread: user interface; the host is inside no other call of ours.
    virtual void Release() = 0; // Thread: any. Frees the event and what it carries.

protected:
    ~ISDKEvent() = default; // Not public: a caller's `delete` does not compile.
};

} // namespace kivo
