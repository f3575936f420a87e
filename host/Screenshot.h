#pragma once

#include <functional>
#include <memory>
#include <string>

namespace kivo::host {

// A picture of the main form, taken once what it shows has come to rest: rows that fill in behind
// are there by then. It needs the application object. Thread: user interface.
class Screenshot {
public:
    // `path` is bytes. `done` gets whether the picture was written.
    Screenshot(std::string path, std::function<void(bool)> done);
    Screenshot(const Screenshot&) = delete;
    Screenshot& operator=(const Screenshot&) = delete;
    ~Screenshot();

    void Start(); // A second call changes nothing.

private:
    struct Impl;
    std::unique_ptr<Impl> impl_;
};

} // namespace kivo::host
