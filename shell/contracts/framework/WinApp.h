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

// Runs the application object from the library's initialiser to its finaliser: a library defines
// one at namespace scope, in the source file of its application object and behind it.
class AppRun {
public:
    explicit AppRun(CWinApp& app)
        : app_(app)
        , isOfUse_(app.InitInstance() != 0)
    {
    }
    AppRun(const AppRun&) = delete;
    AppRun& operator=(const AppRun&) = delete;
    ~AppRun() { app_.ExitInstance(); }

    // What InitInstance said. False: the library gives out nothing.
    [[nodiscard]] bool IsOfUse() const { return isOfUse_; }

private:
    CWinApp& app_;
    bool isOfUse_;
};

} // namespace kivo
