#pragma once

#include "shell/contracts/base/String.h"
#include "shell/contracts/desktop/TuneHiveRemote.h"

#include <string>
#include <vector>

namespace kivo {
class CWnd;
class IPlugin;
class IPluginWindowLayout;
} // namespace kivo

namespace kivo::host {

// The libraries "plugin/*/*.so" beside the program. Thread: user interface.
class Plugins {
public:
    struct Failure {
        String name; // The library's, without its ending.
        String reason;
    };

    Plugins() = default;
    Plugins(const Plugins&) = delete;
    Plugins& operator=(const Plugins&) = delete;
    ~Plugins(); // As Unload.

    // Loads each in the order of their names and brings it up. One that can't be loaded, or whose
    // start fails, is unloaded again and told of; the others are none the worse. `appFolder` is
    // bytes and ends in a separator; `parent` and `layout` are borrowed until Unload.
    [[nodiscard]] std::vector<Failure>
    Load(const std::string& appFolder, CWnd* parent, IPluginWindowLayout* layout);

    // Takes each down in the opposite order, frees what is still queued for it, and unloads it.
    void Unload();

    // The same, but the libraries stay: a thread of theirs that hangs may still wake up in them.
    void UnloadInPlace();

    [[nodiscard]] ITuneHiveRemote* GetRemote() const; // Null: no player, or no page of it.

    [[nodiscard]] IPlugin* Find(unsigned pluginId) const; // Null: not loaded.

    // The first that has a picture for signs of that kind, and so knows what to do with them; null:
    // none has.
    [[nodiscard]] IPlugin* FindForSign(const String& kind) const;

private:
    struct Loaded {
        void* library;
        IPlugin* plugin;
        GetTuneHiveRemoteFunction getRemote; // Null: it is no player.
    };
    static void TakeDown(const Loaded& loaded);

    std::vector<Loaded> plugins_;
};

} // namespace kivo::host
