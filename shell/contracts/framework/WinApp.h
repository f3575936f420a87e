#pragma once

#include "shell/contracts/base/Export.h"

namespace kivo {

// The one application object of a library. Its InitInstance runs from the library's initialiser,
// ExitInstance from its finaliser; a library may define one. Thread: the one that loads and
// unloads.
class KIVO_API CWinApp {
public:
    CWinApp() = default;
    CWinApp(const CWinApp&) = delete;
    CWinApp& operator=(const CWinApp&) = delete;
    virtual ~CWinApp() = default;

    virtual int InitInstance(); // 1. A result of 0 means that the library is of no use.
    virtual int ExitInstance(); // 0.
    virtual int PreTranslateMessage(void* message); // 0: not handled.
};

} // namespace kivo
