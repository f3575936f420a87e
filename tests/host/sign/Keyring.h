#pragma once

#include "tests/support/Process.h"
#include "tests/support/TempFolder.h"

#include <memory>
#include <string>

namespace kivo::test {

// A session bus of a test's own with a keyring on it, unlocked and empty. This process' store of
// passwords uses it too. One in a process.
class Keyring {
public:
    Keyring();
    Keyring(const Keyring&) = delete;
    Keyring& operator=(const Keyring&) = delete;
    ~Keyring();

    [[nodiscard]] bool IsUp() const { return isUp_; }
    [[nodiscard]] const std::string& GetBus() const { return bus_; } // Its address.

    void KillKeyring(); // The bus stays.
    void KillBus();

    [[nodiscard]] bool HoldsOnDisk(const std::string& text) const;

private:
    TempFolder folder_;
    std::unique_ptr<Process> daemon_;
    std::unique_ptr<Process> keyring_;
    std::string bus_;
    bool isUp_ = false;
};

} // namespace kivo::test
