#pragma once

#include "shell/contracts/base/Export.h"

namespace kivo {

// The platform's base of exceptions that are raised as pointers to heap objects; whoever catches
// one calls Delete.
class KIVO_API CSimpleException {
public:
    CSimpleException() = default;
    CSimpleException(const CSimpleException&) = default;
    CSimpleException& operator=(const CSimpleException&) = default;
    virtual ~CSimpleException() = default;
    void Delete() { delete this; }
};

} // namespace kivo
