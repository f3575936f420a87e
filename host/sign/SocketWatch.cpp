#include "host/sign/SocketWatch.h"

#include <fcntl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <csignal>

namespace kivo::host {

SocketWatch::~SocketWatch()
{
    {
        const std::lock_guard lock(mutex_);
        isEnding_ = true;
        Drop();
    }
    changed_.notify_all();
    if (thread_.joinable())
        thread_.join();
}

void SocketWatch::Begin(Duration limit)
{
    {
        const std::lock_guard lock(mutex_);
        Drop();
        deadline_ = std::chrono::steady_clock::now() + limit;
        StartThread();
    }
    changed_.notify_all();
}

bool SocketWatch::Follow(int socket)
{
    bool isFollowed = false;
    {
        const std::lock_guard lock(mutex_);
        Drop();
        socket_ = fcntl(socket, F_DUPFD_CLOEXEC, 0);
        isFollowed = socket_ >= 0;
    }
    changed_.notify_all();
    return isFollowed;
}

void SocketWatch::Limit(Duration limit)
{
    {
        const std::lock_guard lock(mutex_);
        const Time deadline = std::chrono::steady_clock::now() + limit;
        if (!deadline_ || deadline < *deadline_)
            deadline_ = deadline;
        StartThread();
    }
    changed_.notify_all();
}

void SocketWatch::Lift()
{
    const std::lock_guard lock(mutex_);
    deadline_.reset();
}

void SocketWatch::End()
{
    const std::lock_guard lock(mutex_);
    deadline_.reset();
    Drop();
}

void SocketWatch::Run()
{
    std::unique_lock lock(mutex_);
    while (!isEnding_) {
        const bool isCutting = deadline_ && socket_ >= 0;
        if (!isCutting) {
            changed_.wait(lock);
            continue;
        }
        const Time deadline = *deadline_;
        if (std::chrono::steady_clock::now() < deadline)
            changed_.wait_until(lock, deadline);
        else
            Cut();
    }
}

void SocketWatch::StartThread()
{
    if (thread_.joinable())
        return;
    // Signals are for the other threads.
    sigset_t all{};
    sigset_t before{};
    sigfillset(&all);
    pthread_sigmask(SIG_BLOCK, &all, &before);
    thread_ = std::thread([this] { Run(); });
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
}

void SocketWatch::Drop()
{
    if (socket_ >= 0)
        close(socket_);
    socket_ = -1;
}

void SocketWatch::Cut()
{
    shutdown(socket_, SHUT_RDWR);
    Drop(); // The deadline stays: the next socket of the same attempt is cut as well.
}

} // namespace kivo::host
