#pragma once

#include <memory>
#include <string>

#include "platform/winsock.h"

namespace velmora {

/// Sockets of a machine without a network: nothing can be reached, and nobody calls.
class UnreachableWinsocks : public Winsocks {
public:
    std::unique_ptr<TcpWinsock> createTcp(StreamUse) override { return std::make_unique<Tcp>(); }
    std::unique_ptr<UdpWinsock> createUdp() override { return std::make_unique<Udp>(); }

private:
    struct Tcp : TcpWinsock {
        void Close() override {}
        void Listen() override { throw Failure(errors::hostUnreachable); }
        void Accept(long) override { throw Failure(errors::wrongSocketState); }
        void Connect() override { throw Failure(errors::hostUnreachable); }
        void SendData(std::string) override { throw Failure(errors::wrongSocketState); }
        std::string GetData() override { throw Failure(errors::wrongSocketState); }
        SocketState State() const override { return SocketState::closed; }
        std::string LocalIP() const override { return "127.0.0.1"; }
        std::string RemoteHostIP() const override { return {}; }
    };
    struct Udp : UdpWinsock {
        void Close() override {}
        void Bind(std::uint16_t) override { throw Failure(errors::hostUnreachable); }
        void SendData(const std::string&) override { throw Failure(errors::wrongSocketState); }
        std::string GetData() override { throw Failure(errors::wrongSocketState); }
        std::string RemoteHostIP() const override { return {}; }
    };
};

}  // namespace velmora
