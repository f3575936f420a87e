#include "platform/base/BrowserSafety.h"

#include <fcntl.h>
#include <sched.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>

namespace kivo {

namespace {

constexpr char kFlags[] = "QTWEBENGINE_CHROMIUM_FLAGS";
constexpr char kNoSandbox[] = "--no-sandbox";
constexpr const char* kDangerous[] = {
    kFlags,
    "QTWEBENGINE_DISABLE_SANDBOX",
    "QTWEBENGINE_REMOTE_DEBUGGING",
};

bool IsAdministrator()
{
    return geteuid() == 0;
}

bool HasNoSandboxFlag()
{
    // NOLINTNEXTLINE(concurrency-mt-unsafe): nobody changes the environment once threads run
    const char* const flags = std::getenv(kFlags);
    const std::string padded = " " + std::string(flags != nullptr ? flags : "") + " ";
    return padded.find(" " + std::string(kNoSandbox) + " ") != std::string::npos;
}

bool WriteWhole(const char* path, std::string_view text)
{
    const int file = open(path, O_WRONLY | O_CLOEXEC);
    if (file < 0)
        return false;
    const ssize_t count = write(file, text.data(), text.size());
    close(file);
    return count == static_cast<ssize_t>(text.size());
}

// In a child process: opens the walls of a sandbox as the browser does. Some systems allow the
// first step and refuse the second.
[[noreturn]] void TrySandbox(const std::string& userMap)
{
    const bool isMade = unshare(CLONE_NEWUSER) == 0 && WriteWhole("/proc/self/setgroups", "deny") &&
                        WriteWhole("/proc/self/uid_map", userMap) && unshare(CLONE_NEWPID) == 0;
    _exit(isMade ? 0 : 1);
}

bool HasSandbox()
{
    // Before the fork: behind it nothing may allocate.
    const std::string user = std::to_string(geteuid());
    const std::string userMap = user + " " + user + " 1";
    const pid_t child = fork();
    if (child == 0)
        TrySandbox(userMap);
    int status = 1;
    while (child > 0 && waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }
    return child > 0 && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

} // namespace

// NOLINTBEGIN(concurrency-mt-unsafe): the process has one thread
void SecureBrowserEnvironment()
{
    const bool leavesSandboxOut = IsAdministrator() && HasNoSandboxFlag();
    for (const char* const name : kDangerous)
        unsetenv(name);
    if (leavesSandboxOut)
        setenv(kFlags, kNoSandbox, /*replace=*/1);
}
// NOLINTEND(concurrency-mt-unsafe)

bool CanBrowserStart()
{
    return IsAdministrator() ? HasNoSandboxFlag() : HasSandbox();
}

} // namespace kivo
