#include "shell/contracts/base/IPlugin.h"

#include <QAbstractButton>
#include <QApplication>
#include <QKeyEvent>
#include <QMenu>
#include <QMouseEvent>
#include <QTimer>

namespace {

constexpr int kPeriodMs = 100;

// A user of the program, in the shape of a plug-in: opens the music cabinet by its entry in the
// menu and then clicks in the middle of its page, until the page has been left alone.
class CabinetUser final : public kivo::IPlugin {
public:
    int OnLoad(kivo::CWnd* /*parent*/, kivo::IPluginWindowLayout* /*layout*/) override
    {
        timer_ = new QTimer(qApp);
        // Queued: a timer doesn't fire again before its call is back, and menus keep theirs.
        QObject::connect(
            timer_, &QTimer::timeout, timer_, [this] { Look(); }, Qt::QueuedConnection);
        timer_->start(kPeriodMs);
        return 1;
    }
    int OnUnLoad() override
    {
        delete timer_;
        timer_ = nullptr;
        return 1;
    }
    int GetHostWord1() override { return 1; }
    int GetHostWord2() override { return 0; }
    int GetHostWord3() override { return 1; }
    int GetHostWord4() override { return 0; }

private:
    void Look()
    {
        if (auto* const menu = qobject_cast<QMenu*>(QApplication::activePopupWidget()))
            Choose(*menu);
        else if (!hasChosen_)
            PressMenuButton();
        else
            ClickPage();
    }

    static void PressMenuButton()
    {
        for (QWidget* const widget : QApplication::allWidgets()) {
            auto* const button = qobject_cast<QAbstractButton*>(widget);
            if (button != nullptr && button->accessibleName() == QLatin1String("Menu")) {
                button->click();
                return;
            }
        }
    }

    void Choose(QMenu& menu)
    {
        for (QAction* const action : menu.actions()) {
            if (action->text() != QLatin1String("Music cabinet"))
                continue;
            hasChosen_ = true;
            menu.setActiveAction(action);
            QKeyEvent press(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier);
            QApplication::sendEvent(&menu, &press);
            return;
        }
    }

    static void ClickPage()
    {
        for (QWidget* const page : QApplication::allWidgets()) {
            if (!page->inherits("QWebEngineView") || page->focusProxy() == nullptr)
                continue;
            const QPointF place = page->rect().center();
            for (const auto type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease}) {
                const bool isPress = type == QEvent::MouseButtonPress;
                QMouseEvent event(type,
                                  place,
                                  page->mapToGlobal(place),
                                  Qt::LeftButton,
                                  isPress ? Qt::LeftButton : Qt::NoButton,
                                  Qt::NoModifier);
                QApplication::sendEvent(page->focusProxy(), &event);
            }
        }
    }

    QTimer* timer_ = nullptr;
    bool hasChosen_ = false;
};

CabinetUser user;

} // namespace

extern "C" KIVO_API kivo::IPlugin* GetKivoPluginInstance()
{
    return &user;
}
