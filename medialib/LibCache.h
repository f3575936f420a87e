#pragma once

#include "medialib/LibCacheFile.h"
#include "medialib/MediaInfo.h"
#include "shell/contracts/base/String.h"
#include "shell/contracts/framework/Threads.h"

#include <atomic>
#include <functional>
#include <map>
#include <memory>

namespace kivo::tunehive {

enum class CacheLook : int;

// The store of all metadata that was ever read: in memory while it is initialised, in library files
// between runs. Local paths are kept in one file, URLs in another; what else lies in the folder is
// loaded and left alone.
//
// Thread: GetMediaInfo, SetMediaInfo and Peek any; the rest by the owner.
class CLibCache {
public:
    CLibCache();
    CLibCache(const CLibCache&) = delete;
    CLibCache& operator=(const CLibCache&) = delete;
    virtual ~CLibCache(); // Saves nothing.

    // Creates the folder, which ends in a separator, and has its library files read on a thread of
    // its own, or here where there is none to have; `onLoaded`, if set, is called there when that
    // is done. Nothing when initialised.
    void Initialize(const String& directory, std::function<void()> onLoaded = {});

    // Saves the files that changed and frees everything. Nothing when not initialised.
    void Uninitialize();

    // Saves the files that changed, in the order of their names; failures are left to the files.
    void SaveAll();

    // True: `info` is replaced by a copy of the entry. Else it is left alone. Waits for the load.
    bool GetMediaInfo(const String& key, MediaInfo& info);

    // Merges the record into the entry of the key. False: not initialised. Waits for the load.
    bool SetMediaInfo(const String& key, const MediaInfo& info);

    // As GetMediaInfo, but answers Loading instead of waiting.
    [[nodiscard]] CacheLook Peek(const String& key, MediaInfo& info);

    [[nodiscard]] bool IsLoaded() const { return loaded_.load(std::memory_order_acquire); }
    void WaitUntilLoaded() const { loaded_.wait(false, std::memory_order_acquire); }

private:
    class LoadJob;

    CLibCacheFile* ChooseFile(const String& key);

    int initialised_ = 0;
    std::atomic<bool> loaded_ = true; // Of what was to be loaded: nothing waits before Initialize.
    CriticalSection lock_;            // Guards the files once they are loaded.
    std::map<String, std::unique_ptr<CLibCacheFile>> files_;
    CWorker loader_; // Last: its thread is gone before what it fills.
};

} // namespace kivo::tunehive
