#pragma once

#include <memory>

namespace kivo::host {

// The connection to the desktop: the application object. Where no display answers it stands
// off-screen. One at a time; it ends after everything that is shown. Thread: the main one.
class Screen {
public:
    Screen();
    Screen(const Screen&) = delete;
    Screen& operator=(const Screen&) = delete;
    ~Screen();

    [[nodiscard]] bool IsVisible() const; // False: off-screen.

private:
    struct Impl;
    std::unique_ptr<Impl> impl_;
};

} // namespace kivo::host
