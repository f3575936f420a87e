#include "platform/base/BrowserSafety.h"

#include <gtest/gtest.h>
#include <QApplication>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>

// Off-screen, in a home of its own, and by root only without the sandbox.
int main(int argc, char** argv)
{
    testing::InitGoogleTest(&argc, argv);
    char home[] = "/tmp/kivo_web_XXXXXX";
    if (mkdtemp(home) == nullptr)
        return 1;
    qputenv("HOME", home);
    qputenv("QT_QPA_PLATFORM", "offscreen");
    if (geteuid() == 0)
        qputenv("QTWEBENGINE_CHROMIUM_FLAGS", "--no-sandbox");
    kivo::SecureBrowserEnvironment();
    int status = 1;
    {
        const QApplication application(argc, argv);
        QApplication::setQuitOnLastWindowClosed(false);
        status = RUN_ALL_TESTS();
    }
    std::filesystem::remove_all(home);
    return status;
}
