#pragma once

#include "shell/contracts/base/Export.h"
#include "shell/contracts/base/String.h"
#include "shell/contracts/framework/Exception.h"

namespace kivo {

// The failures of packing. They are thrown as pointers to heap objects; whoever catches one calls
// Delete.
class KIVO_API PException : public CSimpleException {
public:
    [[nodiscard]] const String& GetMessage() const { return message_; }
    [[nodiscard]] unsigned GetCode() const { return code_; }

protected:
    PException(StringView message, unsigned code);

private:
    String message_;
    unsigned code_;
};

class KIVO_API PackError : public PException {
public:
    explicit PackError(StringView message); // Code 999.
};

class KIVO_API UnpackError : public PException {
public:
    explicit UnpackError(StringView message); // Code 998.
};

} // namespace kivo
