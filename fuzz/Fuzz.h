#pragma once

#include "shell/contracts/base/String.h"

#include <sys/mman.h>
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <string_view>

// What the fuzz targets share.
namespace kivo::fuzz {

[[nodiscard]] inline std::string_view AsText(const std::uint8_t* bytes, std::size_t count)
{
    return {reinterpret_cast<const char*>(bytes), count};
}

// Ends the run when a promise doesn't hold.
inline void Require(bool holds)
{
    if (!holds)
        std::abort();
}

// A regular file of these bytes that never touches the disk, for readers that take a path.
class MemoryFile {
public:
    explicit MemoryFile(std::string_view bytes)
        : descriptor_(memfd_create("fuzz", MFD_CLOEXEC))
    {
        Require(descriptor_ >= 0);
        while (!bytes.empty()) {
            const ssize_t written = write(descriptor_, bytes.data(), bytes.size());
            Require(written > 0);
            bytes.remove_prefix(static_cast<std::size_t>(written));
        }
    }
    MemoryFile(const MemoryFile&) = delete;
    MemoryFile& operator=(const MemoryFile&) = delete;
    ~MemoryFile() { close(descriptor_); }

    [[nodiscard]] String GetPath() const
    {
        const std::string path = "/proc/self/fd/" + std::to_string(descriptor_);
        return String(path.begin(), path.end());
    }

private:
    int descriptor_;
};

// A folder in memory for files that are set aside and saved anew, gone at the end of the run.
class WorkFolder {
public:
    WorkFolder()
        : path_("/dev/shm/kivo-fuzz-" + std::to_string(getpid()) + "/")
    {
        std::filesystem::create_directory(path_);
    }
    WorkFolder(const WorkFolder&) = delete;
    WorkFolder& operator=(const WorkFolder&) = delete;
    ~WorkFolder() { std::filesystem::remove_all(path_); }

    [[nodiscard]] String GetPath(const char* name) const
    {
        const std::string path = path_ + name;
        return {path.begin(), path.end()};
    }
    [[nodiscard]] bool Has(const char* name) const { return std::filesystem::exists(path_ + name); }
    // A link of this name to the file, in place of an earlier one; gives its path.
    [[nodiscard]] String Link(const char* name, const String& target) const
    {
        std::filesystem::remove(path_ + name);
        std::filesystem::create_symlink(std::filesystem::path(target), path_ + name);
        return GetPath(name);
    }
    void Empty() const
    {
        for (const auto& entry : std::filesystem::directory_iterator(path_))
            std::filesystem::remove(entry.path());
    }

private:
    std::string path_;
};

} // namespace kivo::fuzz
