#pragma once

#include <QAccessible>
#include <QString>

namespace kivo::ui::qt {

// What a screen reader is told of a widget with a value.
struct ValueOfWidget {
    int minimum = 0;
    int maximum = 0;
    int value = 0;
    QString text; // As it is read out.
};

// A widget of ours that has one. Thread: user interface.
class IValueWidget {
public:
    [[nodiscard]] virtual ValueOfWidget GetValueNow() const = 0;
    virtual void SetValueByReader(int value) = 0;

protected:
    ~IValueWidget() = default;
};

// Teaches Qt the roles and values of our own widgets. Once, before the first of them.
void InstallWidgetAccess();

} // namespace kivo::ui::qt
