#pragma once

#include <QPoint>

namespace kivo::ui::qt {

// A widget that knows better than its frame where a menu that a key asked for should open.
class IMenuPlace {
public:
    [[nodiscard]] virtual QPoint GetMenuPlace() const = 0; // On the screen.

protected:
    ~IMenuPlace() = default;
};

} // namespace kivo::ui::qt
