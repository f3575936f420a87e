#pragma once

#include "shell/contracts/base/Export.h"
#include "shell/contracts/base/SDKEvent.h"
#include "shell/contracts/framework/Windows.h"

#include <cstddef>
#include <functional>
#include <memory>

namespace kivo {

// What waits for the user-interface thread: window messages and deferred events in one line, in
// order per thread. An entry leaves the line before it runs, so that a nested event loop goes on
// with the next one. Thread: Post and PostMessage any; all else user interface, unless said.
class KIVO_API PostQueue {
public:
    // The process's own; PostMessageW posts to it. Never destroyed: threads may outlive `main`.
    [[nodiscard]] static PostQueue& Get();

    PostQueue();
    PostQueue(const PostQueue&) = delete;
    PostQueue& operator=(const PostQueue&) = delete;
    ~PostQueue(); // Releases what waits. No thread may post any more.

    // Takes the event. 1: queued. 0: the queue is closed and the event has been released.
    int Post(ISDKEvent* event);

    // As PostMessageW promises; the window is looked up at delivery.
    int PostMessage(
        HWND window, unsigned message, WPARAM wParam, LPARAM lParam, MessageDisposer disposer);

    // Readable exactly while an entry waits: what an event loop watches, also one that is nested in
    // an entry. Owned here; whoever watches it doesn't read it.
    [[nodiscard]] int GetWakeDescriptor() const;

    // For a loop that watches the descriptor: runs at most 64 entries, so that painting and timers
    // get their turn.
    void RunWake();

    bool RunOne();     // False: nothing waited.
    void RunPending(); // Runs until nothing waits, entries posted meanwhile included.

    // Runs the waiting messages of that number in order, and leaves all else in its place.
    void DeliverMessages(unsigned message);

    // Frees, unrun, each waiting entry whose code lies in the library that `address` lies in (any
    // function or static object of it). The library's entries must not be unloaded before.
    void ReleaseOfLibrary(const void* address);

    // Frees, unrun, what waits and everything that is posted later.
    void Close();

    // Lets entries in again after a Close (a second start in one process; tests).
    void Reopen();

    [[nodiscard]] std::size_t GetCount() const; // Thread: any.

private:
    struct Impl;
    std::unique_ptr<Impl> impl_;
};

} // namespace kivo
