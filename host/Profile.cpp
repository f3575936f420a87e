#include "host/Profile.h"

#include "shell/contracts/common/Text.h"
#include "shell/contracts/framework/Files.h"

#include <fcntl.h>
#include <pwd.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <system_error>

namespace kivo::host {

namespace {

constexpr int kRestoredLevels = 2;

std::string GetVariable(const char* name)
{
    // NOLINTNEXTLINE(concurrency-mt-unsafe): read before the first thread starts
    const char* const value = std::getenv(name);
    return value != nullptr ? value : "";
}

std::string GetHomeFolder()
{
    std::string home = GetVariable("HOME");
    return !home.empty() && home.front() == '/' ? home : "/";
}

void RestoreFolders(const std::filesystem::path& folder, int levels)
{
    RestoreOlder(common::PathToText(folder.native() + "/"));
    if (levels == 0)
        return;
    std::error_code error;
    for (std::filesystem::directory_iterator entry(folder, error), end; !error && entry != end;
         entry.increment(error)) {
        std::error_code unknown;
        if (entry->symlink_status(unknown).type() == std::filesystem::file_type::directory)
            RestoreFolders(entry->path(), levels - 1);
    }
}

std::string DescribeError(int number)
{
    return std::generic_category().message(number);
}

} // namespace

std::string GetLocalUserName()
{
    std::array<char, 4096> buffer{};
    passwd entry{};
    passwd* found = nullptr;
    getpwuid_r(geteuid(), &entry, buffer.data(), buffer.size(), &found);
    const std::string name = found != nullptr ? found->pw_name : GetVariable("USER");
    const bool usable = !name.empty() && name.front() != '.' && name.find('/') == std::string::npos;
    return usable ? name : "user";
}

std::string GetDefaultProfile()
{
    std::string data = GetVariable("XDG_DATA_HOME");
    if (data.empty() || data.front() != '/') // A relative one is to be ignored, says its standard.
        data = GetHomeFolder() + "/.local/share";
    return (std::filesystem::path(data) / "kivo" / GetLocalUserName()).lexically_normal().native();
}

ProfileLock::ProfileLock(const std::string& folder)
{
    const mode_t before = umask(077);
    std::error_code error;
    std::filesystem::create_directories(folder, error);
    umask(before);
    // The directory itself is locked: that needs neither a file of its own nor the right to write.
    descriptor_ = open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor_ < 0) {
        error_ = error ? error.message() : DescribeError(errno);
        return;
    }
    const bool taken = flock(descriptor_, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK;
    state_ = taken ? ProfileState::InUse : ProfileState::Ours;
}

ProfileLock::~ProfileLock()
{
    if (descriptor_ >= 0)
        close(descriptor_);
}

void RestoreProfile(const std::string& folder)
{
    RestoreFolders(folder, kRestoredLevels);
}

} // namespace kivo::host
