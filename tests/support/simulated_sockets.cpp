#include "tests/support/simulated_sockets.h"

#include <algorithm>
#include <deque>

namespace velmora {
namespace {

constexpr std::size_t longestDatagram = 65507;

}  // namespace

void ServerEnd::send(std::string_view data, std::size_t pieces) {
    const auto caller = caller_.lock();
    if (!caller || closed_) return;
    const std::size_t size = pieces == 0 ? std::max<std::size_t>(data.size(), 1) : pieces;
    for (std::size_t begin = 0; begin < data.size(); begin += size)
        caller->arrived(std::string(data.substr(begin, size)));
}

void ServerEnd::close() {
    if (const auto caller = caller_.lock(); caller && !closed_) caller->ended();
    closed_ = true;
}

void ServerEnd::reset(long number) {
    if (const auto caller = caller_.lock(); caller && !closed_) caller->broken(number);
    closed_ = true;
}

void ServerEnd::connected() {
    if (script_->onConnect) script_->onConnect(*this);
}

void ServerEnd::arrived(std::string data) {
    if (script_->onData && !closed_) script_->onData(*this, data);
}

void SimulatedNetwork::serve(const std::string& host, std::uint16_t port, ServerEnd::Script script) {
    hosts_.insert(host);
    servers_[{host, port}] = std::make_shared<const ServerEnd::Script>(std::move(script));
}

void SimulatedNetwork::withdraw(const std::string& host, std::uint16_t port) {
    servers_.erase({host, port});
}

std::string SimulatedNetwork::newAddress() {
    return *hosts_.insert("10.0.0." + std::to_string(++addresses_)).first;
}

/// A socket; `end_`, while there is a connection, is what its other side talks to.
class SimulatedTcp : public TcpWinsock {
public:
    explicit SimulatedTcp(SimulatedWinsocks& sockets) : sockets_(sockets) {}
    ~SimulatedTcp() override { SimulatedTcp::Close(); }

    void Close() override {
        if (const auto end = std::exchange(end_, nullptr)) end->socket = nullptr;
        const auto peer = std::exchange(peer_, nullptr);
        if (peer && (state_ == SocketState::connected || state_ == SocketState::closing)) peer->ended();
        if (state_ == SocketState::listening) network().listeners_.erase({address(), listenedAt_});
        if (pair_) network().pairs_.erase(*pair_);
        pair_.reset();
        state_ = SocketState::closed;
        unread_.clear();
    }

    void Listen() override {
        if (state_ >= SocketState::open && state_ <= SocketState::connected)
            throw Failure(errors::wrongSocketState);
        Close();
        if (!network().listeners_.try_emplace({address(), LocalPort}, this).second)
            throw Failure(errors::addressInUse);
        listenedAt_ = LocalPort;
        state_ = SocketState::listening;
    }

    void Accept(long requestID) override {
        if (state_ != SocketState::closed) throw Failure(errors::wrongSocketState);
        const auto call = network().calls_.extract(requestID);
        if (!call) throw Failure(errors::wrongSocketState);
        begin();
        state_ = SocketState::connected;
        const auto caller = std::static_pointer_cast<End>(call.mapped().lock());
        if (!caller || !caller->socket) return end_->ended();
        remote_ = caller->socket->address();
        peer_ = caller;
        caller->socket->established(end_);
    }

    using TcpWinsock::Connect;
    void Connect() override {
        if (state_ != SocketState::closed) throw Failure(errors::wrongSocketState);
        if (RemoteHost.empty()) throw Failure(errors::addressNotAvailable);
        if (LocalPort != 0) {
            pair_ = SimulatedNetwork::Pair{address(), LocalPort, RemoteHost, RemotePort};
            if (!network().pairs_.insert(*pair_).second) {
                pair_.reset();
                throw Failure(errors::addressInUse);
            }
        }
        state_ = SocketState::connecting;
        begin();
        end_->later([](SimulatedTcp& self) { self.call(); });
    }

    void SendData(std::string data) override {
        if (state_ != SocketState::connected) throw Failure(errors::wrongSocketState);
        if (const auto peer = peer_; peer && !data.empty()) peer->arrived(std::move(data));
        end_->later([](SimulatedTcp& self) {
            if (self.events.SendComplete) self.events.SendComplete();
        });
    }

    std::string GetData() override {
        if (state_ == SocketState::closed || state_ == SocketState::listening)
            throw Failure(errors::wrongSocketState);
        if (unread_.empty()) return {};
        std::string data = std::move(unread_.front());
        unread_.pop_front();
        if (data.size() > network().memory) throw Failure(errors::outOfStackSpace);
        return data;
    }

    SocketState State() const override { return state_; }
    std::string LocalIP() const override { return sockets_.address(); }
    std::string RemoteHostIP() const override { return remote_; }

private:
    /// What the other side of the connection reaches. Each thing becomes an event of the program, which is
    /// passed over if the socket has been closed by then.
    struct End : NetworkEnd, std::enable_shared_from_this<End> {
        explicit End(SimulatedTcp& socket_) : socket(&socket_) {}

        void later(std::function<void(SimulatedTcp&)> event) {
            if (!socket) return;
            socket->sockets_.post_([weak = weak_from_this(), event = std::move(event)] {
                if (const auto self = weak.lock(); self && self->socket) event(*self->socket);
            });
        }
        void arrived(std::string data) override {
            later([data = std::make_shared<std::string>(std::move(data))](SimulatedTcp& self) {
                self.raiseData(std::move(*data));
            });
        }
        void ended() override {
            later([](SimulatedTcp& self) {
                self.state_ = SocketState::closing;
                if (self.events.Close) self.events.Close();
            });
        }
        void broken(long number) override {
            later([number](SimulatedTcp& self) { self.fail(number); });
        }

