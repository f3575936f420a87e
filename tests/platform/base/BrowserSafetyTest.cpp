#include "platform/base/BrowserSafety.h"

#include <gtest/gtest.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <functional>
#include <string>

namespace kivo {
namespace {

constexpr char kFlags[] = "QTWEBENGINE_CHROMIUM_FLAGS";
constexpr char kSwitch[] = "QTWEBENGINE_DISABLE_SANDBOX";
constexpr char kDebugging[] = "QTWEBENGINE_REMOTE_DEBUGGING";
constexpr uid_t kNobody = 65534;

// In a process of its own: the environment and the user change.
bool IsTrueAs(uid_t user, const std::function<bool()>& check)
{
    const pid_t child = fork();
    if (child == 0)
        // Dumpable again, as a process is that was started by the user.
        _exit((user == 0 || (setuid(user) == 0 && prctl(PR_SET_DUMPABLE, 1) == 0)) && check() ? 0
                                                                                              : 1);
    int status = 1;
    waitpid(child, &status, 0);
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

struct FlagsCase {
    const char* name;
    const char* flags;
    bool administratorMayStart;
};

constexpr FlagsCase kFlagsCases[] = {
    {"None",                  "",                                                     false},
    {"TheSandboxLeftOut",     "--no-sandbox",                                         true },
    {"AmongOthers",           "--disable-web-security --no-sandbox --single-process", true },
    {"AFlagThatOnlyBeginsSo", "--no-sandbox-and-more",                                false},
    {"AFlagThatOnlyEndsSo",   "--really--no-sandbox",                                 false},
};

// NOLINTBEGIN(concurrency-mt-unsafe): the child has one thread
void Secure(const char* flags)
{
    setenv(kFlags, flags, /*replace=*/1);
    setenv(kSwitch, "1", /*replace=*/1);
    setenv(kDebugging, "9222", /*replace=*/1);
    SecureBrowserEnvironment();
}

std::string Get(const char* name)
{
    const char* const value = getenv(name);
    return value != nullptr ? value : "unset";
}
// NOLINTEND(concurrency-mt-unsafe)

TEST(BrowserSafety, OfTheFlagsTheAdministratorKeepsOneAndAUserNone)
{
    if (getuid() != 0)
        GTEST_SKIP() << "needs the administrator";
    for (const auto& [name, flags, mayStart] : kFlagsCases) {
        SCOPED_TRACE(name);
        EXPECT_TRUE(IsTrueAs(0, [flags = flags, mayStart = mayStart] {
            Secure(flags);
            return Get(kFlags) == (mayStart ? "--no-sandbox" : "unset") &&
                   CanBrowserStart() == mayStart;
        }));
        EXPECT_TRUE(IsTrueAs(kNobody, [flags = flags] {
            Secure(flags);
            return Get(kFlags) + Get(kSwitch) + Get(kDebugging) == "unsetunsetunset";
        }));
    }
}

TEST(BrowserSafety, AUsersBrowserStartsWhereThereIsASandbox)
{
    if (getuid() != 0)
        GTEST_SKIP() << "needs another user";
    const char* const command =
        "su nobody -s /bin/sh -c 'unshare -U -r -p -f true' > /dev/null 2>&1";
    const bool hasSandbox = std::system(command) == 0; // NOLINT(concurrency-mt-unsafe): one thread
    EXPECT_EQ(IsTrueAs(kNobody, [] { return CanBrowserStart(); }), hasSandbox);
}

} // namespace
} // namespace kivo
