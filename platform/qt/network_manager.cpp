#include "platform/qt/network_manager.h"

#include <QDBusArgument>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QVariantMap>
#include <algorithm>
#include <array>

#include "platform/posix/system_link.h"

namespace velmora::qt {
namespace {

const auto service = QStringLiteral("org.freedesktop.NetworkManager");
const auto managerPath = QStringLiteral("/org/freedesktop/NetworkManager");

constexpr int busPatience = 100;  // ms

/// NetworkManager's number of a device type, and the kind of link it makes. The order is that of preference.
struct DeviceType {
    unsigned number;
    std::string_view kind;
};

constexpr std::array deviceTypes{
    DeviceType{8, "ppp"},  DeviceType{8, "wwan"}, DeviceType{7, "ppp"},      DeviceType{12, "ppp"},
    DeviceType{23, "ppp"}, DeviceType{2, "wifi"}, DeviceType{1, "ethernet"},
};

constexpr unsigned idleState = 30;  // disconnected, and could be activated

}  // namespace

/// What is known of the devices so far.
struct NetworkManager::Search {
    std::string kinds;
    qsizetype unanswered = 0;
    std::ptrdiff_t bestRank = static_cast<std::ptrdiff_t>(deviceTypes.size());
    QString best;

    void consider(const QString& device, const QVariantMap& properties) {
        if (properties.value(QStringLiteral("State")).toUInt() != idleState) return;
        const auto offers =
            qdbus_cast<QList<QDBusObjectPath>>(properties.value(QStringLiteral("AvailableConnections")));
        if (offers.isEmpty()) return;
        const unsigned type = properties.value(QStringLiteral("DeviceType")).toUInt();
        const auto* const found = std::ranges::find_if(deviceTypes, [&](const DeviceType& known) {
            return known.number == type && holdsKind(kinds, known.kind);
        });
        const auto rank = found - deviceTypes.begin();
        if (rank >= bestRank) return;
        bestRank = rank;
        best = device;
    }
};

NetworkManager::~NetworkManager() {
    if (bus_ && !address_.empty()) QDBusConnection::disconnectFromBus(bus_->name());
}

QDBusConnection& NetworkManager::bus() {
    if (!bus_ || !bus_->isConnected()) {
        bus_ = std::make_unique<QDBusConnection>(
            address_.empty()
                ? QDBusConnection::systemBus()
                : QDBusConnection::connectToBus(QString::fromStdString(address_),
                                                QStringLiteral("velmora-%1").arg(quintptr(this))));
    }
    return *bus_;
}

bool NetworkManager::present() {
    if (!bus().isConnected()) return false;
    auto question = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus"),
        QStringLiteral("org.freedesktop.DBus"), QStringLiteral("NameHasOwner"));
    question << service;
    const QDBusMessage answer = bus().call(question, QDBus::Block, busPatience);
    return answer.type() == QDBusMessage::ReplyMessage && answer.arguments().value(0).toBool();
}

void NetworkManager::connectAny(std::string kinds) {
    const auto question =
        QDBusMessage::createMethodCall(service, managerPath, service, QStringLiteral("GetDevices"));
    auto* const watcher = new QDBusPendingCallWatcher(bus().asyncCall(question), this);
    const auto search = std::make_shared<Search>();
    search->kinds = std::move(kinds);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, search, watcher] {
        watcher->deleteLater();
        const QDBusPendingReply<QList<QDBusObjectPath>> devices = *watcher;
        if (devices.isError()) return;
        search->unanswered = devices.value().size();
        for (const QDBusObjectPath& device : devices.value()) askDevice(search, device.path());
    });
}

void NetworkManager::askDevice(const std::shared_ptr<Search>& search, const QString& device) {
    auto question = QDBusMessage::createMethodCall(
        service, device, QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("GetAll"));
    question << QStringLiteral("org.freedesktop.NetworkManager.Device");
    auto* const watcher = new QDBusPendingCallWatcher(bus().asyncCall(question), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, search, device, watcher] {
        watcher->deleteLater();
        const QDBusPendingReply<QVariantMap> properties = *watcher;
        if (!properties.isError()) search->consider(device, properties.value());
        if (--search->unanswered == 0) activate(*search);
    });
}

void NetworkManager::activate(const Search& search) {
    if (search.best.isEmpty()) return;
    auto order =
        QDBusMessage::createMethodCall(service, managerPath, service, QStringLiteral("ActivateConnection"));
    // "/" leaves the choice to NetworkManager.
    const QDBusObjectPath any(QStringLiteral("/"));
    order << QVariant::fromValue(any) << QVariant::fromValue(QDBusObjectPath(search.best))
          << QVariant::fromValue(any);
    bus().send(order);
}

}  // namespace velmora::qt
