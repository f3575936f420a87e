#include "tests/page/Stage.h"

#include <gtest/gtest.h>
#include <QApplication>

// Off-screen whatever the desktop is; the tests send their own input.
int main(int argc, char** argv)
{
    testing::InitGoogleTest(&argc, argv);
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    kivo::test::SetUpFonts("DejaVu Sans", /*scale=*/1);
    return RUN_ALL_TESTS();
}
