#include "platform/ui/qt/DesktopWishes.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>
#include <QFileInfo>
#include <QTimer>

namespace kivo::ui::qt {

namespace {

const QString kService = QStringLiteral("org.freedesktop.portal.Desktop");
const QString kPath = QStringLiteral("/org/freedesktop/portal/desktop");
const QString kInterface = QStringLiteral("org.freedesktop.portal.Settings");
const QString kSpace = QStringLiteral("org.freedesktop.appearance");
const QString kScheme = QStringLiteral("color-scheme");
const QString kContrast = QStringLiteral("contrast");
constexpr uint kDarkWished = 1;
constexpr uint kContrastWished = 1;

// Without an address the bus library would start a bus of its own, and wait for it.
bool HasSessionBus()
{
    if (!qEnvironmentVariableIsEmpty("DBUS_SESSION_BUS_ADDRESS"))
        return true;
    const QString folder = qEnvironmentVariable("XDG_RUNTIME_DIR");
    return !folder.isEmpty() && QFileInfo::exists(folder + QLatin1String("/bus"));
}

// Read answers a variant inside a variant.
QVariant Innermost(QVariant value)
{
    while (value.canConvert<QDBusVariant>())
        value = value.value<QDBusVariant>().variant();
    return value;
}

} // namespace

DesktopWishes::DesktopWishes(QObject* parent)
    : QObject(parent)
{
}

void DesktopWishes::Ask()
{
    if (!HasSessionBus())
        return;
    QTimer::singleShot(0, this, [this] {
        QDBusConnection bus = QDBusConnection::sessionBus();
        if (!bus.isConnected())
            return;
        qRegisterMetaType<QDBusVariant>(); // The slot is found by the names of its types.
        // From whoever sends it: tied to the portal's name, the library would wait for the name's
        // owner, and the first changes after a start got lost.
        bus.connect(QString(),
                    kPath,
                    kInterface,
                    QStringLiteral("SettingChanged"),
                    this,
                    SLOT(OnSettingChanged(QString, QString, QDBusVariant)));
        AskFor(kScheme);
        AskFor(kContrast);
    });
}

void DesktopWishes::AskFor(const QString& key)
{
    QDBusMessage call =
        QDBusMessage::createMethodCall(kService, kPath, kInterface, QStringLiteral("Read"));
    call << kSpace << key;
    auto* watcher =
        new QDBusPendingCallWatcher(QDBusConnection::sessionBus().asyncCall(call), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, key, watcher] {
        const QDBusPendingReply<QDBusVariant> reply = *watcher;
        if (!reply.isError())
            Take(key, reply.value().variant());
        watcher->deleteLater();
    });
}

void DesktopWishes::OnSettingChanged(const QString& space,
                                     const QString& key,
                                     const QDBusVariant& value)
{
    if (space == kSpace)
        Take(key, value.variant());
}

void DesktopWishes::Take(const QString& key, const QVariant& value)
{
    const uint number = Innermost(value).toUInt();
    const bool dark = key == kScheme ? number == kDarkWished : dark_;
    const bool contrast = key == kContrast ? number == kContrastWished : highContrast_;
    if (dark == dark_ && contrast == highContrast_)
        return;
    dark_ = dark;
    highContrast_ = contrast;
    emit Changed();
}

} // namespace kivo::ui::qt
