#include "host/Messages.h"
#include "host/Texts.h"
#include "tests/page/Stage.h"

#include <gtest/gtest.h>
#include <QMenu>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>
#include <QTest>
#include <QTimer>

#include <functional>

namespace kivo::test {
namespace {

using host::MessageKind;

// Shows the box and has `answer` work on it. What the box gives.
bool Ask(MessageKind kind, const std::function<void(QMessageBox&)>& answer)
{
    bool isAnswered = false;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, &timer, [&] {
        auto* const box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        if (box == nullptr || !box->isAncestorOf(QApplication::focusWidget()))
            return;
        timer.stop();
        isAnswered = true;
        answer(*box);
    });
    timer.start(10);
    const bool result =
        host::MakeBoxMessages()->Show(kind, u"Title", u"<b>Rock & Roll</b>\nreally?");
    EXPECT_TRUE(isAnswered);
    return result;
}

void Click(QMessageBox& box, QMessageBox::StandardButton which)
{
    QTest::mouseClick(box.button(which), Qt::LeftButton);
}

TEST(MessageBox, AQuestionIsAnsweredByMouseAndByKeys)
{
    struct Answer {
        const char* name;
        std::function<void(QMessageBox&)> act;
        bool result;
    };
    const auto press = [](Qt::Key key) { QTest::keyClick(QApplication::focusWidget(), key); };
    const Answer answers[] = {
        {"yes by mouse",      [](QMessageBox& box) { Click(box, QMessageBox::Yes); }, true },
        {"no by mouse",       [](QMessageBox& box) { Click(box, QMessageBox::No); },  false},
        {"its frame",         [](QMessageBox& box) { box.close(); },                  false},
        {"the default is no", [press](QMessageBox&) { press(Qt::Key_Return); },       false},
        {"escape is no",      [press](QMessageBox&) { press(Qt::Key_Escape); },       false},
        {"yes by keys",
         [press](QMessageBox&) {
             press(Qt::Key_Tab);
             press(Qt::Key_Space);
         },                                                                           true },
    };
    for (const Answer& answer : answers) {
        SCOPED_TRACE(answer.name);
        EXPECT_EQ(Ask(MessageKind::Question, answer.act), answer.result);
    }
}

TEST(MessageBox, ItsTextIsNeverMarkupAndItsButtonsSpeakTheProgramsLanguage)
{
    host::LoadTexts(KIVO_APP_FOLDER, "de");
    Ask(MessageKind::Error, [](QMessageBox& box) {
        EXPECT_EQ(box.textFormat(), Qt::PlainText);
        EXPECT_EQ(box.text(), QStringLiteral("<b>Rock & Roll</b>\nreally?"));
        EXPECT_EQ(box.windowTitle(), QStringLiteral("Title"));
        Click(box, QMessageBox::Ok);
    });
    Ask(MessageKind::Question, [](QMessageBox& box) {
        EXPECT_EQ(box.button(QMessageBox::Yes)->text(), QStringLiteral("Ja"));
        EXPECT_EQ(box.button(QMessageBox::No)->text(), QStringLiteral("Nein"));
        box.reject();
    });
}

// A menu's entry asks, and the menu goes while the question stands.
TEST(MessageBox, OutlivesTheMenuThatLedToIt)
{
    const Stage stage(Look(), {}, 420, 760);
    auto* const menu = new QMenu(&stage.GetWindow());
    menu->addAction(QStringLiteral("Ask"));
    menu->popup(QPoint(20, 20));
    QApplication::setActiveWindow(menu);
    Stage::Turn(20);
    menu->deleteLater();
    const QPointer<QMenu> alive = menu;
    EXPECT_TRUE(Ask(MessageKind::Question, [&alive](QMessageBox& box) {
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        EXPECT_EQ(alive, nullptr);
        Click(box, QMessageBox::Yes);
    }));
}

} // namespace
} // namespace kivo::test
