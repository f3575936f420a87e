#include "host/FirstPaint.h"

#include <gtest/gtest.h>
#include <QTest>
#include <QWidget>

namespace kivo::host {
namespace {

class Painted final : public QWidget {
public:
    bool isPainted = false;

protected:
    void paintEvent(QPaintEvent* /*event*/) override { isPainted = true; }
};

TEST(FirstPaint, RunsOnceAfterTheFirstPicture)
{
    Painted window;
    int runs = 0;
    bool wasPainted = false;
    const FirstPaint first([&] {
        ++runs;
        wasPainted = window.isPainted;
    });
    window.show();
    EXPECT_EQ(runs, 0);
    ASSERT_TRUE(QTest::qWaitFor([&] { return runs > 0; }, /*timeout=*/1500)); // Not the time alone.
    EXPECT_TRUE(wasPainted);
    window.repaint();
    QCoreApplication::processEvents();
    EXPECT_EQ(runs, 1);
}

TEST(FirstPaint, RunsAWhileLaterWhereNoWindowShows)
{
    int runs = 0;
    const FirstPaint first([&] { ++runs; }, /*longestMs=*/1);
    EXPECT_TRUE(QTest::qWaitFor([&] { return runs > 0; }));
}

TEST(FirstPaint, DoesNothingOnceItIsGone)
{
    Painted window;
    int runs = 0;
    {
        const FirstPaint first([&] { ++runs; });
        window.show();
    }
    EXPECT_TRUE(QTest::qWaitFor([&] { return window.isPainted; }));
    QCoreApplication::processEvents();
    EXPECT_EQ(runs, 0);
}

} // namespace
} // namespace kivo::host
