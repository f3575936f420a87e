#pragma once

#include "tests/support/Process.h"

#include <memory>
#include <string>

namespace kivo::test {

// An X display of a test's own: Xvfb, and openbox as its window manager if asked for. Both end with
// the object.
class XScreen {
public:
    explicit XScreen(bool hasManager = true);
    XScreen(const XScreen&) = delete;
    XScreen& operator=(const XScreen&) = delete;
    ~XScreen();

    // Both are there and answer. False: the packages aren't installed.
    [[nodiscard]] bool IsUp() const { return isUp_; }

    // As in DISPLAY.
    [[nodiscard]] const std::string& GetName() const { return name_; }

private:
    [[nodiscard]] bool WaitForManager() const;

    std::unique_ptr<Process> server_;
    std::unique_ptr<Process> manager_;
    std::string name_;
    bool isUp_ = false;
};

} // namespace kivo::test
