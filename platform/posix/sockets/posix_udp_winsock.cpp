#include "platform/posix/sockets/posix_udp_winsock.h"

#include <utility>

namespace velmora::sockets {

void PosixUdpWinsock::release() {
    if (!socket_) return;
    context_.machinery.queue.release(channel_);
    std::exchange(socket_, nullptr)->close();
    unread_.clear();
}

void PosixUdpWinsock::Bind(std::uint16_t localPort) {
    if (socket_) throw Failure(errors::wrongSocketState);
    const auto local = context_.address.empty() ? Address::any(AF_INET, localPort)
                                                : Address::parse(context_.address, localPort);
    if (!local) throw Failure(errors::addressNotAvailable);
    channel_ = context_.machinery.queue.newChannel();
    auto socket = std::make_shared<DatagramSocket>(context_.machinery, channel_);
    socket->bind(*local);
    socket_ = std::move(socket);
    family_ = local->family();
    context_.machinery.queue.hold(channel_, *this);
}

void PosixUdpWinsock::SendData(const std::string& data) {
    if (!socket_) throw Failure(errors::wrongSocketState);
    if (RemoteHost.empty()) throw Failure(errors::addressNotAvailable);
    if (data.size() > DatagramSocket::longest) throw Failure(errors::messageTooLong);
    if (const auto address = Address::parse(RemoteHost, RemotePort)) {
        if (address->family() != family_) throw Failure(errors::hostUnreachable);
        return socket_->send(*address, data);
    }
    context_.resolver.find(RemoteHost, RemotePort, family_,
                           [weak = std::weak_ptr(socket_), data](const std::vector<Address>& addresses) {
                               if (const auto socket = weak.lock()) socket->resolved(addresses, data);
                           });
}

std::string PosixUdpWinsock::GetData() {
    if (!socket_) throw Failure(errors::wrongSocketState);
    if (unread_.empty()) return {};
    Datagram first = std::move(unread_.front());
    unread_.pop_front();
    remoteIp_ = std::move(first.from);
    socket_->consumed(first.bytes.size());
    return std::move(first.bytes);
}

void PosixUdpWinsock::happened(Event& event) {
    if (event.kind == Event::Kind::datagram) {
        const std::size_t size = event.bytes.size();
        unread_.push_back({std::move(event.bytes), std::move(event.address)});
        if (events.DataArrival) events.DataArrival(size);
    } else if (event.kind == Event::Kind::failed && events.Error) {
        events.Error(Failure(event.number));
    }
}

}  // namespace velmora::sockets
