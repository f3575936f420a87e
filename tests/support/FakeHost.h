#pragma once

#include "shell/contracts/base/Property.h"
#include "shell/contracts/host/KivoApi.h"

#include <cstddef>
#include <deque>
#include <functional>
#include <map>
#include <mutex>
#include <set>
#include <string>
#include <vector>

namespace kivo::test {

// The host in memory: while one stands, the wrappers of shell/contracts/host/KivoApi.h reach it.
// One at a time. What a test sets and reads are plain fields; only posts may come from any thread.
class FakeHost {
public:
    FakeHost();
    FakeHost(const FakeHost&) = delete;
    FakeHost& operator=(const FakeHost&) = delete;
    ~FakeHost(); // Releases what is still queued.

    // Runs and frees the posted events one at a time, with those that they post in turn. Gives
    // their number.
    int RunPosted();
    int ReleasePosted(); // Frees them unrun, as the host does at its end.
    [[nodiscard]] std::size_t CountPosted();

    // Runs the delegates that watch the key, as after a change of that setting.
    void ChangeSetting(const String& key) const;

    // How often a service was called. `name` is the function's.
    [[nodiscard]] std::size_t CountCalls(const std::string& name) const;

    // What it answers.
    String directory; // Ends in a separator. Empty: GetMyDir gives 0.
    String uid = u"tester";
    int acceptsWindow = 1;
    int showsMediaState = 1;
    std::map<String, String> texts; // By string id; an id without a text stands for itself.
    std::deque<int> boxAnswers;     // Result words of the next boxes; 0 when none is left.
    std::set<std::string> missing;  // Services that this host lacks.

    // What it was told.
    struct Box {
        int code;
        String title;
        String message;
        int style;
    };
    struct Watch {
        void* watcher;
        SettingDelegate delegate;
        String key;
        String filter;
        int always;
    };
    struct Sign {
        IPlugin* plugin;
        String kind;
        String title;
        Property record;
    };
    std::vector<std::string> calls; // Names in order, but for the posts.
    std::vector<Box> boxes;
    std::vector<Watch> watches;
    std::vector<Sign> signs;             // All that were set; a removal empties it.
    std::vector<IPluginWindow*> windows; // Those registered now.
    std::vector<int> tags;
    std::vector<void*> instances; // Modules registered now.

    Delegate<> duringBox; // Runs inside each modal box, before it is answered.
    std::function<void(const std::string&)> onCall; // Runs inside each call but the posts.

private:
    friend struct FakeServices;

    std::mutex mutex_;
    std::deque<ISDKEvent*> posted_; // guarded by mutex_
};

} // namespace kivo::test
