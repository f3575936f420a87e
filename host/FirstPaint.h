#pragma once

#include <functional>
#include <memory>

namespace kivo::host {

// Runs something once, after a window of the program has shown its first picture, so that it takes
// nothing from the start. Where none shows, without a display or minimised, it runs once
// `longestMs` milliseconds have passed. Thread: user interface.
class FirstPaint {
public:
    explicit FirstPaint(std::function<void()> run, int longestMs = 2000);
    FirstPaint(const FirstPaint&) = delete;
    FirstPaint& operator=(const FirstPaint&) = delete;
    ~FirstPaint(); // What hasn't run doesn't any more.

private:
    class Filter;
    std::unique_ptr<Filter> filter_;
};

} // namespace kivo::host
