#include "medialib/LibCache.h"

#include "medialib/IMediaLibManager.h"
#include "shell/contracts/common/Text.h"
#include "shell/contracts/framework/FileFind.h"
#include "shell/contracts/framework/Files.h"
#include "shell/contracts/framework/Paths.h"

#include <set>
#include <utility>

namespace kivo::tunehive {

namespace {

constexpr StringView kLocalStem = u"{9B912E53-6318-4ac6-8C10-01D0357FFA48}";
constexpr StringView kUrlStem = u"{20AC30B6-3643-4adf-A87A-D67E1A12B000}";
constexpr StringView kExtension = u".mlib";

std::set<String> FindStems(const String& directory)
{
    std::set<String> stems = {String(kLocalStem), String(kUrlStem)};
    CFileFind find;
    for (int more = find.FindFile(directory + u"*.mlib"); more != 0;) {
        more = find.FindNextFile();
        if (find.IsDirectory() || find.IsDots())
            continue;
        const String name = find.GetFileName();
        if (name.size() > kExtension.size())
            stems.insert(name.substr(0, name.size() - kExtension.size()));
    }
    return stems;
}

} // namespace

// Reads all files in one go: nothing else waits for that thread.
class CLibCache::LoadJob : public IJob {
public:
    LoadJob(CLibCache& cache, std::function<void()> onLoaded)
        : cache_(cache)
        , onLoaded_(std::move(onLoaded))
    {
    }

    bool RunSlice() override
    {
        for (const auto& [stem, file] : cache_.files_)
            file->Load();
        cache_.loaded_.store(true, std::memory_order_release);
        cache_.loaded_.notify_all();
        if (onLoaded_)
            onLoaded_();
        return false;
    }

private:
    CLibCache& cache_;
    std::function<void()> onLoaded_;
};

CLibCache::CLibCache() = default;

CLibCache::~CLibCache()
{
    WaitUntilLoaded();
}

void CLibCache::Initialize(const String& directory, std::function<void()> onLoaded)
{
    if (initialised_ != 0)
        return;
    initialised_ = 1;
    CreateDirectoryW(directory);
    RestoreOlder(directory);
    for (const String& stem : FindStems(directory)) {
        const String path = common::FormatText(u"%s%s%s", {directory, stem, kExtension});
        files_.emplace(stem, std::make_unique<CLibCacheFile>(stem, path));
    }
    loaded_.store(false, std::memory_order_release);
    if (loader_.Post(JobPriority::RowOnScreen, std::make_unique<LoadJob>(*this, onLoaded)))
        return;
    // Without a thread it is done here, and never a second time.
    static_cast<void>(loader_.Stop(0));
    LoadJob(*this, std::move(onLoaded)).RunSlice();
}

void CLibCache::Uninitialize()
{
    if (initialised_ == 0)
        return;
    initialised_ = 0;
    SaveAll();
    const CriticalSection::Guard guard(lock_);
    files_.clear();
}

void CLibCache::SaveAll()
{
    WaitUntilLoaded();
    const CriticalSection::Guard guard(lock_);
    for (const auto& [stem, file] : files_)
        file->Save();
}

CLibCacheFile* CLibCache::ChooseFile(const String& key)
{
    const auto found = files_.find(String(UrlIsW(key) ? kUrlStem : kLocalStem));
    return found != files_.end() ? found->second.get() : nullptr;
}

bool CLibCache::GetMediaInfo(const String& key, MediaInfo& info)
{
    WaitUntilLoaded();
    const CriticalSection::Guard guard(lock_);
    const CLibCacheFile* file = ChooseFile(key);
    return file != nullptr && file->Lookup(key, info);
}

bool CLibCache::SetMediaInfo(const String& key, const MediaInfo& info)
{
    WaitUntilLoaded();
    const CriticalSection::Guard guard(lock_);
    CLibCacheFile* file = ChooseFile(key);
    return file != nullptr && file->Merge(key, info);
}

CacheLook CLibCache::Peek(const String& key, MediaInfo& info)
{
    if (!IsLoaded())
        return CacheLook::Loading;
    return GetMediaInfo(key, info) ? CacheLook::Hit : CacheLook::Miss;
}

} // namespace kivo::tunehive
