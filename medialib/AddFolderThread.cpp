#include "medialib/AddFolderThread.h"

#include "medialib/IMediaLibManager.h"
#include "medialib/KivoMediaHelper.h"
#include "medialib/MediaInfo.h"
#include "shell/contracts/framework/Files.h"

#include <algorithm>
#include <atomic>

namespace kivo::tunehive {

namespace {

// So many files are under way from the disk while one is being read.
constexpr std::size_t kAhead = 16;

// After so many files in a row that were in memory only every so many-th is asked for.
constexpr std::size_t kProbe = 8;

std::atomic<int> runningCount = 0;

FolderImport Own(WPARAM wParam, LPARAM lParam)
{
    // NOLINTNEXTLINE(performance-no-int-to-ptr): a message carries pointers as words.
    const std::unique_ptr<char16_t[]> groupId(reinterpret_cast<char16_t*>(wParam));
    FolderImport import;
    import.groupId = groupId.get();
    // NOLINTNEXTLINE(performance-no-int-to-ptr): as above.
    import.paths.reset(reinterpret_cast<CStringArray*>(lParam));
    --runningCount;
    return import;
}

void Dispose(WPARAM wParam, LPARAM lParam)
{
    static_cast<void>(Own(wParam, lParam));
}

} // namespace

FolderImport TakeFolderImport(WPARAM wParam, LPARAM lParam)
{
    return Own(wParam, lParam);
}

CAddFolderThread::CAddFolderThread(HWND window,
                                   const String& groupId,
                                   const String& folder,
                                   const CWorker* worker)
    : window_(window)
    , groupId_(groupId)
    , folder_(folder)
    , worker_(worker)
{
    ++runningCount;
}

CAddFolderThread::~CAddFolderThread()
{
    --runningCount;
}

void CAddFolderThread::Start(HWND window, const String& groupId, const String& folder)
{
    IMediaLibManager* const manager = FindMediaLibManager();
    CWorker* const worker = manager != nullptr ? manager->GetWorker() : nullptr;
    ResumeThread(std::make_unique<CAddFolderThread>(window, groupId, folder, worker),
                 worker,
                 JobPriority::FolderImport);
}

int CAddFolderThread::GetRunningCount()
{
    return runningCount;
}

bool CAddFolderThread::Run()
{
    if (folder_.empty() || FindMediaLibManager() == nullptr)
        return false;
    if (paths_ == nullptr)
        return ListFiles();
    if (next_ < paths_->size() && !IsStopping()) {
        ReadNextFile();
        return true;
    }
    PostResult();
    return false;
}

bool CAddFolderThread::ListFiles()
{
    paths_ = std::make_unique<CStringArray>();
    GetMediaHelperInstance().ListMediaFiles(folder_, *paths_, [this] { return !IsStopping(); });
    return !IsStopping();
}

// The record is dropped: what stays of the call is the cache entry.
void CAddFolderThread::ReadNextFile()
{
    IMediaLibManager* const manager = FindMediaLibManager();
    AskAhead();
    MediaInfo info;
    manager->GetMediaInfo((*paths_)[next_], info);
    ++next_;
}

void CAddFolderThread::AskAhead()
{
    IMediaLibManager* const manager = FindMediaLibManager();
    const std::size_t end = std::min(next_ + kAhead, paths_->size());
    for (asked_ = std::max(asked_, next_ + 1); asked_ < end; ++asked_) {
        // A folder that is in memory anyway is only looked at here and there.
        if (inMemory_ >= kProbe && asked_ % kProbe != 0)
            continue;
        MediaInfo known;
        if (manager->PeekMediaInfo((*paths_)[asked_], known) != CacheLook::Hit)
            inMemory_ = AskForFile((*paths_)[asked_]) ? 0 : inMemory_ + 1;
    }
}

void CAddFolderThread::PostResult()
{
    auto groupId = std::make_unique<char16_t[]>(groupId_.size() + 1);
    std::copy(groupId_.begin(), groupId_.end(), groupId.get());
    ++runningCount; // The message's, until it is taken or disposed of.
    PostMessageW(window_,
                 kFolderImportMessage,
                 reinterpret_cast<WPARAM>(groupId.release()),
                 reinterpret_cast<LPARAM>(paths_.release()),
                 Dispose);
}

} // namespace kivo::tunehive
