#include "platform/posix/sockets/listener.h"

#include <fcntl.h>
#include <sys/epoll.h>

#include <cerrno>

#include "platform/posix/sockets/socket_calls.h"

namespace velmora::sockets {

void Listener::listen(const Address& local) {
    const std::lock_guard lock(mutex_);
    socket_ = openSocket(local.family(), Protocol::tcp);
    bindTo(socket_, local, Protocol::tcp);
    if (::listen(socket_.number(), SOMAXCONN) != 0) throw Failure(errors::addressInUse);
    spare_ = openFile("/dev/null", O_RDONLY);
    watch_ = machinery_.reactor.watch(socket_.number(), EPOLLIN, weak_from_this());
}

void Listener::close() {
    const std::lock_guard lock(mutex_);
    if (watch_) machinery_.reactor.forget(*watch_, socket_.number());
    watch_.reset();
    socket_ = {};
}

void Listener::ready(std::uint32_t) {
    const std::lock_guard lock(mutex_);
    if (!socket_) return;
    sockaddr_storage raw{};
    socklen_t size = sizeof raw;
    FileDescriptor connection(
        ::accept4(socket_.number(), reinterpret_cast<sockaddr*>(&raw), &size, SOCK_NONBLOCK | SOCK_CLOEXEC));
    if (connection) return tell(std::move(connection), Address(raw, size));
    if (errno == EMFILE || errno == ENFILE) turnAway();
}

/// Without a descriptor for it, a caller would be reported for ever: the spare one is lent for a moment.
void Listener::turnAway() {
    spare_ = {};
    const FileDescriptor refused(::accept4(socket_.number(), nullptr, nullptr, SOCK_CLOEXEC));
    spare_ = openFile("/dev/null", O_RDONLY);
}

void Listener::tell(FileDescriptor connection, const Address& caller) {
    const ChannelId channel = machinery_.queue.newChannel();
    const auto stream = std::make_shared<Stream>(machinery_, channel, cuttingFor(use_));
    stream->adopt(std::move(connection));
    machinery_.queue.push({.channel = channel_,
                           .kind = Event::Kind::called,
                           .number = static_cast<long>(channel),
                           .address = caller.text(),
                           .caller = stream});
    try {
        stream->start();
    } catch (const Failure&) {
        stream->close();
    }
}

}  // namespace velmora::sockets
