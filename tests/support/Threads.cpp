#include "tests/support/Threads.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>

namespace kivo::test {

namespace {

constexpr const char* kTasks = "/proc/self/task";

} // namespace

long CountThreads()
{
    return std::distance(std::filesystem::directory_iterator(kTasks), {});
}

long CountWakeUps()
{
    constexpr std::string_view kName = "voluntary_ctxt_switches:";
    long count = 0;
    for (const auto& task : std::filesystem::directory_iterator(kTasks)) {
        std::ifstream status(task.path() / "status");
        for (std::string line; std::getline(status, line);)
            if (line.starts_with(kName))
                count += std::stol(line.substr(kName.size()));
    }
    return count;
}

} // namespace kivo::test
