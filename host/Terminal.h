#pragma once

#include "shell/contracts/base/String.h"

#include <string>
#include <string_view>

namespace kivo::host {

// Text of anybody's choosing for a terminal: control characters, those that turn the direction of
// writing, and lone surrogates become '?'. UTF-8.
[[nodiscard]] std::string ForTerminal(StringView text);
[[nodiscard]] std::string ForTerminal(std::string_view bytes);

// Cuts to as many columns as a line has; wide characters take two.
[[nodiscard]] std::string CutToColumns(const std::string& text, int columns);

// The error stream: lines, and below them one status line. On a terminal the status line is
// rewritten in place; elsewhere it is a line of its own each time that it changes. A write that
// fails is dropped. Thread: user interface.
class Terminal {
public:
    // `descriptor` is borrowed. `columns` 0: no terminal.
    Terminal(int descriptor, int columns);
    Terminal(const Terminal&) = delete;
    Terminal& operator=(const Terminal&) = delete;
    ~Terminal(); // Leaves the cursor on a line of its own.

    // The error stream of the process, with its width if it is a terminal.
    [[nodiscard]] static int GetColumns(int descriptor);

    [[nodiscard]] bool IsTerminal() const { return columns_ > 0; }

    void PrintLine(std::string_view text);    // "kivo: " and the text.
    void ShowStatus(const std::string& text); // Empty: none.

private:
    void Write(std::string_view bytes) const;

    int descriptor_;
    int columns_;
    std::string status_;
};

} // namespace kivo::host
