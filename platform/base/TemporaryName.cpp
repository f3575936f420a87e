#include "platform/base/TemporaryName.h"

#include <fcntl.h>
#include <sys/random.h>

#include <algorithm>
#include <array>
#include <cerrno>

namespace kivo {
namespace {

constexpr std::string_view kLetters =
    "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789";
constexpr std::size_t kTailLength = 6;
constexpr std::size_t kMostName = 255; // Bytes that a name in a folder may have.
constexpr int kMostAttempts = 100;

std::string RandomTail()
{
    std::array<unsigned char, kTailLength> bytes{};
    if (getrandom(bytes.data(), bytes.size(), 0) < 0)
        bytes.fill(0); // The name is then taken or not; O_EXCL decides.
    std::string tail;
    for (const unsigned char byte : bytes)
        tail.push_back(kLetters[byte % kLetters.size()]);
    return tail;
}

} // namespace

Descriptor CreateTemporary(const std::string& target, mode_t mode, std::string& temporaryPath)
{
    const std::string name = NameOf(target).substr(0, kMostName - kTailLength - 2);
    for (int i = 0; i < kMostAttempts; ++i) {
        std::string path = FolderOf(target) + '.' + name + '.' + RandomTail();
        Descriptor file(open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode));
        if (file.IsOpen())
            temporaryPath = std::move(path);
        if (file.IsOpen() || errno != EEXIST)
            return file;
    }
    return {};
}

bool IsTemporaryName(std::string_view name)
{
    if (!name.starts_with('.') || name.size() < kTailLength + 4)
        return false;
    const std::string_view tail = name.substr(name.size() - kTailLength);
    const std::string_view target = name.substr(1, name.size() - kTailLength - 2);
    return name[name.size() - kTailLength - 1] == '.' &&
           target.find('.', 1) != std::string_view::npos &&
           std::all_of(tail.begin(), tail.end(), [](char c) {
               return kLetters.find(c) != std::string_view::npos;
           });
}

} // namespace kivo
