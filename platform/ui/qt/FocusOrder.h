#pragma once

#include <QList>

class QWidget;

namespace kivo::ui {
class CSkinForm;
}

namespace kivo::ui::qt {

// What Tab reaches in the window of the form, in the order in which one reads it: from the top
// down, and from the leading side within a row. Thread: user interface.
[[nodiscard]] QList<QWidget*> GetFocusOrder(const CSkinForm& form, const QWidget& window);

} // namespace kivo::ui::qt
