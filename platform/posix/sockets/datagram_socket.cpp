#include "platform/posix/sockets/datagram_socket.h"

#include <sys/epoll.h>

#include <array>
#include <cerrno>
#include <new>

#include "platform/posix/sockets/socket_calls.h"

namespace velmora::sockets {
namespace {

/// A datagram without a byte takes memory too.
constexpr std::size_t weightOfOne = 256;

}  // namespace

void DatagramSocket::bind(const Address& local) {
    const std::lock_guard lock(mutex_);
    socket_ = openSocket(local.family(), Protocol::udp);
    bindTo(socket_, local, Protocol::udp);
    watch_ = machinery_.reactor.watch(socket_.number(), EPOLLIN, weak_from_this());
}

void DatagramSocket::close() {
    const std::lock_guard lock(mutex_);
    if (watch_) machinery_.reactor.forget(*watch_, socket_.number());
    watch_.reset();
    socket_ = {};
}

void DatagramSocket::send(const Address& to, const std::string& data) {
    if (data.size() > longest) throw Failure(errors::messageTooLong);
    const std::lock_guard lock(mutex_);
    if (!socket_) return;
    machinery_.queue.noteTraffic();
    if (::sendto(socket_.number(), data.data(), data.size(), MSG_NOSIGNAL, to.raw(), to.size()) >= 0) return;
    if (errno == EMSGSIZE) throw Failure(errors::messageTooLong);
    // A datagram that finds no room is lost on its way, as any may be.
    if (errno != EAGAIN && errno != EWOULDBLOCK && errno != ENOBUFS) throw Failure(errors::hostUnreachable);
}

void DatagramSocket::resolved(const std::vector<Address>& addresses, const std::string& data) {
    try {
        if (addresses.empty()) throw Failure(errors::hostNotFound);
        send(addresses.front(), data);
    } catch (const Failure& failure) {
        fail(failure.number);
    }
}

void DatagramSocket::fail(long number) {
    machinery_.queue.push({.channel = channel_, .kind = Event::Kind::failed, .number = number});
}

void DatagramSocket::ready(std::uint32_t) {
    constexpr int inARow = 16;
    const std::lock_guard lock(mutex_);
    try {
        for (int count = 0; count < inARow && socket_ && !resting_; ++count) {
            if (!receiveOne()) return;
        }
    } catch (const std::bad_alloc&) {
        // Lost like any other datagram; the next may be shorter.
    }
}

/// False if there is none.
bool DatagramSocket::receiveOne() {
    std::array<char, 65536> part;
    sockaddr_storage raw{};
    socklen_t size = sizeof raw;
    const ssize_t count =
        ::recvfrom(socket_.number(), part.data(), part.size(), 0, reinterpret_cast<sockaddr*>(&raw), &size);
    if (count < 0) {
        if (errno == EAGAIN || errno == EWOULDBLOCK || errno == EINTR || errno == ECONNREFUSED) return false;
        attend(false);
        fail(errors::hostUnreachable);
        return false;
    }
    std::string bytes(part.data(), static_cast<std::size_t>(count));
    unread_ += bytes.size() + weightOfOne;
    machinery_.queue.push({.channel = channel_,
                           .kind = Event::Kind::datagram,
                           .bytes = std::move(bytes),
                           .address = Address(raw, size).text()});
    if (unread_ > mostUnread) attend(false);
    return true;
}

void DatagramSocket::attend(bool reads) {
    resting_ = !reads;
    machinery_.reactor.change(*watch_, socket_.number(), reads ? EPOLLIN : 0U);
}

void DatagramSocket::consumed(std::size_t count) {
    const std::size_t weight = count + weightOfOne;
    if (unread_.fetch_sub(weight) - weight > mostUnread / 2) return;
    const std::lock_guard lock(mutex_);
    if (resting_ && socket_) attend(true);
}

}  // namespace velmora::sockets
