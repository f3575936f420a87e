#include "host/PlayerKeys.h"

#include "tests/support/NotingRemote.h"

#include <gtest/gtest.h>
#include <QApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include <string>

namespace kivo::host {
namespace {

// A window with a plain area, a button and a field, none of which needs a display.
class PlayerKeysTest : public testing::Test {
public:
    PlayerKeysTest()
    {
        auto* layout = new QVBoxLayout(&window_);
        for (QWidget* child :
             {&area_, static_cast<QWidget*>(&button_), static_cast<QWidget*>(&edit_)})
            layout->addWidget(child);
        area_.setFocusPolicy(Qt::StrongFocus);
        window_.show();
        window_.activateWindow();
        QApplication::processEvents();
    }

    std::string Press(QWidget& widget, int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        widget.setFocus();
        remote_.calls.clear();
        QKeyEvent event(QEvent::KeyPress, key, modifiers, key == Qt::Key_Space ? " " : QString());
        QApplication::sendEvent(&widget, &event);
        return remote_.calls;
    }

    static QApplication& Application()
    {
        static int count = 1;
        static char name[] = "host_test";
        static char* arguments[] = {name, nullptr};
        qputenv("QT_QPA_PLATFORM", "offscreen");
        // Never destroyed: what it shares with libkivo.so goes in an order of its own at the exit.
        static auto* const application = new QApplication(count, arguments);
        return *application;
    }

protected:
    QApplication& application_ = Application();
    test::NotingRemote remote_;
    QWidget window_;
    QWidget area_;
    QPushButton button_;
    QLineEdit edit_;
    PlayerKeys keys_{[this] { return &remote_; }};
};

TEST_F(PlayerKeysTest, SpacePlaysAndPausesWhereNobodyElseWantsIt)
{
    EXPECT_EQ(Press(area_, Qt::Key_Space), "play ");
    remote_.state = 3;
    EXPECT_EQ(Press(area_, Qt::Key_Space), "pause ");
    EXPECT_EQ(Press(button_, Qt::Key_Space), "");
    EXPECT_EQ(Press(edit_, Qt::Key_Space), "");
    EXPECT_EQ(edit_.text(), " ");
    EXPECT_EQ(Press(area_, Qt::Key_Space, Qt::ControlModifier), "");
}

TEST_F(PlayerKeysTest, TheOthersWorkOnceAndNeverInAField)
{
    EXPECT_EQ(Press(area_, Qt::Key_Left, Qt::ControlModifier), "previous ");
    EXPECT_EQ(Press(area_, Qt::Key_Right, Qt::ControlModifier), "next ");
    EXPECT_EQ(Press(button_, Qt::Key_MediaStop), "stop ");
    EXPECT_EQ(Press(area_, Qt::Key_MediaTogglePlayPause), "play ");
    EXPECT_EQ(Press(area_, Qt::Key_F11), "full ");
    EXPECT_EQ(Press(area_, Qt::Key_Left), "");
    EXPECT_EQ(Press(edit_, Qt::Key_Left, Qt::ControlModifier), "");
    EXPECT_EQ(Press(edit_, Qt::Key_MediaNext), "");
}

} // namespace
} // namespace kivo::host
