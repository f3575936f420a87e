#pragma once

#include "tests/end_to_end/KivoRun.h"
#include "tests/support/XScreen.h"

#include <functional>
#include <string>

namespace kivo::test {

// Where the program runs when its window is on `screen`.
[[nodiscard]] KivoRun::World MakeWorldOn(const XScreen& screen);

// Waits until `holds` does, for half a minute at most; false: it never did.
bool WaitUntil(const std::function<bool()>& holds);

// A user's hands and eyes on an X display: real mouse and keys, by xdotool.
class Hands {
public:
    explicit Hands(const XScreen& screen);

    // Until a window of that name shows, and has the keyboard. False: none came.
    bool WaitForWindow(const std::string& name);

    // The output of `xdotool ARGUMENTS`.
    std::string Do(const std::string& arguments) const;

private:
    std::string display_;
};

} // namespace kivo::test
