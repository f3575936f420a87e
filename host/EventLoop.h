#pragma once

#include <memory>

namespace kivo::host {

// Feeds posts and timers from the application's event loop, nested loops included. One at a time;
// it needs the application object. Thread: user interface.
class EventLoop {
public:
    EventLoop();
    EventLoop(const EventLoop&) = delete;
    EventLoop& operator=(const EventLoop&) = delete;
    ~EventLoop();

private:
    struct Impl;
    std::unique_ptr<Impl> impl_;
};

} // namespace kivo::host
