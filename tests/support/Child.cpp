#include "tests/support/Child.h"

#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <ctime>
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

// Runs the work again and again in a process of its own, until it is killed with the object.
class Runner {
public:
    explicit Runner(const std::function<void(int)>& work)
    {
        if (pipe(ends_) != 0)
            throw std::runtime_error("no pipe for the test");
        child_ = Fork();
        for (int i = 0; child_ == 0; ++i) {
            work(i);
            if (write(ends_[1], "x", 1) != 1)
                _exit(0);
        }
        close(ends_[1]);
    }
    Runner(const Runner&) = delete;
    Runner& operator=(const Runner&) = delete;
    ~Runner()
    {
        kill(child_, SIGKILL);
        waitpid(child_, nullptr, 0);
        close(ends_[0]);
    }

    [[nodiscard]] bool WaitForARun() const // False: it died.
    {
        char ignored = '\0';
        return read(ends_[0], &ignored, 1) == 1;
    }
    void WaitAtMost(long nanoseconds) const // For the end of the run.
    {
        constexpr long kSecond = 1'000'000'000;
        pollfd end{ends_[0], POLLIN, 0};
        const timespec limit{nanoseconds / kSecond, nanoseconds % kSecond};
        ppoll(&end, 1, &limit, nullptr);
    }

private:
    int ends_[2] = {-1, -1};
    pid_t child_ = -1;
};

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
    const Runner runner(work);
    for (int i = 0; i < number && runner.WaitForARun(); ++i)
        continue;
}

void KillDuring(double share, const std::function<void(int)>& work)
{
    using std::chrono::steady_clock;
    const Runner runner(work);
    if (!runner.WaitForARun()) // The first also sets up what the others use.
        return;
    const auto start = steady_clock::now();
    if (!runner.WaitForARun())
        return;
    const std::chrono::duration<double, std::nano> took = steady_clock::now() - start;
    runner.WaitAtMost(static_cast<long>(took.count() * share));
}

} // namespace kivo::test
