#pragma once

#include <QObject>

namespace kivo::ui::qt {

// Sees all input of the program first: it remembers whether the user is at the keys or at the
// pointer, and asks the hooks of the framework. Thread: user interface.
class InputWatch final : public QObject {
    Q_OBJECT

public:
    explicit InputWatch(QObject* application); // Installs itself; removed with its destructor.

    // The last input was a key: focus rings show, and menus open below what has the keyboard.
    [[nodiscard]] static bool IsAtKeys();

protected:
    bool eventFilter(QObject* object, QEvent* event) override;
};

} // namespace kivo::ui::qt
