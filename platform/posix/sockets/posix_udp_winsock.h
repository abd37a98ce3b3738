#pragma once

#include <deque>
#include <memory>
#include <optional>
#include <string>

#include "platform/posix/sockets/context.h"
#include "platform/posix/sockets/datagram_socket.h"
#include "platform/winsock.h"

namespace velmora::sockets {

/// A UDP socket of this machine.
class PosixUdpWinsock : public UdpWinsock, private Sink {
public:
    explicit PosixUdpWinsock(const Context& context) : context_(context) {}
    ~PosixUdpWinsock() override { release(); }

    void Close() override { release(); }
    void Bind(std::uint16_t localPort) override;
    void SendData(const std::string& data) override;
    std::string GetData() override;
    std::string RemoteHostIP() const override { return remoteIp_; }

private:
    struct Datagram {
        std::string bytes;
        std::string from;
    };

    void happened(Event& event) override;
    void release();

    const Context& context_;
    std::shared_ptr<DatagramSocket> socket_;
    ChannelId channel_ = 0;
    int family_ = 0;
    std::string remoteIp_;
    std::deque<Datagram> unread_;
};

}  // namespace velmora::sockets
