#pragma once

#include "host/IMessages.h"

#include <memory>

namespace kivo::host {

class Terminal;

// Boxes on the screen.
[[nodiscard]] std::unique_ptr<IMessages> MakeBoxMessages();

// Lines on the error stream, for a run that nobody watches. `terminal` is borrowed.
[[nodiscard]] std::unique_ptr<IMessages> MakeTerminalMessages(Terminal& terminal);

} // namespace kivo::host