        SimulatedTcp* socket;
    };

    SimulatedNetwork& network() const { return sockets_.network_; }
    const std::string& address() const { return sockets_.address(); }

    void begin() { end_ = std::make_shared<End>(*this); }

    void raiseData(std::string data) {
        unread_.push_back(std::move(data));
        std::size_t unread = 0;
        for (const std::string& piece : unread_) unread += piece.size();
        if (events.DataArrival) events.DataArrival(unread);
    }

    void fail(long number) {
        state_ = SocketState::error;
        if (events.Error) events.Error(Failure(number));
    }

    void established(std::shared_ptr<NetworkEnd> peer) {
        peer_ = std::move(peer);
        end_->later([](SimulatedTcp& self) {
            self.state_ = SocketState::connected;
            self.remote_ = self.RemoteHost;
            if (self.events.Connect) self.events.Connect();
        });
    }

    void call() {
        const SimulatedNetwork::Port port{RemoteHost, RemotePort};
        if (const auto server = network().servers_.find(port); server != network().servers_.end()) {
            auto other = std::make_shared<ServerEnd>(server->second, end_);
            network().serverEnds_.push_back(other);
            established(other);
            other->connected();
        } else if (const auto listener = network().listeners_.find(port);
                   listener != network().listeners_.end()) {
            listener->second->called(end_);
        } else {
            fail(network().hosts_.contains(RemoteHost) ? errors::connectionRefused : errors::hostNotFound);
        }
    }

    /// A call at this listening socket.
    void called(const std::shared_ptr<End>& caller) {
        sockets_.post_([&network = network(), port = SimulatedNetwork::Port{address(), listenedAt_},
                        weak = std::weak_ptr(caller)] {
            const auto listener = network.listeners_.find(port);
            if (const auto end = weak.lock(); end && listener != network.listeners_.end()) {
                listener->second->raiseRequest(end);
            } else if (end) {
                end->broken(errors::connectionRefused);
            }
        });
    }

    void raiseRequest(const std::shared_ptr<End>& caller) {
        const long request = ++network().lastCall_;
        network().calls_[request] = caller;
        remote_ = caller->socket->address();
        if (events.ConnectionRequest) events.ConnectionRequest(request);
        if (network().calls_.erase(request) > 0 && caller->socket) {  // nobody has taken the call
            caller->socket->established(nullptr);
            caller->ended();
        }
    }

    SimulatedWinsocks& sockets_;
    SocketState state_ = SocketState::closed;
    std::shared_ptr<End> end_;
    std::shared_ptr<NetworkEnd> peer_;
    std::string remote_;
    std::uint16_t listenedAt_ = 0;
    std::optional<SimulatedNetwork::Pair> pair_;
    std::deque<std::string> unread_;  ///< raised and not read, a piece for each event
};

class SimulatedUdp : public UdpWinsock {
public:
    explicit SimulatedUdp(SimulatedWinsocks& sockets) : sockets_(sockets) {}
    ~SimulatedUdp() override { SimulatedUdp::Close(); }

    void Close() override {
        if (port_) sockets_.network_.receivers_.erase({sockets_.address(), *port_});
        port_.reset();
        unread_.clear();
    }

    void Bind(std::uint16_t localPort) override {
        if (port_) throw Failure(errors::wrongSocketState);
        if (!sockets_.network_.receivers_.try_emplace({sockets_.address(), localPort}, this).second)
            throw Failure(errors::addressInUse);
        port_ = localPort;
    }

    void SendData(const std::string& data) override {
        if (!port_) throw Failure(errors::wrongSocketState);
        if (RemoteHost.empty()) throw Failure(errors::addressNotAvailable);
        if (data.size() > longestDatagram) throw Failure(errors::messageTooLong);
        auto& network = sockets_.network_;
        const SimulatedNetwork::Port to{RemoteHost, RemotePort};
        const auto receiver = network.receivers_.find(to);
        if (receiver == network.receivers_.end()) return;
        receiver->second->sockets_.post_([&network, to, data, from = sockets_.address()] {
            const auto found = network.receivers_.find(to);
            if (found != network.receivers_.end()) found->second->raiseData(data, from);
        });
    }

    std::string GetData() override {
        if (!port_) throw Failure(errors::wrongSocketState);
        if (unread_.empty()) return {};
        auto [data, from] = std::move(unread_.front());
        unread_.pop_front();
        remote_ = from;
        return data;
    }

    std::string RemoteHostIP() const override { return remote_; }

private:
    void raiseData(const std::string& data, const std::string& from) {
        unread_.emplace_back(data, from);
        if (events.DataArrival) events.DataArrival(data.size());
    }

    SimulatedWinsocks& sockets_;
    std::optional<std::uint16_t> port_;
    std::string remote_;
    std::deque<std::pair<std::string, std::string>> unread_;
};

SimulatedWinsocks::SimulatedWinsocks(SimulatedNetwork& network,
                                     std::function<void(std::function<void()>)> post)
    : network_(network), post_(std::move(post)), address_(network.newAddress()) {}

std::unique_ptr<TcpWinsock> SimulatedWinsocks::createTcp(StreamUse) {
    return std::make_unique<SimulatedTcp>(*this);
}

std::unique_ptr<UdpWinsock> SimulatedWinsocks::createUdp() {
    return std::make_unique<SimulatedUdp>(*this);
}

}  // namespace velmora
