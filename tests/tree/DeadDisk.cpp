#include "tests/tree/DeadDisk.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <condition_variable>
#include <cstdarg>
#include <mutex>
#include <string_view>
#include <thread>

namespace kivo::test {

namespace {

std::mutex mutex;
std::condition_variable changed;
std::thread::id owner; // All guarded by mutex.
bool isDead = false;
int waiting = 0;
int ownQuestions = 0;

// True: the path lies on the dead disk, which has nothing to give.
bool IsOnDeadDisk(const char* path)
{
    if (path == nullptr || !std::string_view(path).starts_with("/dead/"))
        return false;
    std::unique_lock lock(mutex);
    if (std::this_thread::get_id() == owner) {
        ++ownQuestions;
    } else if (isDead) {
        ++waiting;
        changed.notify_all();
        changed.wait(lock, [] { return !isDead; });
        --waiting;
    }
    errno = ENOENT;
    return true;
}

} // namespace

DeadDisk::DeadDisk()
{
    const std::scoped_lock lock(mutex);
    owner = std::this_thread::get_id();
    isDead = true;
    ownQuestions = 0;
}

DeadDisk::~DeadDisk()
{
    Answer();
}

void DeadDisk::Answer()
{
    const std::scoped_lock lock(mutex);
    isDead = false;
    changed.notify_all();
}

void DeadDisk::WaitForAQuestion()
{
    std::unique_lock lock(mutex);
    changed.wait(lock, [] { return waiting > 0; });
}

int DeadDisk::CountOwnQuestions() const
{
    const std::scoped_lock lock(mutex);
    return ownQuestions;
}

} // namespace kivo::test

extern "C" {

int __real_stat(const char* path, struct stat* status);
int __real_access(const char* path, int mode);
int __real_open(const char* path, int flags, ...);

int __wrap_stat(const char* path, struct stat* status)
{
    return kivo::test::IsOnDeadDisk(path) ? -1 : __real_stat(path, status);
}

int __wrap_access(const char* path, int mode)
{
    return kivo::test::IsOnDeadDisk(path) ? -1 : __real_access(path, mode);
}

int __wrap_open(const char* path, int flags, ...)
{
    if (kivo::test::IsOnDeadDisk(path))
        return -1;
    std::va_list arguments;
    va_start(arguments, flags);
    const unsigned mode = (flags & O_CREAT) != 0 ? va_arg(arguments, unsigned) : 0U;
    va_end(arguments);
    return __real_open(path, flags, mode);
}

} // extern "C"
