#include "host/PlayerKeys.h"

#include "shell/contracts/desktop/TuneHiveRemote.h"

#include <QApplication>
#include <QComboBox>
#include <QKeyEvent>
#include <QLineEdit>
#include <QWidget>

#include <utility>

namespace kivo::host {

namespace {

constexpr int kPlaying = 3; // The player's state.

void PlayOrPause(ITuneHiveRemote& remote)
{
    if (remote.GetState() == kPlaying)
        remote.Pause();
    else
        remote.Play();
}

struct KeyCommand {
    int key;
    Qt::KeyboardModifier modifier;
    void (*run)(ITuneHiveRemote& remote);
};

constexpr KeyCommand kCommands[] = {
    {Qt::Key_MediaTogglePlayPause, Qt::NoModifier,      PlayOrPause                                               },
    {Qt::Key_MediaPlay,            Qt::NoModifier,      PlayOrPause                                               },
    {Qt::Key_MediaPause,           Qt::NoModifier,      [](ITuneHiveRemote& remote) { remote.Pause(); }           },
    {Qt::Key_MediaStop,            Qt::NoModifier,      [](ITuneHiveRemote& remote) { remote.Stop(); }            },
    {Qt::Key_MediaPrevious,        Qt::NoModifier,      [](ITuneHiveRemote& remote) { remote.Previous(); }        },
    {Qt::Key_MediaNext,            Qt::NoModifier,      [](ITuneHiveRemote& remote) { remote.Next(); }            },
    {Qt::Key_Left,                 Qt::ControlModifier, [](ITuneHiveRemote& remote) { remote.Previous(); }        },
    {Qt::Key_Right,                Qt::ControlModifier, [](ITuneHiveRemote& remote) { remote.Next(); }            },
    {Qt::Key_F11,                  Qt::NoModifier,      [](ITuneHiveRemote& remote) { remote.ToggleFullScreen(); }},
};

bool IsEditing(const QWidget* widget)
{
    if (widget == nullptr)
        return false;
    // The browser's page, which says itself whether it has a field that takes text.
    if (widget->inherits("QQuickWidget"))
        return widget->inputMethodQuery(Qt::ImEnabled).toBool();
    return qobject_cast<const QLineEdit*>(widget) != nullptr ||
           qobject_cast<const QComboBox*>(widget) != nullptr;
}

} // namespace

// Sees every key of the program first. A key that nobody has taken comes by once more at its
// window.
class PlayerKeys::Filter final : public QObject {
public:
    explicit Filter(std::function<ITuneHiveRemote*()> remote)
        : remote_(std::move(remote))
    {
    }

    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (event->type() != QEvent::KeyPress || !watched->isWidgetType() ||
            QApplication::activeModalWidget() != nullptr ||
            QApplication::activePopupWidget() != nullptr) {
            return false;
        }
        const auto* widget = static_cast<QWidget*>(watched);
        const auto& key = static_cast<const QKeyEvent&>(*event);
        if (IsEditing(QApplication::focusWidget()))
            return false;
        ITuneHiveRemote* const remote = remote_();
        return remote != nullptr && Run(*remote, key, widget->isWindow());
    }

private:
    static bool Run(ITuneHiveRemote& remote, const QKeyEvent& key, bool isAtWindow)
    {
        const Qt::KeyboardModifiers modifiers = key.modifiers() & ~Qt::KeypadModifier;
        if (key.key() == Qt::Key_Space && modifiers == Qt::NoModifier) {
            if (isAtWindow && !key.isAutoRepeat())
                PlayOrPause(remote);
            return isAtWindow;
        }
        for (const KeyCommand& command : kCommands) {
            if (command.key == key.key() && modifiers == command.modifier) {
                command.run(remote);
                return true;
            }
        }
        return false;
    }

    std::function<ITuneHiveRemote*()> remote_;
};

PlayerKeys::PlayerKeys(std::function<ITuneHiveRemote*()> remote)
    : filter_(std::make_unique<Filter>(std::move(remote)))
{
    QCoreApplication::instance()->installEventFilter(filter_.get());
}

PlayerKeys::~PlayerKeys() = default;

} // namespace kivo::host
