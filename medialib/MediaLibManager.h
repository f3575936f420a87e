#pragma once

#include "medialib/IMediaInfoProvider.h"
#include "medialib/IMediaLibManager.h"
#include "medialib/LibCache.h"
#include "shell/contracts/base/Released.h"
#include "shell/contracts/framework/Threads.h"

#include <map>
#include <memory>
#include <utility>
#include <vector>

namespace kivo::tunehive {

// How a path is taken: the numbers go up with what can be done with it.
enum class PathClass : int { Nothing = 0, Url = 1, LocalFile = 2 };

// The one implementation of IMediaLibManager. It has no thread for requests: each runs to its end
// on its caller's. Thread: as IMediaLibManager; what stands here alone, the user interface, before
// Initialize or where a request is answered.
class MediaLibManager : public IMediaLibManager {
public:
    MediaLibManager();
    MediaLibManager(const MediaLibManager&) = delete;
    MediaLibManager& operator=(const MediaLibManager&) = delete;
    ~MediaLibManager() override;

    int GetMediaInfo(String path, MediaInfo& info) override;
    void UpdateMediaInfo(String path, MediaInfo info, int notifyMode) override;
    void AddListener(const MediaLibListener& listener, const LifeWatch& life) override;
    void RemoveListener(const MediaLibListener& listener) override;
    int Initialize(String directory) override;
    int Uninitialize() override;
    int IsReady() override;
    void Release() override;
    CacheLook PeekMediaInfo(const String& path, MediaInfo& info) override;
    void CallWhenLoaded(const MediaLibListener& listener, const LifeWatch& life) override;
    CWorker* GetWorker() override;
    bool StopWork(int timeoutMs) override;

    // Enters the provider for each of its types, behind those that are there. Uninitialize frees
    // it. Null is ignored.
    void AddProvider(Released<ILocalMediaInfoProvider> provider);

    // Who answers for URLs; Uninitialize frees it. Initialize sets none.
    void SetRemoteProvider(Released<IRemoteMediaInfoProvider> provider);

    [[nodiscard]] static PathClass ClassifyPath(const String& path);

    // The MediaFileType of an existing file, no folder, by its extension; kNoFileType without one.
    [[nodiscard]] static int GetFileType(const String& path);

    // True: a provider had an answer, which stands in `info`.
    bool ReadFromProviders(const String& path, MediaInfo& info) const;

private:
    using Listener = std::pair<MediaLibListener, LifeWatch>;

    void NotifyLater(const String& path);
    void NotifyNow(const String& path);
    void OnCacheLoaded();
    [[nodiscard]] std::vector<Listener> CopyListeners();

    std::map<int, std::vector<IMediaInfoProvider*>> providerTable_;
    std::vector<Released<IMediaInfoProvider>> providers_;
    Released<IRemoteMediaInfoProvider> remoteProvider_;
    int started_ = 0;
    bool isWorkerLost_ = false; // It hangs in the disk and may still use what stands here.
    CriticalSection lock_;      // Guards the two lists of listeners.
    std::vector<Listener> listeners_;
    std::vector<Listener> loadListeners_; // Until the cache is loaded.
    ThreadId mainThread_ = 0;
    std::unique_ptr<CLibCache> cache_;
    std::unique_ptr<CWorker> worker_;
};

} // namespace kivo::tunehive
