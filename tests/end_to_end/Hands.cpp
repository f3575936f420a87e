#include "tests/end_to_end/Hands.h"

#include <array>
#include <chrono>
#include <cstdio>
#include <memory>
#include <thread>

namespace kivo::test {

KivoRun::World MakeWorldOn(const XScreen& screen)
{
    return {
        "", {"QT_QPA_PLATFORM=xcb", "DISPLAY=" + screen.GetName()},
         0
    };
}

bool WaitUntil(const std::function<bool()>& holds)
{
    constexpr std::chrono::seconds kLongest{30};
    constexpr std::chrono::milliseconds kPause{50};
    const auto deadline = std::chrono::steady_clock::now() + kLongest;
    while (!holds()) {
        if (std::chrono::steady_clock::now() >= deadline)
            return false;
        std::this_thread::sleep_for(kPause);
    }
    return true;
}

Hands::Hands(const XScreen& screen)
    : display_(screen.GetName())
{
}

bool Hands::WaitForWindow(const std::string& name)
{
    return WaitUntil([this, &name] {
        const std::string found = Do("search --onlyvisible --name '" + name + "'");
        return !found.empty() && found == Do("getactivewindow");
    });
}

std::string Hands::Do(const std::string& arguments) const
{
    struct Close {
        void operator()(FILE* stream) const { pclose(stream); }
    };
    const std::string command = "DISPLAY=" + display_ + " xdotool " + arguments + " 2>/dev/null";
    // NOLINTNEXTLINE(concurrency-mt-unsafe): one thread
    const std::unique_ptr<FILE, Close> stream(popen(command.c_str(), "r"));
    std::string text;
    std::array<char, 1024> buffer{};
    while (const std::size_t count = fread(buffer.data(), 1, buffer.size(), stream.get()))
        text.append(buffer.data(), count);
    return text;
}

} // namespace kivo::test
