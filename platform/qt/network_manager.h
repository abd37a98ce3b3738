#pragma once

#include <QDBusConnection>
#include <QObject>
#include <memory>
#include <string>
#include <string_view>

namespace velmora::qt {

/// Asks the system's NetworkManager to bring a connection up, without asking the person.
///
/// Of the devices that stand idle and have a connection to offer, one is brought up: modems and the like
/// first, then wireless, then cable. Which of its connections it takes is NetworkManager's choice.
class NetworkManager : public QObject {
public:
    /// `bus` empty: the system's bus; otherwise the address of another one.
    explicit NetworkManager(std::string bus = {}) : address_(std::move(bus)) {}
    ~NetworkManager() override;
    NetworkManager(const NetworkManager&) = delete;
    NetworkManager& operator=(const NetworkManager&) = delete;

    /// Whether a NetworkManager runs. Asks the bus alone, and waits for that 100 ms at most.
    bool present();

    /// Begins the search for a device and returns at once; only devices of these kinds of link (as in
    /// `[Link] Kinds`) are taken. Needs a `QCoreApplication`, whose events the answers are.
    void connectAny(std::string kinds);

private:
    struct Search;

    QDBusConnection& bus();
    void askDevice(const std::shared_ptr<Search>& search, const QString& device);
    void activate(const Search& search);

    const std::string address_;
    std::unique_ptr<QDBusConnection> bus_;
};

}  // namespace velmora::qt
