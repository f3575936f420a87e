#include "shell/contracts/framework/StdioFile.h"

#include <algorithm>

namespace kivo {
namespace {

constexpr std::size_t kMostLine = std::size_t{64} * 1024;
constexpr std::int64_t kMostFile = std::int64_t{16} * 1024 * 1024;
constexpr std::size_t kBlock = std::size_t{16} * 1024;

} // namespace

bool CStdioFile::Open(const String& path)
{
    buffer_.clear();
    next_ = 0;
    offset_ = 0;
    return file_.Open(path);
}

// Puts the next block in the place of the last; false: the file, or what is read of it, ends.
bool CStdioFile::Fill()
{
    const std::int64_t left = kMostFile - offset_;
    buffer_.resize(std::min(kBlock, static_cast<std::size_t>(left)));
    buffer_.resize(file_.ReadAt(offset_, buffer_.data(), buffer_.size()));
    offset_ += static_cast<std::int64_t>(buffer_.size());
    next_ = 0;
    return !buffer_.empty();
}

bool CStdioFile::ReadString(std::string& line)
{
    line.clear();
    bool any = false;
    bool tooLong = false;
    while (next_ < buffer_.size() || Fill()) {
        any = true;
        const std::size_t end = std::min(buffer_.find('\n', next_), buffer_.size());
        tooLong = tooLong || line.size() + (end - next_) > kMostLine;
        if (!tooLong)
            line.append(buffer_, next_, end - next_);
        const bool complete = end < buffer_.size();
        next_ = end + (complete ? 1 : 0);
        if (!complete)
            continue;
        if (!tooLong)
            break;
        line.clear();
        any = false;
        tooLong = false;
    }
    if (tooLong) {
        line.clear();
        return false;
    }
    if (line.ends_with('\r'))
        line.pop_back();
    return any;
}

} // namespace kivo
