#include "host/PlayerKeys.h"

#include "shell/contracts/desktop/TuneHiveRemote.h"

#include <gtest/gtest.h>
#include <QApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include <string>

namespace kivo::host {
namespace {

class NotingRemote final : public ITuneHiveRemote {
public:
    void Open(const std::vector<String>&, const String&, bool) override {}
    void Play() override { calls += "play "; }
    void Pause() override { calls += "pause "; }
    void Stop() override { calls += "stop "; }
    void Next() override { calls += "next "; }
    void Previous() override { calls += "previous "; }
    void Seek(double) override {}
    [[nodiscard]] int GetVolume() const override { return -1; }
    void SetVolume(int) override {}
    [[nodiscard]] int GetState() const override { return state; }
    [[nodiscard]] String GetTitle() const override { return {}; }
    [[nodiscard]] String GetArtist() const override { return {}; }
    [[nodiscard]] String GetPath() const override { return {}; }
    [[nodiscard]] double GetPosition() const override { return 0.0; }
    [[nodiscard]] double GetLength() const override { return 0.0; }
    [[nodiscard]] bool IsAtRest() const override { return true; }
    void AddListener(const Delegate<int>&) override {}
    void RemoveListener(const Delegate<int>&) override {}
    [[nodiscard]] bool StopWork(int) override { return true; }
    void ToggleFullScreen() override { calls += "full "; }
    void OpenWebForm() override {}
    void SetMusicServer(const String&) override {}

    int state = 0;
    std::string calls;
};

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
    NotingRemote remote_;
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
