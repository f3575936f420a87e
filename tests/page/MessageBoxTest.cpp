#include "host/Messages.h"

#include <gtest/gtest.h>
#include <QApplication>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>
#include <QTimer>

#include <functional>

namespace kivo::host {
namespace {

// Shows the question and has `answer` work on its box. What the box gives.
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
    const bool result = MakeBoxMessages()->Show(kind, u"Title", u"<b>Rock & Roll</b>\nreally?");
    EXPECT_TRUE(isAnswered);
    return result;
}

void Click(QMessageBox& box, QMessageBox::StandardButton which)
{
    QAbstractButton* const button = box.button(which);
    QTest::mouseClick(button, Qt::LeftButton, {}, button->rect().center());
}

struct Answer {
    const char* name;
    std::function<void(QMessageBox&)> act;
    bool result;
};

TEST(MessageBox, AQuestionIsAnsweredByMouseAndByKeys)
{
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

TEST(MessageBox, ItsTextIsNeverMarkup)
{
    Ask(MessageKind::Error, [](QMessageBox& box) {
        EXPECT_EQ(box.textFormat(), Qt::PlainText);
        EXPECT_EQ(box.text(), QStringLiteral("<b>Rock & Roll</b>\nreally?"));
        EXPECT_EQ(box.windowTitle(), QStringLiteral("Title"));
        Click(box, QMessageBox::Ok);
    });
}

} // namespace
} // namespace kivo::host
