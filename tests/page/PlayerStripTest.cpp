// Position bar and volume by mouse, wheel and keys, on the real page with the real engine.

#include "shell/contracts/desktop/TuneHiveRemote.h"
#include "tests/page/Stage.h"
#include "tests/support/QtInput.h"

#include <gtest/gtest.h>
#include <QAccessible>
#include <QHelpEvent>
#include <QTest>
#include <QToolTip>

namespace kivo::test {
namespace {

class PlayerStripTest : public testing::Test {
public:
    PlayerStripTest() { bar = Stage::FindNamed(u"STRID_TUNEHIVE_NAME_POSITION"); }

    void Play() const
    {
        ASSERT_TRUE(stage.Play({KIVO_TEST_MEDIA "long.mp3"}));
        ASSERT_NE(bar, nullptr);
    }
    // Of 30 seconds, by the part of the bar.
    [[nodiscard]] QPoint At(double part) const
    {
        return {static_cast<int>(part * bar->width()), bar->height() / 2};
    }
    [[nodiscard]] QString GetSpokenValue() const
    {
        return QAccessible::queryAccessibleInterface(bar)->text(QAccessible::Value);
    }
    [[nodiscard]] bool IsNear(double seconds) const
    {
        return Stage::WaitUntil([&] { return std::abs(remote.GetPosition() - seconds) < 1.2; },
                                2'000);
    }

    Stage stage{Look(), {}, 420, 700};
    ITuneHiveRemote& remote = stage.GetRemote();
    QWidget* bar = nullptr;
};

TEST_F(PlayerStripTest, AClickOnTheChannelSeeksThere)
{
    Play();
    QTest::mouseClick(bar, Qt::LeftButton, {}, At(0.5));
    EXPECT_TRUE(IsNear(15));
    EXPECT_TRUE(GetSpokenValue() == QStringLiteral("0:15") ||
                GetSpokenValue() == QStringLiteral("0:14"));
}

TEST_F(PlayerStripTest, ADragSeeksOnceAtItsEndAndTellsTheTimeMeanwhile)
{
    Play();
    QTest::mousePress(bar, Qt::LeftButton, {}, At(0.02));
    QTest::mouseMove(bar, At(0.4));
    QTest::mouseMove(bar, At(0.667));
    EXPECT_TRUE(QToolTip::text().contains(QStringLiteral("0:20"))) << qPrintable(QToolTip::text());
    // The counter goes on under the hand.
    const QString before = GetSpokenValue();
    EXPECT_TRUE(Stage::WaitUntil([&] { return GetSpokenValue() != before; }, 3'000));
    EXPECT_LT(remote.GetPosition(), 5);
    QTest::mouseRelease(bar, Qt::LeftButton, {}, At(0.667));
    EXPECT_TRUE(IsNear(20));
}

TEST_F(PlayerStripTest, KeysAndWheelSeekToo)
{
    struct Step {
        Qt::Key key; // Key_unknown: a notch of the wheel.
        double seconds;
    };
    Play();
    remote.Pause(); // So that the time stands.
    ASSERT_TRUE(Stage::WaitUntil([&] { return remote.GetState() == 2; }));
    remote.Seek(10);
    for (const Step& step : {
             Step{Qt::Key_Right,    11},
             {Qt::Key_PageUp,   14},
             {Qt::Key_unknown,  15},
             {Qt::Key_PageDown, 12},
             {Qt::Key_Left,     11},
             {Qt::Key_Home,     0 },
             {Qt::Key_End,      30},
    }) {
        if (step.key == Qt::Key_unknown)
            TurnWheel(*bar, 120);
        else
            QTest::keyClick(bar, step.key);
        EXPECT_TRUE(IsNear(step.seconds)) << step.seconds << ": " << remote.GetPosition();
    }
}

TEST_F(PlayerStripTest, BetweenTracksTheBarIsLocked)
{
    Play();
    remote.Stop();
    ASSERT_TRUE(Stage::WaitUntil([&] { return remote.GetState() == 1; }));
    QTest::mouseClick(bar, Qt::LeftButton, {}, At(0.5));
    QTest::keyClick(bar, Qt::Key_End);
    TurnWheel(*bar, 120);
    EXPECT_EQ(GetSpokenValue(), QStringLiteral("0:00"));
    EXPECT_EQ(remote.GetState(), 1);
}

TEST_F(PlayerStripTest, TheVolumeByWheelMouseAndKeys)
{
    Play();
    QWidget* const button = Stage::FindNamed(u"STRID_TUNEHIVE_TIP_VOLUME");
    ASSERT_NE(button, nullptr);
    remote.SetVolume(50);
    TurnWheel(*button, 240);
    EXPECT_EQ(remote.GetVolume(), 54);

    QTest::mouseClick(button, Qt::LeftButton, {}, button->rect().center());
    QWidget* const form = QApplication::activePopupWidget();
    ASSERT_NE(form, nullptr);
    EXPECT_FALSE(form->mask().contains({0, 0})); // Its corners are cut off.
    EXPECT_TRUE(form->mask().contains({18, 0}));
    EXPECT_GE(form->geometry().top(), button->mapToGlobal(button->rect().center()).y());
    QTest::keyClick(form->windowHandle(), Qt::Key_Up);
    EXPECT_EQ(remote.GetVolume(), 56);
    QTest::keyClick(form->windowHandle(), Qt::Key_Home);
    EXPECT_EQ(remote.GetVolume(), 0);
    QTest::keyClick(form->windowHandle(), Qt::Key_Escape);
    EXPECT_EQ(QApplication::activePopupWidget(), nullptr);

    button->setFocus(Qt::TabFocusReason);
    QTest::keyClick(button, Qt::Key_Space);
    ASSERT_EQ(QApplication::activePopupWidget(), form);
    QTest::mouseClick(form->windowHandle(), Qt::LeftButton, {}, QPoint(-50, -50)); // Elsewhere.
    EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
    EXPECT_FALSE(form->isVisible());
}

} // namespace
} // namespace kivo::test
