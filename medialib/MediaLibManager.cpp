#include "medialib/MediaLibManager.h"

#include "medialib/MediaFileType.h"
#include "medialib/MediaLibUpdateParam.h"
#include "medialib/NewerFormats.h"
#include "medialib/NewerFormatsProvider.h"
#include "medialib/WMFProvider.h"
#include "shell/contracts/base/Beyond.h"
#include "shell/contracts/common/AppPath.h"
#include "shell/contracts/common/Text.h"
#include "shell/contracts/framework/Paths.h"

#include <algorithm>
#include <atomic>

namespace kivo::tunehive {

namespace {

struct FileType {
    StringView extension; // With its dot; compared to the letter.
    int type;
};
constexpr FileType kFileTypes[] = {
    {u".mp3",  kFileMp3 },
    {u".wma",  kFileWma },
    {u".wmv",  kFileWmv },
    {u".wav",  kFileWav },
    {u".asf",  kFileAsf },
    {u".midi", kFileMidi},
    {u".avi",  kFileAvi },
    {u".mpg",  kFileMpeg},
    {u".mpeg", kFileMpeg},
    {u".rm",   kFileRm  },
    {u".rmvb", kFileRmvb},
    {u".mp4",  kFileMp4 },
    {u".ape",  kFileApe },
    {u".asx",  kFileAsx },
    {u".m3u",  kFileM3u },
};

int FindFileType(StringView extension)
{
    for (const auto& [known, type] : kFileTypes)
        if (known == extension)
            return type;
    return kNoFileType;
}

// What the table doesn't know: a newer format, or one of the table's in capital letters.
int FindNewerFileType(const String& extension)
{
    if (!IsBeyond() || extension.empty())
        return kNoFileType;
    if (const NewerFormat* newer = FindNewerFormat(StringView(extension).substr(1)))
        return newer->type;
    return FindFileType(common::ToLowerAscii(extension));
}

int FindTypeOf(const String& file)
{
    const String extension = PathFindExtensionW(file);
    const int type = FindFileType(extension);
    return type != kNoFileType ? type : FindNewerFileType(extension);
}

void ApplyTitleRule(const String& path, MediaInfo& info)
{
    String& title = info[kInfoTitle];
    if (!title.empty())
        return;
    if (!UrlIsW(path))
        title = PathFindFileNameW(path);
    if (title.empty())
        title = path; // A URL is its own title, and so is a path that ends in a separator.
}

constexpr int kStopTimeoutMs = 5000;

std::atomic<MediaLibManager*> instance = nullptr;

} // namespace

IMediaLibManager* GetMediaLibManager()
{
    if (instance == nullptr)
        instance = std::make_unique<MediaLibManager>().release();
    return instance;
}

IMediaLibManager* FindMediaLibManager()
{
    return instance;
}

void DestroyMediaLibManager()
{
    // The pointer goes last: work that is being stopped may still ask for it.
    MediaLibManager* const manager = instance;
    if (manager == nullptr)
        return;
    manager->Uninitialize();
    instance = nullptr;
    manager->Release();
}

MediaLibManager::MediaLibManager() = default;

MediaLibManager::~MediaLibManager()
{
    MediaLibManager::Uninitialize();
}

void MediaLibManager::Release()
{
    Uninitialize();
    if (!isWorkerLost_)
        delete this;
}

int MediaLibManager::GetMediaInfo(String path, MediaInfo& info)
{
    MediaInfo work;
    bool isKnown = cache_ != nullptr && cache_->GetMediaInfo(path, work);
    if (!isKnown && ReadFromProviders(path, work)) {
        isKnown = true;
        UpdateMediaInfo(path, work, static_cast<int>(NotifyMode::None));
    }
    // Behind the update: a title that is made up here never gets into the cache.
    ApplyTitleRule(path, work);
    info = std::move(work);
    return isKnown ? 1 : 0;
}

void MediaLibManager::UpdateMediaInfo(String path, MediaInfo info, int notifyMode)
{
    if (cache_ == nullptr)
        return;
    cache_->SetMediaInfo(path, info);
    switch (static_cast<NotifyMode>(notifyMode)) {
    case NotifyMode::Later: NotifyLater(path); break;
    case NotifyMode::Now:
        if (GetCurrentThreadId() == mainThread_)
            NotifyNow(path);
        break;
    case NotifyMode::None:
    default: break;
    }
}

void MediaLibManager::NotifyLater(const String& path)
{
    for (const auto& [listener, life] : CopyListeners())
        PostCallback(listener, std::make_unique<MediaLibUpdateParam>(path).release(), life);
}

void MediaLibManager::NotifyNow(const String& path)
{
    for (const auto& [listener, life] : CopyListeners()) {
        MediaLibUpdateParam param(path);
        if (life.IsAlive())
            listener(&param);
    }
}

std::vector<MediaLibManager::Listener> MediaLibManager::CopyListeners()
{
    const CriticalSection::Guard guard(lock_);
    return listeners_;
}

void MediaLibManager::AddListener(const MediaLibListener& listener, const LifeWatch& life)
{
    const CriticalSection::Guard guard(lock_);
    const bool isThere =
        std::any_of(listeners_.begin(), listeners_.end(), [&](const Listener& known) {
            return known.first == listener;
        });
    if (!isThere)
        listeners_.emplace_back(listener, life);
}

void MediaLibManager::RemoveListener(const MediaLibListener& listener)
{
    const CriticalSection::Guard guard(lock_);
    const auto found = std::find_if(listeners_.begin(),
                                    listeners_.end(),
                                    [&](const Listener& known) { return known.first == listener; });
    if (found != listeners_.end())
        listeners_.erase(found);
}

int MediaLibManager::Initialize(String directory)
{
    if (started_ != 0)
        return 0;
    mainThread_ = GetCurrentThreadId();
    worker_ = std::make_unique<CWorker>();
    cache_ = std::make_unique<CLibCache>();
    cache_->Initialize(directory, [this] { OnCacheLoaded(); });
    AddProvider(Released<ILocalMediaInfoProvider>(new WMFProvider));
    if (IsBeyond())
        AddProvider(Released<ILocalMediaInfoProvider>(new NewerFormatsProvider));
    started_ = 1;
    return 1;
}

int MediaLibManager::Uninitialize()
{
    if (started_ == 0)
        return 1;
    started_ = 0;
    if (!StopWork(kStopTimeoutMs)) {
        // What the hanging thread may touch stays; only the user's data is brought home.
        cache_->SaveAll();
        return 1;
    }
    worker_.reset();
    providerTable_.clear();
    providers_.clear();
    remoteProvider_.reset();
    cache_->Uninitialize();
    cache_.reset();
    const CriticalSection::Guard guard(lock_);
    loadListeners_.clear();
    return 1;
}

int MediaLibManager::IsReady()
{
    return 1;
}

CacheLook MediaLibManager::PeekMediaInfo(const String& path, MediaInfo& info)
{
    return cache_ != nullptr ? cache_->Peek(path, info) : CacheLook::Miss;
}

void MediaLibManager::CallWhenLoaded(const MediaLibListener& listener, const LifeWatch& life)
{
    {
        const CriticalSection::Guard guard(lock_);
        if (cache_ != nullptr && !cache_->IsLoaded()) {
            loadListeners_.emplace_back(listener, life);
            return;
        }
    }
    PostCallback(listener, std::make_unique<MediaLibUpdateParam>(String()).release(), life);
}

void MediaLibManager::OnCacheLoaded()
{
    std::vector<Listener> waiting;
    {
        const CriticalSection::Guard guard(lock_);
        waiting.swap(loadListeners_);
    }
    for (const auto& [listener, life] : waiting)
        PostCallback(listener, std::make_unique<MediaLibUpdateParam>(String()).release(), life);
}

CWorker* MediaLibManager::GetWorker()
{
    return worker_.get();
}

bool MediaLibManager::StopWork(int timeoutMs)
{
    if (worker_ != nullptr && !isWorkerLost_)
        isWorkerLost_ = !worker_->Stop(timeoutMs);
    return !isWorkerLost_;
}

void MediaLibManager::AddProvider(Released<ILocalMediaInfoProvider> provider)
{
    if (provider == nullptr)
        return;
    std::vector<int> types;
    provider->GetSupportedTypes(types);
    for (const int type : types) {
        auto& list = providerTable_[type];
        if (std::find(list.begin(), list.end(), provider.get()) == list.end())
            list.push_back(provider.get());
    }
    providers_.emplace_back(provider.release());
}

void MediaLibManager::SetRemoteProvider(Released<IRemoteMediaInfoProvider> provider)
{
    remoteProvider_ = std::move(provider);
}

PathClass MediaLibManager::ClassifyPath(const String& path)
{
    if (common::IsFileExist(path)) // One look at the disk: it is there and no folder.
        return PathClass::LocalFile;
    return UrlIsW(path) ? PathClass::Url : PathClass::Nothing;
}

int MediaLibManager::GetFileType(const String& path)
{
    return ClassifyPath(path) == PathClass::LocalFile ? FindTypeOf(path) : kNoFileType;
}

bool MediaLibManager::ReadFromProviders(const String& path, MediaInfo& info) const
{
    const PathClass kind = ClassifyPath(path);
    if (kind == PathClass::Nothing)
        return false;
    if (kind == PathClass::Url)
        return remoteProvider_ != nullptr && remoteProvider_->GetMediaInfo(path, info) != 0;
    const auto found = providerTable_.find(FindTypeOf(path));
    if (found == providerTable_.end())
        return false;
    const std::vector<IMediaInfoProvider*> providers = found->second;
    return std::any_of(providers.begin(), providers.end(), [&](IMediaInfoProvider* provider) {
        return provider->GetMediaInfo(path, info) != 0;
    });
}

} // namespace kivo::tunehive
