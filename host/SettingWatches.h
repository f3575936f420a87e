#pragma once

#include "shell/contracts/base/String.h"
#include "shell/contracts/host/KivoApi.h"

#include <vector>

namespace kivo::host {

// Who wants to hear of which setting. Thread: user interface.
class SettingWatches {
public:
    // The same watcher, delegate and key a second time changes nothing.
    void Add(void* watcher, const SettingDelegate& delegate, const String& key);
    void Remove(void* watcher); // All of that watcher's.

    // Calls those that watch the key, in order of addition. A delegate may add and remove watches:
    // one that is removed isn't called any more.
    void Notify(const String& key);

private:
    struct Watch {
        void* watcher;
        SettingDelegate delegate;
        String key;
        friend bool operator==(const Watch&, const Watch&) = default;
    };
    [[nodiscard]] bool Has(const Watch& watch) const;

    std::vector<Watch> watches_;
};

} // namespace kivo::host
