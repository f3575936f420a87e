#pragma once

#include "medialib/LXThread.h"
#include "shell/contracts/base/String.h"
#include "shell/contracts/desktop/TuneHiveRemote.h"
#include "shell/contracts/framework/Arrays.h"
#include "shell/contracts/framework/Windows.h"

#include <cstddef>
#include <memory>

namespace kivo::tunehive {

// What kFolderImportMessage brings to the tree's window. wParam: the group's id, a new
// zero-terminated array of characters; lParam: the paths, a new CStringArray, perhaps empty. The
// receiver takes both over with TakeFolderImport.
struct FolderImport {
    String groupId;
    std::unique_ptr<CStringArray> paths; // Never null.
};

// Takes over what the message carries. Once per message, first thing in the window procedure.
// Thread: user interface.
[[nodiscard]] FolderImport TakeFolderImport(WPARAM wParam, LPARAM lParam);

// The import of one folder: lists the media files below it, has the library read each one, so that
// its record is in the cache, and posts the list. It touches no window and no group. When the
// worker is stopped, the metadata that is left is skipped and the list still posted; an import that
// still walks posts nothing. Thread: the worker's, but for Start.
class CAddFolderThread final : public LXThread {
public:
    CAddFolderThread(HWND window,
                     const String& groupId,
                     const String& folder,
                     const CWorker* worker);
    ~CAddFolderThread() override;

    bool Run() override;

    // Starts an import on the library's worker. Nothing without a library. Thread: user interface.
    static void Start(HWND window, const String& groupId, const String& folder);

    // The imports that were started and whose message hasn't been taken yet. Thread: any.
    [[nodiscard]] static int GetRunningCount();

private:
    [[nodiscard]] bool IsStopping() const { return worker_ != nullptr && worker_->IsStopping(); }
    [[nodiscard]] bool ListFiles();
    void ReadNextFile();
    void AskAhead();
    void PostResult();

    HWND window_;
    String groupId_;
    String folder_;
    const CWorker* worker_;
    std::unique_ptr<CStringArray> paths_; // Null before the walk and after the post.
    std::size_t next_ = 0;                // The file to read.
    std::size_t asked_ = 0;               // Up to here the disk has been asked for.
    std::size_t inMemory_ = 0;            // Files in a row that needed no disk.
};

} // namespace kivo::tunehive
