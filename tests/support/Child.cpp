#include "tests/support/Child.h"

#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <stdexcept>

namespace kivo::test {

namespace {

constexpr int kDied = 100;
constexpr uid_t kNobody = 65534;

pid_t Fork()
{
    const pid_t child = fork();
    if (child < 0)
        throw std::runtime_error("no child process for the test");
    return child;
}

} // namespace

int RunAsOrdinaryUser(const std::function<int()>& work)
{
    const pid_t child = Fork();
    if (child == 0) {
        if (geteuid() == 0 && setuid(kNobody) != 0)
            _exit(kDied);
        _exit(work());
    }
    int status = 0;
    waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : kDied;
}

void KillAfter(int number, const std::function<void(int)>& work)
{
    int ends[2] = {-1, -1};
    if (pipe(ends) != 0)
        throw std::runtime_error("no pipe for the test");
    const pid_t child = Fork();
    if (child == 0) {
        for (int i = 0;; ++i) {
            work(i);
            if (write(ends[1], "x", 1) != 1)
                _exit(0);
        }
    }
    close(ends[1]);
    char ignored = '\0';
    for (int i = 0; i < number; ++i)
        if (read(ends[0], &ignored, 1) != 1)
            break;
    kill(child, SIGKILL);
    waitpid(child, nullptr, 0);
    close(ends[0]);
}

} // namespace kivo::test
