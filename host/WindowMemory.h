#pragma once

#include "shell/contracts/ui/Types.h"

#include <optional>

namespace kivo::ui {
class CSkinForm;
} // namespace kivo::ui

namespace kivo::host {

class HostSettings;

// How the window looked when the program ended last: its size and place, whether it filled the
// screen, and the height of the page's lower pane. Thread: user interface.
class WindowMemory {
public:
    explicit WindowMemory(HostSettings& settings); // Borrowed.

    [[nodiscard]] ui::Size GetSize() const; // Zeros: none is known.

    // In device-independent pixels of the desktop; empty: none is known, or none from which a hand
    // could still reach the window, since a screen has gone.
    [[nodiscard]] std::optional<Point> GetPlace() const;

    void RestorePane(ui::CSkinForm& form) const;            // Once the page is there.
    void RestoreMaximized(const ui::CSkinForm& form) const; // Once the window shows.

    void Keep(const ui::CSkinForm& form); // Before the page goes.

private:
    HostSettings& settings_;
};

} // namespace kivo::host
