// Loaded before a Qt program's own libraries: ends the program right after its first frame has been
// handed to the screen, and writes to the descriptor FIRST_FRAME_FD when that was and what memory
// it took.

#include <dlfcn.h>
#include <fcntl.h>
#include <QBackingStore>
#include <QPoint>
#include <QRegion>
#include <QWindow>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>

namespace {

struct Memory {
    long resident = 0; // Kilobytes, as all here.
    long proportional = 0;
};

long ReadNumber(const char* text, const char* name)
{
    const char* const line = std::strstr(text, name);
    return line != nullptr ? std::strtol(line + std::strlen(name), nullptr, 10) : 0;
}

Memory ReadMemory()
{
    std::array<char, 4096> text{};
    const int file = open("/proc/self/smaps_rollup", O_RDONLY | O_CLOEXEC);
    if (file < 0 || read(file, text.data(), text.size() - 1) <= 0)
        return {};
    return {ReadNumber(text.data(), "\nRss:"), ReadNumber(text.data(), "\nPss:")};
}

[[noreturn]] void TellAndEnd(int descriptor)
{
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    const Memory memory = ReadMemory();
    dprintf(descriptor,
            "%lld %ld %ld %ld\n",
            static_cast<long long>(now.tv_sec),
            now.tv_nsec,
            memory.resident,
            memory.proportional);
    _exit(0);
}

} // namespace

__attribute__((visibility("default"))) void
QBackingStore::flush(const QRegion& region, QWindow* window, const QPoint& offset)
{
    using Flush = void (*)(QBackingStore*, const QRegion&, QWindow*, const QPoint&);
    static const auto flush = reinterpret_cast<Flush>(
        dlsym(RTLD_NEXT, "_ZN13QBackingStore5flushERK7QRegionP7QWindowRK6QPoint"));
    flush(this, region, window, offset);
    // NOLINTNEXTLINE(concurrency-mt-unsafe): nobody changes it
    if (const char* const descriptor = std::getenv("FIRST_FRAME_FD"))
        TellAndEnd(std::atoi(descriptor));
}
