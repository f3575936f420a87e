#pragma once

#include <functional>
#include <memory>

namespace kivo::host {

// SIGTERM, SIGINT and SIGHUP as a call on the user-interface thread, from the event loop. A hang-up
// that was ignored at the start stays ignored; SIGPIPE always is. One object at a time; it needs
// the application object. Thread: user interface.
class StopSignals {
public:
    explicit StopSignals(std::function<void()> stop);
    StopSignals(const StopSignals&) = delete;
    StopSignals& operator=(const StopSignals&) = delete;
    ~StopSignals(); // The signals have their usual effect again.

private:
    struct Impl;
    std::unique_ptr<Impl> impl_;
};

} // namespace kivo::host
