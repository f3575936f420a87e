#pragma once

#include "shell/contracts/base/String.h"

namespace kivo::host {

enum class MessageKind { Notice, Question, Error };

// How the user is told or asked something at once. Thread: user interface.
class IMessages {
public:
    virtual ~IMessages() = default;

    // Returns when the user has answered. True: yes; a notice or an error is always true. Without a
    // display nobody answers: the text goes to the error stream, and the answer is no.
    virtual bool Show(MessageKind kind, const String& title, const String& text) = 0;
};

} // namespace kivo::host
