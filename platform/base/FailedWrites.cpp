#include "platform/base/FailedWrites.h"

#include "shell/contracts/framework/Files.h"

#include <algorithm>
#include <mutex>
#include <utility>

namespace kivo {
namespace {

struct FailedWrites {
    std::mutex mutex;
    std::vector<String> paths;
};

FailedWrites& Failed()
{
    static FailedWrites failed;
    return failed;
}

} // namespace

void NoteFailedWrite(const String& path)
{
    FailedWrites& failed = Failed();
    const std::lock_guard lock(failed.mutex);
    if (std::find(failed.paths.begin(), failed.paths.end(), path) == failed.paths.end())
        failed.paths.push_back(path);
}

void NoteGoodWrite(const String& path)
{
    FailedWrites& failed = Failed();
    const std::lock_guard lock(failed.mutex);
    std::erase(failed.paths, path);
}

std::vector<String> TakeFailedWrites()
{
    FailedWrites& failed = Failed();
    const std::lock_guard lock(failed.mutex);
    return std::exchange(failed.paths, {});
}

} // namespace kivo
