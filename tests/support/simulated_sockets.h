#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <tuple>
#include <utility>
#include <vector>

#include "platform/winsock.h"

namespace velmora {

class SimulatedTcp;
class SimulatedUdp;

/// One end of a connection: it is told what the other end does, in order. What is held is closed by letting
/// go of it; the other end has to be told before.
class NetworkEnd {
public:
    virtual ~NetworkEnd() = default;
    /// The data of one send, to be one data event.
    virtual void arrived(std::string data) = 0;
    /// The other end has closed the connection.
    virtual void ended() = 0;
    /// The connection is lost, with that error number.
    virtual void broken(long number) = 0;
};

/// A scripted server's end of a connection. A test may keep it, to act when it likes.
class ServerEnd : public NetworkEnd {
public:
    struct Script {
        std::function<void(ServerEnd&)> onConnect = {};
        std::function<void(ServerEnd&, const std::string&)> onData = {};
    };
    ServerEnd(std::shared_ptr<const Script> script, std::weak_ptr<NetworkEnd> caller)
        : script_(std::move(script)), caller_(std::move(caller)) {}

    /// One data event at the caller, or with `pieces` as many as it takes of at most that many bytes.
    void send(std::string_view data, std::size_t pieces = 0);
    void close();
    /// Breaks the connection; the caller sees this error.
    void reset(long number = errors::connectionTimedOut);
    bool closed() const { return closed_; }

    void connected();
    void arrived(std::string data) override;
    void ended() override { closed_ = true; }
    void broken(long) override { ended(); }

private:
    const std::shared_ptr<const Script> script_;
    std::weak_ptr<NetworkEnd> caller_;
    bool closed_ = false;
};

/// The network of a simulated machine: programs with an address each, and scripted servers. Nothing takes
/// time: what is sent is there when the receiver's loop runs next, in the order of sending.
class SimulatedNetwork {
public:
    /// A server at that host, under its name and at an address of its own. Replaces one that stands there.
    void serve(const std::string& host, std::uint16_t port, ServerEnd::Script script);
    /// No server at that host and port any more; the host stays known. Connections that stand go on.
    void withdraw(const std::string& host, std::uint16_t port);

    /// The connections to scripted servers, in the order of connecting.
    const std::vector<std::shared_ptr<ServerEnd>>& serverEnds() const { return serverEnds_; }

    /// The longest data event that there is memory for.
    std::size_t memory = static_cast<std::size_t>(-1);

    /// An address that nobody has yet.
    std::string newAddress();

private:
    friend class SimulatedTcp;
    friend class SimulatedUdp;
    using Port = std::pair<std::string, std::uint16_t>;
    /// Local address and port, remote host and port.
    using Pair = std::tuple<std::string, std::uint16_t, std::string, std::uint16_t>;

    std::map<Port, std::shared_ptr<const ServerEnd::Script>> servers_;
    std::set<std::string> hosts_;  ///< names and addresses that are known
    std::map<Port, SimulatedTcp*> listeners_;
    std::map<Port, SimulatedUdp*> receivers_;
    std::set<Pair> pairs_;
    std::vector<std::shared_ptr<ServerEnd>> serverEnds_;
    std::map<long, std::weak_ptr<NetworkEnd>> calls_;  ///< of callers that nobody has answered yet
    long lastCall_ = 0;
    int addresses_ = 0;
};

/// The sockets of one program on that network.
class SimulatedWinsocks : public Winsocks {
public:
    /// `post` runs a call later, in a turn of the program's loop.
    SimulatedWinsocks(SimulatedNetwork& network, std::function<void(std::function<void()>)> post);

    std::unique_ptr<TcpWinsock> createTcp(StreamUse use) override;
    std::unique_ptr<UdpWinsock> createUdp() override;

    const std::string& address() const { return address_; }

private:
    friend class SimulatedTcp;
    friend class SimulatedUdp;

    SimulatedNetwork& network_;
    const std::function<void(std::function<void()>)> post_;
    const std::string address_;
};

}  // namespace velmora
