#include "platform/ui/qt/DesktopWishes.h"

#include "platform/ui/qt/SkinLook.h"
#include "tests/platform/ui_qt/Desk.h"
#include "tests/platform/ui_qt/DesktopWishesTest.h"

#include <gtest/gtest.h>
#include <QDBusConnection>
#include <QProcess>
#include <QSignalSpy>
#include <QTest>

#include <memory>

namespace kivo::ui::qt {

QDBusVariant FakePortal::Read(const QString& space, const QString& key)
{
    ++asked;
    const bool isScheme = space == QLatin1String("org.freedesktop.appearance") &&
                          key == QLatin1String("color-scheme");
    return QDBusVariant(QVariant::fromValue(QDBusVariant(isScheme ? scheme : 0U)));
}

namespace {

const QString kPortal = QStringLiteral("org.freedesktop.portal.Desktop");
const QString kPath = QStringLiteral("/org/freedesktop/portal/desktop");
const QString kPortalSide = QStringLiteral("portal");
constexpr int kWait = 5000;

// A bus of the tests' own, with a portal on it. One for all: a process keeps the session bus that
// it found first.
class DesktopWishesTest : public testing::Test {
protected:
    static void SetUpTestSuite()
    {
        bus = std::make_unique<QProcess>();
        bus->start(QStringLiteral("dbus-daemon"),
                   {QStringLiteral("--session"),
                    QStringLiteral("--nofork"),
                    QStringLiteral("--print-address=1")});
        if (!bus->waitForStarted(kWait) || !bus->waitForReadyRead(kWait))
            return;
        const QByteArray address = bus->readLine().trimmed();
        qputenv("DBUS_SESSION_BUS_ADDRESS", address);
        QDBusConnection::connectToBus(QString::fromLatin1(address), kPortalSide);
    }
    static void TearDownTestSuite()
    {
        QDBusConnection::disconnectFromBus(kPortalSide);
        bus->terminate();
        bus->waitForFinished(kWait);
        bus.reset();
        qunsetenv("DBUS_SESSION_BUS_ADDRESS");
    }

    void SetUp() override
    {
        if (bus->state() != QProcess::Running)
            GTEST_SKIP() << "there is no dbus-daemon";
        QDBusConnection connection(kPortalSide);
        ASSERT_TRUE(connection.registerService(kPortal));
        ASSERT_TRUE(connection.registerObject(
            kPath, &portal_, QDBusConnection::ExportAllSlots | QDBusConnection::ExportAllSignals));
    }

    FakePortal portal_;
    inline static std::unique_ptr<QProcess> bus;
};

TEST_F(DesktopWishesTest, AsksWithoutWaitingAndHearsEachChange)
{
    const QString appearance = QStringLiteral("org.freedesktop.appearance");
    DesktopWishes wishes(nullptr);
    QSignalSpy changes(&wishes, &DesktopWishes::Changed);
    portal_.scheme = 1;
    wishes.Ask();
    EXPECT_TRUE(changes.isEmpty()) << "nothing waits for the portal";
    ASSERT_TRUE(changes.wait(kWait));
    EXPECT_TRUE(wishes.IsDark());
    EXPECT_FALSE(wishes.IsHighContrast());
    // Answers have come, so the connection delivers.
    ASSERT_TRUE(QTest::qWaitFor([this] { return portal_.asked == 2; }, kWait));
    const auto tell = [this](const QString& space, const char* key, const QVariant& value) {
        emit portal_.SettingChanged(space, QString::fromLatin1(key), QDBusVariant(value));
    };
    tell(QStringLiteral("org.gnome.desktop"), "color-scheme", 0U);
    tell(appearance, "contrast", 1U);
    ASSERT_TRUE(changes.wait(kWait));
    EXPECT_TRUE(wishes.IsDark()) << "another space's setting of the same name";
    EXPECT_TRUE(wishes.IsHighContrast());
    tell(appearance, "accent-color", QStringLiteral("no number"));
    tell(appearance, "color-scheme", 2U);
    ASSERT_TRUE(changes.wait(kWait));
    EXPECT_FALSE(wishes.IsDark());
    tell(appearance, "color-scheme", QStringLiteral("dark"));
    tell(appearance, "color-scheme", 1U);
    ASSERT_TRUE(changes.wait(kWait));
    EXPECT_TRUE(wishes.IsDark());
    EXPECT_EQ(changes.count(), 4);
}

} // namespace
} // namespace kivo::ui::qt
