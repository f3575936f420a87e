#include "platform/ui/qt/DesktopWishes.h"

#include "platform/ui/qt/SkinLook.h"
#include "tests/platform/ui_qt/Desk.h"
#include "tests/platform/ui_qt/DesktopWishesTest.h"

#include <gtest/gtest.h>
#include <QDBusConnection>
#include <QProcess>
#include <QSignalSpy>
#include <QTest>

namespace kivo::ui::qt {

QDBusVariant FakePortal::Read(const QString& space, const QString& key)
{
    const bool isScheme = space == QLatin1String("org.freedesktop.appearance") &&
                          key == QLatin1String("color-scheme");
    return QDBusVariant(QVariant::fromValue(QDBusVariant(isScheme ? scheme : 0U)));
}

namespace {

const QString kPortal = QStringLiteral("org.freedesktop.portal.Desktop");
const QString kPath = QStringLiteral("/org/freedesktop/portal/desktop");
constexpr int kWait = 5000;

// A bus of the test's own, with a portal on it.
class DesktopWishesTest : public testing::Test {
protected:
    void SetUp() override
    {
        bus_.start(QStringLiteral("dbus-daemon"),
                   {QStringLiteral("--session"),
                    QStringLiteral("--nofork"),
                    QStringLiteral("--print-address=1")});
        if (!bus_.waitForStarted(kWait))
            GTEST_SKIP() << "there is no dbus-daemon";
        ASSERT_TRUE(bus_.waitForReadyRead(kWait));
        const QByteArray address = bus_.readLine().trimmed();
        qputenv("DBUS_SESSION_BUS_ADDRESS", address);
        QDBusConnection connection =
            QDBusConnection::connectToBus(QString::fromLatin1(address), QStringLiteral("portal"));
        ASSERT_TRUE(connection.isConnected());
        ASSERT_TRUE(connection.registerService(kPortal));
        ASSERT_TRUE(connection.registerObject(
            kPath, &portal_, QDBusConnection::ExportAllSlots | QDBusConnection::ExportAllSignals));
    }
    void TearDown() override
    {
        bus_.terminate();
        bus_.waitForFinished(kWait);
        qunsetenv("DBUS_SESSION_BUS_ADDRESS");
    }

    FakePortal portal_;
    QProcess bus_;
};

TEST_F(DesktopWishesTest, AsksForTheDesktopsColoursWithoutWaiting)
{
    DesktopWishes wishes(nullptr);
    QSignalSpy changes(&wishes, &DesktopWishes::Changed);
    portal_.scheme = 1;
    wishes.Ask();
    EXPECT_TRUE(changes.isEmpty()) << "nothing waits for the portal";
    ASSERT_TRUE(changes.wait(kWait));
    EXPECT_TRUE(wishes.IsDark());
    EXPECT_FALSE(wishes.IsHighContrast());
}

} // namespace
} // namespace kivo::ui::qt
