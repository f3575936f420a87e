#pragma once

#include "shell/contracts/base/Export.h"
#include "shell/contracts/framework/Files.h"

#include <cstddef>
#include <cstdint>
#include <string>

namespace kivo {

// Lines of a text file, as bytes. Lines of more than 64 KB are dropped; after 16 MB the file counts
// as ended. Thread: any, one object on one thread at a time.
class KIVO_API CStdioFile {
public:
    bool Open(const String& path); // False: missing, unreadable or no regular file.

    // The next line without its line end (LF or CR LF). False: the end.
    bool ReadString(std::string& line);

private:
    bool Fill();

    CBinaryFile file_;
    std::string buffer_;
    std::size_t next_ = 0;
    std::int64_t offset_ = 0;
};

} // namespace kivo
