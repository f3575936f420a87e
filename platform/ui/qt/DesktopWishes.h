#pragma once

#include <QDBusVariant>
#include <QObject>
#include <QVariant>

namespace kivo::ui::qt {

// What the desktop wishes of all programs, as its portal tells it. Nothing here waits: without a
// session bus or a portal there are no wishes, and `Changed` never comes. Thread: user interface.
class DesktopWishes final : public QObject {
    Q_OBJECT

public:
    explicit DesktopWishes(QObject* parent);

    void Ask(); // Once the event loop runs.
    [[nodiscard]] bool IsDark() const { return dark_; }
    [[nodiscard]] bool IsHighContrast() const { return highContrast_; }

signals:
    void Changed();

public slots:
    // From the bus: the setting `key` of `space` has a new value.
    void OnSettingChanged(const QString& space, const QString& key, const QDBusVariant& value);

private:
    void AskFor(const QString& key);
    void Take(const QString& key, const QVariant& value);

    bool dark_ = false;
    bool highContrast_ = false;
};

} // namespace kivo::ui::qt
