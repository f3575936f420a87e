#include "tests/support/XScreen.h"

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <thread>
#include <vector>

namespace kivo::test {

XScreen::XScreen(bool hasManager)
    // Without -noreset it would begin anew whenever the last client goes.
    : server_(std::make_unique<Process>(std::vector<std::string>{"Xvfb",
                                                                 "-displayfd",
                                                                 "1",
                                                                 "-screen",
                                                                 "0",
                                                                 "1280x1024x24",
                                                                 "-nolisten",
                                                                 "tcp",
                                                                 "-noreset"}))
{
    const std::string number = server_->WaitFor("");
    if (number.empty())
        return;
    name_ = ":" + number;
    if (hasManager)
        manager_ = std::make_unique<Process>(std::vector<std::string>{"openbox", "--sm-disable"},
                                             std::vector<std::string>{"DISPLAY=" + name_});
    isUp_ = !hasManager || WaitForManager();
}

XScreen::~XScreen()
{
    manager_.reset(); // Before the display that it is on.
    server_->Signal(SIGTERM);
    server_->WaitForEnd(); // Then it takes its lock along.
}

// It is up once it has written its name on the display.
bool XScreen::WaitForManager() const
{
    const std::string question = "DISPLAY=" + name_ + " xdotool get_num_desktops >/dev/null 2>&1";
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    while (std::chrono::steady_clock::now() < deadline) {
        // NOLINTNEXTLINE(concurrency-mt-unsafe): one thread
        if (std::system(question.c_str()) == 0)
            return true;
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
    }
    return false;
}

} // namespace kivo::test
