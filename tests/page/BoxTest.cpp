#include "host/Messages.h"
#include "tests/page/Stage.h"

#include <gtest/gtest.h>
#include <QAbstractButton>
#include <QMenu>
#include <QMessageBox>
#include <QTest>
#include <QTimer>

namespace kivo::test {
namespace {

// A menu's entry asks, and the menu goes while the question stands.
TEST(Box, OutlivesTheMenuThatLedToIt)
{
    const Stage stage(Look(), {}, 420, 760);
    auto* const menu = new QMenu(&stage.GetWindow());
    menu->addAction(QStringLiteral("Ask"));
    menu->popup(QPoint(20, 20));
    QApplication::setActiveWindow(menu);
    Stage::Turn(20);
    menu->deleteLater();
    bool wasThere = false;
    QTimer::singleShot(100, [&] {
        auto* const box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        wasThere = box != nullptr;
        if (wasThere)
            QTest::mouseClick(box->button(QMessageBox::Yes), Qt::LeftButton);
    });
    const auto messages = host::MakeBoxMessages();
    EXPECT_TRUE(messages->Show(host::MessageKind::Question, u"Title", u"Do you?"));
    EXPECT_TRUE(wasThere);
}

} // namespace
} // namespace kivo::test
