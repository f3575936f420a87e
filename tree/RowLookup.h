#pragma once

#include "shell/contracts/base/LifeToken.h"
#include "shell/contracts/base/String.h"

#include <functional>
#include <memory>

namespace kivo {
class CWorker;
}

namespace kivo::tunehive {

class ITuneHive_AsyncCallbackParam;

// Looks files up behind the rows' back: whether a path still leads to a file, and its metadata into
// the library's cache. Paths of rows on screen go first; each waits once.
// Thread: user interface; the work itself is the worker's.
class RowLookup {
public:
    // Called for each path that was looked up. On the user-interface thread.
    using Found = std::function<void(const String& path, bool exists)>;

    explicit RowLookup(Found found);
    RowLookup(const RowLookup&) = delete;
    RowLookup& operator=(const RowLookup&) = delete;
    ~RowLookup();

    void AskOnScreen(const String& path);
    void AskInBackground(const String& path);
    [[nodiscard]] bool IsBusy() const; // A row on screen waits for its result.

private:
    class Job;
    struct State;

    void OnResults(ITuneHive_AsyncCallbackParam* param);
    void Ask(const String& path, bool onScreen);

    Found found_;
    // Shared with the jobs on the worker, which may outlive this object.
    std::shared_ptr<State> state_;
    LifeToken life_;
};

} // namespace kivo::tunehive
