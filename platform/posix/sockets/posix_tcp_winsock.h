#pragma once

#include <deque>
#include <memory>
#include <optional>
#include <string>

#include "platform/posix/sockets/context.h"
#include "platform/posix/sockets/listener.h"
#include "platform/posix/sockets/mail_route.h"
#include "platform/posix/sockets/stream.h"
#include "platform/winsock.h"

namespace velmora::sockets {

/// A TCP socket of this machine.
class PosixTcpWinsock : public TcpWinsock, private Sink {
public:
    PosixTcpWinsock(const Context& context, StreamUse use) : context_(context), use_(use) {}
    ~PosixTcpWinsock() override { release(); }

    void Close() override { release(); }
    void Listen() override;
    void Accept(long requestID) override;
    using TcpWinsock::Connect;
    void Connect() override;
    void SendData(std::string data) override;
    std::string GetData() override;
    SocketState State() const override { return state_; }
    std::string LocalIP() const override;
    std::string RemoteHostIP() const override { return remoteIp_; }

private:
    struct Unread {
        std::string bytes;
        long failure;
    };

    void happened(Event& event) override;
    void called(Event& event);
    void arrived(Event& event);
    void failed(const Event& event);
    void release();
    void hold(ChannelId channel);
    std::optional<Address> local(StreamUse use) const;
    MailRoute route() const;
    std::unique_ptr<Layer> layer(const MailRoute& route) const;

    const Context& context_;
    const StreamUse use_;
    SocketState state_ = SocketState::closed;
    std::string remoteIp_;
    std::optional<ChannelId> channel_;
    std::shared_ptr<Stream> stream_;
    std::shared_ptr<Listener> listener_;
    std::deque<Unread> unread_;
    std::size_t unreadBytes_ = 0;
};

}  // namespace velmora::sockets
