#include "platform/ui/qt/InputWatch.h"

#include "shell/contracts/framework/Hooks.h"

#include <QAbstractScrollArea>
#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QWidget>
#include <QWindow>

namespace kivo::ui::qt {

namespace {

bool atKeys = false;

void SetAtKeys(bool on)
{
    if (atKeys == on)
        return;
    atKeys = on;
    QWidget* focused = QApplication::focusWidget();
    if (focused == nullptr)
        return;
    focused->update();
    if (auto* area = qobject_cast<QAbstractScrollArea*>(focused))
        area->viewport()->update();
}

// Qt's keys as the virtual key codes that hooks know; 0: none of theirs.
WPARAM VirtualKey(const QKeyEvent& event)
{
    struct Pair {
        int key;
        WPARAM code;
    };
    static constexpr Pair kPairs[] = {
        {Qt::Key_Escape,    0x1B},
        {Qt::Key_Space,     0x20},
        {Qt::Key_Return,    0x0D},
        {Qt::Key_Enter,     0x0D},
        {Qt::Key_Tab,       0x09},
        {Qt::Key_Backspace, 0x08},
        {Qt::Key_PageUp,    0x21},
        {Qt::Key_PageDown,  0x22},
        {Qt::Key_End,       0x23},
        {Qt::Key_Home,      0x24},
        {Qt::Key_Left,      0x25},
        {Qt::Key_Up,        0x26},
        {Qt::Key_Right,     0x27},
        {Qt::Key_Down,      0x28},
        {Qt::Key_Delete,    0x2E},
    };
    for (const Pair& pair : kPairs)
        if (pair.key == event.key())
            return pair.code;
    const int key = event.key();
    const bool named =
        (key >= Qt::Key_0 && key <= Qt::Key_9) || (key >= Qt::Key_A && key <= Qt::Key_Z);
    if (named)
        return static_cast<WPARAM>(key); // The same codes as in ASCII.
    if (key >= Qt::Key_F1 && key <= Qt::Key_F24)
        return 0x70U + static_cast<WPARAM>(key - Qt::Key_F1);
    return 0;
}

// The message number of a mouse event; 0: none that hooks see.
WPARAM MouseMessage(const QEvent& event)
{
    const auto button = [&event] { return static_cast<const QMouseEvent&>(event).button(); };
    switch (event.type()) {
    case QEvent::MouseMove: return 0x200;
    case QEvent::MouseButtonPress:
        return button() == Qt::LeftButton ? 0x201 : (button() == Qt::RightButton ? 0x204 : 0x207);
    case QEvent::MouseButtonRelease:
        return button() == Qt::LeftButton ? 0x202 : (button() == Qt::RightButton ? 0x205 : 0x208);
    case QEvent::MouseButtonDblClick:
        return button() == Qt::LeftButton ? 0x203 : (button() == Qt::RightButton ? 0x206 : 0x209);
    default: return 0;
    }
}

bool IsMouseInput(QEvent::Type type)
{
    return type == QEvent::MouseButtonPress || type == QEvent::MouseButtonDblClick ||
           type == QEvent::Wheel || type == QEvent::TouchBegin;
}

} // namespace

InputWatch::InputWatch(QObject* application)
    : QObject(application)
{
    application->installEventFilter(this);
}

bool InputWatch::IsAtKeys()
{
    return atKeys;
}

bool InputWatch::eventFilter(QObject* object, QEvent* event)
{
    const QEvent::Type type = event->type();
    if (type == QEvent::KeyPress)
        SetAtKeys(/*on=*/true);
    else if (IsMouseInput(type))
        SetAtKeys(/*on=*/false);
    // A key reaches the window first and its widgets behind it: the hooks see it once, there.
    if (qobject_cast<QWindow*>(object) == nullptr)
        return false;
    if (type == QEvent::KeyPress) {
        const WPARAM key = VirtualKey(*static_cast<QKeyEvent*>(event));
        return key != 0 && RunHooks(WH_KEYBOARD, key, 0) != 0;
    }
    const WPARAM message = MouseMessage(*event);
    return message != 0 && RunHooks(WH_MOUSE, message, 0) != 0;
}

} // namespace kivo::ui::qt
