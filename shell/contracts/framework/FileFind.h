#pragma once

#include "shell/contracts/base/Export.h"
#include "shell/contracts/base/String.h"

#include <memory>

namespace kivo {

// Looks a folder through for names of a pattern, in ascending order of their bytes, so that every
// machine gives the same order. Thread: any, one object on one thread at a time.
//
//     CFileFind find;
//     int more = find.FindFile(folder + u"*.mlib");
//     while (more != 0) { more = find.FindNextFile(); … find.GetFileName() … }
class KIVO_API CFileFind {
public:
    CFileFind();
    CFileFind(const CFileFind&) = delete;
    CFileFind& operator=(const CFileFind&) = delete;
    ~CFileFind();

    // `pattern`: a folder, a separator and a name with '*' and '?' ("*.*" is every name). Without a
    // wildcard it is one file, and the test is whether it exists. 0: nothing fits, or the folder
    // can't be read. Hidden names count.
    int FindFile(const String& pattern);

    // Steps to the first, then each next match. 0: the one it stepped to is the last.
    int FindNextFile();

    [[nodiscard]] String GetFileName() const; // Of the current match.
    [[nodiscard]] String GetFilePath() const; // The folder of the pattern and the name.
    [[nodiscard]] bool IsDirectory() const;   // Links are followed.
    [[nodiscard]] bool IsDots() const;    // "." and ".."; never listed here, kept for its callers.
    [[nodiscard]] bool IsRegular() const; // A file with content: no folder, FIFO, socket or device.

private:
    struct Impl;
    std::unique_ptr<Impl> impl_;
};

// The files below a folder, breadth first: all files of one folder before those of its subfolders,
// names in ascending order. Each folder is entered once, however many links lead to it. OnFile gets
// each regular file's full path on the calling thread; GoesOn is asked between folders. Thread:
// any.
class KIVO_API IFolderVisitor {
public:
    virtual void OnFile(const String& path) = 0;
    [[nodiscard]] virtual bool GoesOn() = 0; // False: the walk ends.

protected:
    ~IFolderVisitor() = default;
};
KIVO_API void WalkFolder(const String& folder, IFolderVisitor& visitor);

} // namespace kivo
