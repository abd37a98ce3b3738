#include "platform/qt/network_manager.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QDBusContext>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusVirtualObject>
#include <QDeadlineTimer>
#include <QStringList>
#include <functional>
#include <map>

#include "tests/support/child_process.h"

using namespace velmora;

namespace {

const auto service = QStringLiteral("org.freedesktop.NetworkManager");

/// A bus of its own.
struct Bus {
    blackbox::ChildProcess daemon{{"dbus-daemon", "--session", "--nofork", "--print-address"}, {}};
    std::string address = daemon.readLine(blackbox::ChildProcess::Clock::now() + std::chrono::seconds(10));
};

struct Device {
    unsigned type;
    unsigned state;
    bool offers;
};

/// A NetworkManager that knows some devices, and notes which one it was asked to activate.
class FakeManager : public QDBusVirtualObject {
public:
    FakeManager(const std::string& address, const std::vector<Device>& devices)
        : bus_(QDBusConnection::connectToBus(QString::fromStdString(address), QStringLiteral("fake"))),
          devices_(devices) {
        bus_.registerVirtualObject(QStringLiteral("/"), this, QDBusConnection::SubPath);
        bus_.registerService(service);
    }
    ~FakeManager() override { QDBusConnection::disconnectFromBus(QStringLiteral("fake")); }

    QString introspect(const QString&) const override { return {}; }

    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override {
        const QString member = message.member();
        if (member == u"GetDevices") {
            QList<QDBusObjectPath> paths;
            for (std::size_t i = 0; i < devices_.size(); ++i)
                paths << QDBusObjectPath(QStringLiteral("/device/%1").arg(i));
            return connection.send(message.createReply(QVariant::fromValue(paths)));
        }
        if (member == u"GetAll") {
            const Device& device = devices_.at(message.path().section(u'/', -1).toUInt());
            QList<QDBusObjectPath> offers;
            if (device.offers) offers << QDBusObjectPath(QStringLiteral("/offer"));
            const QVariantMap properties{
                {QStringLiteral("State"), device.state},
                {QStringLiteral("DeviceType"), device.type},
                {QStringLiteral("AvailableConnections"), QVariant::fromValue(offers)}};
            ++asked;
            return connection.send(message.createReply(properties));
        }
        if (member == u"ActivateConnection") {
            activated << message.arguments().at(1).value<QDBusObjectPath>().path();
            return true;
        }
        return false;
    }

    std::size_t asked = 0;
    QStringList activated;

private:
    QDBusConnection bus_;
    std::vector<Device> devices_;
};

bool eventually(const std::function<bool()>& condition) {
    for (const QDeadlineTimer deadline(10'000); !condition() && !deadline.hasExpired();)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 100);
    return condition();
}

}  // namespace

TEST(NetworkManagerTest, WithoutABusOrAManagerNothingCanDial) {
    EXPECT_FALSE(qt::NetworkManager("unix:path=/nonexistent/bus").present());
    const Bus bus;
    EXPECT_FALSE(qt::NetworkManager(bus.address).present());
}

TEST(NetworkManagerTest, BringsUpTheBestIdleDeviceOfTheKinds) {
    constexpr unsigned cable = 1;
    constexpr unsigned wireless = 2;
    constexpr unsigned modem = 8;
    constexpr unsigned idle = 30;
    constexpr unsigned active = 100;
    const std::vector<Device> all{{cable, idle, true}, {modem, idle, true}, {wireless, idle, true}};
    const struct {
        std::vector<Device> devices;
        const char* kinds;
        const char* activated;
    } cases[] = {
        {all, "any", "/device/1"},
        {all, "wifi, ethernet", "/device/2"},
        {all, "ppp", "/device/1"},
        {{{modem, active, true}, {modem, idle, false}, {cable, idle, true}}, "any", "/device/2"},
    };
    for (const auto& entry : cases) {
        const Bus bus;
        FakeManager fake(bus.address, entry.devices);
        qt::NetworkManager manager(bus.address);
        ASSERT_TRUE(manager.present());
        manager.connectAny(entry.kinds);
        EXPECT_TRUE(eventually([&] { return !fake.activated.isEmpty(); })) << entry.kinds;
        EXPECT_EQ(fake.activated.join(u' ').toStdString(), entry.activated) << entry.kinds;
    }
}
