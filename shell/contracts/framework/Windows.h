#pragma once

#include "shell/contracts/base/Export.h"
#include "shell/contracts/base/String.h"

#include <cstdint>

namespace kivo {

// A window by number: a slot in the low and a generation in the high half, so that the number of a
// window that is gone is never taken for another's. 0 is no window.
using HWND = std::uint64_t;
using WPARAM = std::uintptr_t;
using LPARAM = std::intptr_t;

struct Rect {
    int left = 0;
    int top = 0;
    int right = 0;
    int bottom = 0;
    friend bool operator==(const Rect&, const Rect&) = default;
};

struct Point {
    int x = 0;
    int y = 0;
    friend bool operator==(const Point&, const Point&) = default;
};

// A platform window as a plain object: a handle while it exists, and a procedure for its messages.
// What draws it is its peer's matter (platform/ui). Thread: user interface.
class KIVO_API CWnd {
public:
    CWnd() = default;
    CWnd(const CWnd&) = delete;
    CWnd& operator=(const CWnd&) = delete;
    virtual ~CWnd(); // Destroys the window if it still exists.

    // Enters the handle; a class with a peer makes that too. True when a handle stands afterwards.
    virtual bool CreateHandle();
    virtual void
    DestroyWindow(); // The handle is dead from here on; messages under way free their payload.

    [[nodiscard]] HWND GetHandle() const { return handle_; } // 0: no window.
    [[nodiscard]] bool IsWindow() const { return handle_ != 0; }

    // Receives what PostMessageW sent to the handle. Whoever handles a message with a payload owns
    // it from the entry on. The base does nothing and gives 0.
    virtual LPARAM WindowProc(unsigned message, WPARAM wParam, LPARAM lParam);

    // Platform show command: 0 hides, 1 and 5 show. Pixels are device-independent.
    virtual void ShowWindow(int command);
    virtual void MoveWindow(const Rect& bounds);
    [[nodiscard]] virtual bool IsWindowVisible() const;
    [[nodiscard]] virtual Rect GetWindowRect() const;

private:
    HWND handle_ = 0;
    Rect bounds_;
    bool visible_ = false;
};

// Frees the payload of a message that can't be delivered. Thread: any.
using MessageDisposer = void (*)(WPARAM, LPARAM);

// Queues a message for the window, in order per thread. 1: queued. 0: no such window or the queue
// is closed; the disposer, if any, has then run, once. It also runs, once, when the window is gone
// at delivery or the queue is released at the end of the program. Thread: any.
KIVO_API int PostMessageW(HWND window,
                          unsigned message,
                          WPARAM wParam,
                          LPARAM lParam,
                          MessageDisposer disposer = nullptr);

} // namespace kivo
