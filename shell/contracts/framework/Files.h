#pragma once

#include "shell/contracts/base/Export.h"
#include "shell/contracts/base/String.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

// Files of ours and of the user. Reads refuse what is not a regular file (a FIFO, a device) and
// never hang on one. Thread: any, one object on one thread at a time.
namespace kivo {

// A file open for reading at any place.
class KIVO_API CBinaryFile {
public:
    CBinaryFile();
    CBinaryFile(const CBinaryFile&) = delete;
    CBinaryFile& operator=(const CBinaryFile&) = delete;
    ~CBinaryFile();

    bool Open(const String& path); // False: missing, unreadable, or no regular file.
    void Close();
    [[nodiscard]] std::int64_t GetLength() const; // Bytes, as at Open. 0 without a file.

    // Bytes read from `offset` on: fewer than asked at the end of the file, 0 on an error.
    std::size_t ReadAt(std::int64_t offset, void* bytes, std::size_t count) const;

private:
    int descriptor_ = -1;
    std::int64_t length_ = 0;
};

// Asks the disk for what a reader of tags will want of the file, its head and its end, and waits
// for neither. False: the head was in memory already, or the file can't be opened.
KIVO_API bool AskForFile(const String& path);

enum class ReadResult { Read, Missing, TooLarge, Failed };

// The whole file. `bytes` is touched only when Read is given. An existing file of more than `limit`
// bytes is TooLarge.
[[nodiscard]] KIVO_API ReadResult ReadFileBytes(const String& path,
                                                std::string& bytes,
                                                std::size_t limit);

// Writes a file all or nothing: into a temporary file beside the target, flushed to the disk, then
// renamed over it. A link keeps being a link; mode and owner stay. When the bytes are those on disk
// already nothing is written. A failure leaves the old file whole and is remembered for
// TakeFailedWrites.
class KIVO_API CDurableFile {
public:
    explicit CDurableFile(const String& path);
    CDurableFile(const CDurableFile&) = delete;
    CDurableFile& operator=(const CDurableFile&) = delete;
    ~CDurableFile(); // Without a Commit the target is left as it was.

    void Write(std::string_view bytes); // Buffered; errors show at Commit.
    [[nodiscard]] bool Commit(); // True: the target holds exactly what was written, on the disk.

private:
    struct Impl;
    std::unique_ptr<Impl> impl_;
};

// The same in one call. 1: the file holds these bytes. 0: failed, the old file stands.
KIVO_API int WriteFileDurably(const String& path, std::string_view bytes);

// Creates an empty file when none is there; an existing one stays as it is, and one that was set
// aside as an older form comes back instead. 0: that failed, which counts as a failed write.
KIVO_API int CreateFileIfMissing(const String& path);

// Sets a file aside that did not give its content: renames it to "NAME.broken-1", or the first free
// number after it. 1: the name is free now, also when nothing stood there. 0: it stands there
// still; then don't write over it. That counts as a failed write.
KIVO_API int KeepAside(const String& path);

// Sets an older form aside as "NAME.older" once its content is in memory. 1: done.
KIVO_API int SetOlderAside(const String& path);

// After a successful save of `path`, or when its content is to go for good: removes "NAME.older",
// if any.
KIVO_API void DropOlder(const String& path);

// Before anything in the folder is read: renames each "NAME.older" back whose NAME is gone, and
// removes it where both stand and NAME isn't empty. Also removes temporary files of the writer that
// are older than a day. The folder need not exist.
KIVO_API void RestoreOlder(const String& folder);

// The targets whose last write failed, each once, in order; a later success takes a path off the
// list. Empties it.
[[nodiscard]] KIVO_API std::vector<String> TakeFailedWrites();

} // namespace kivo
