#pragma once

#include <QDBusVariant>
#include <QObject>

namespace kivo::ui::qt {

// Answers as the desktop's settings portal does.
class FakePortal final : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Settings")

public:
    unsigned scheme = 0;
    int asked = 0;

signals:
    void SettingChanged(const QString& space, const QString& key, const QDBusVariant& value);

public slots:
    QDBusVariant Read(const QString& space, const QString& key);
};

} // namespace kivo::ui::qt
