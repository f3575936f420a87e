#include "platform/ui/qt/WidgetAccess.h"

#include <QAccessibleWidget>
#include <QWidget>

namespace kivo::ui::qt {

namespace {

class ValueAccess final : public QAccessibleWidget, public QAccessibleValueInterface {
public:
    ValueAccess(QWidget* widget, IValueWidget& value, QAccessible::Role role)
        : QAccessibleWidget(widget, role)
        , value_(value)
    {
    }

    void* interface_cast(QAccessible::InterfaceType type) override
    {
        if (type == QAccessible::ValueInterface)
            return static_cast<QAccessibleValueInterface*>(this);
        return QAccessibleWidget::interface_cast(type);
    }
    [[nodiscard]] QString text(QAccessible::Text kind) const override
    {
        return kind == QAccessible::Value ? value_.GetValueNow().text
                                          : QAccessibleWidget::text(kind);
    }
    [[nodiscard]] QVariant currentValue() const override { return value_.GetValueNow().value; }
    void setCurrentValue(const QVariant& value) override { value_.SetValueByReader(value.toInt()); }
    [[nodiscard]] QVariant maximumValue() const override { return value_.GetValueNow().maximum; }
    [[nodiscard]] QVariant minimumValue() const override { return value_.GetValueNow().minimum; }
    [[nodiscard]] QVariant minimumStepSize() const override { return 1; }

private:
    IValueWidget& value_; // The widget's; the interface dies with it.
};

struct RoleOfClass {
    const char* name;
    QAccessible::Role role;
    bool hasValue;
};

constexpr RoleOfClass kRoles[] = {
    {"kivo::ui::qt::SliderWidget",  QAccessible::Slider,   true },
    {"kivo::ui::qt::SplitterBar",   QAccessible::Splitter, true },
    {"kivo::ui::qt::PictureWidget", QAccessible::Graphic,  false},
    {"kivo::ui::qt::VideoWidget",   QAccessible::Graphic,  false},
};

QAccessibleInterface* MakeAccess(const QString& className, QObject* object)
{
    auto* widget = qobject_cast<QWidget*>(object);
    if (widget == nullptr)
        return nullptr;
    for (const RoleOfClass& entry : kRoles) {
        if (className != QLatin1String(entry.name))
            continue;
        if (auto* value = entry.hasValue ? dynamic_cast<IValueWidget*>(widget) : nullptr)
            return new ValueAccess(widget, *value, entry.role);
        return new QAccessibleWidget(widget, entry.role);
    }
    return nullptr;
}

} // namespace

void InstallWidgetAccess()
{
    static bool installed = false;
    if (!installed)
        QAccessible::installFactory(MakeAccess);
    installed = true;
}

} // namespace kivo::ui::qt
