#include "platform/posix/sockets/stream.h"

#include <sys/epoll.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <new>
#include <utility>

#include "base/failure.h"
#include "platform/posix/sockets/socket_calls.h"

namespace velmora::sockets {
namespace {

constexpr std::size_t readAtOnce = 64U << 10U;
/// So many reads, and another socket gets its turn.
constexpr int readsInARow = 4;

}  // namespace

Stream::Stream(Machinery machinery, ChannelId channel, std::unique_ptr<Cutting> cutting,
               std::unique_ptr<Layer> layer)
    : machinery_(machinery), channel_(channel), cutting_(std::move(cutting)), layer_(std::move(layer)) {}

Stream::~Stream() {
    drop();
}

void Stream::push(Event::Kind kind, std::string bytes, long number) {
    machinery_.queue.push({.channel = channel_, .kind = kind, .bytes = std::move(bytes), .number = number});
}

void Stream::bind(const Address& local) {
    const std::lock_guard lock(mutex_);
    socket_ = openSocket(local.family(), Protocol::tcp);
    bindTo(socket_, local, Protocol::tcp);
    local_ = local;
}

void Stream::connect(std::vector<Address> addresses) {
    const std::lock_guard lock(mutex_);
    attempt(std::move(addresses));
}

void Stream::resolved(std::vector<Address> addresses) {
    const std::lock_guard lock(mutex_);
    if (phase_ == Phase::gone) return;
    if (addresses.empty()) return fail(errors::hostNotFound);
    push(Event::Kind::hostResolved);
    push(Event::Kind::connecting);
    try {
        attempt(std::move(addresses));
    } catch (const Failure& failure) {
        fail(failure.number);
    }
}

void Stream::attempt(std::vector<Address> addresses) {
    if (local_)
        std::erase_if(addresses, [this](const Address& each) { return each.family() != local_->family(); });
    addresses_.assign(addresses.begin(), addresses.end());
    phase_ = Phase::connecting;
    lastError_ = ENETUNREACH;
    tryNext();
}

void Stream::tryNext() {
    while (!addresses_.empty()) {
        const Address address = addresses_.front();
        addresses_.pop_front();
        if (begin(address)) return;
    }
    fail(failureOf(lastError_));
}

/// False if the attempt has failed at once.
bool Stream::begin(const Address& address) {
    if (!socket_) {
        socket_ = openSocket(address.family(), Protocol::tcp);
        if (local_) bindTo(socket_, *local_, Protocol::tcp);
    }
    prepareConnection(socket_);
    if (::connect(socket_.number(), address.raw(), address.size()) == 0 || errno == EINPROGRESS) {
        watch();
        return true;
    }
    lastError_ = errno;
    socket_ = {};
    if (local_ && lastError_ == EADDRNOTAVAIL) throw Failure(errors::addressInUse);
    return false;
}

void Stream::adopt(FileDescriptor connection) {
    const std::lock_guard lock(mutex_);
    socket_ = std::move(connection);
    prepareConnection(socket_);
    phase_ = Phase::open;
}

void Stream::start() {
    const std::lock_guard lock(mutex_);
    if (!socket_) return;
    watch();
    attend();
}

void Stream::watch() {
    attended_ = phase_ == Phase::connecting ? EPOLLOUT : EPOLLIN;
    watch_ = machinery_.reactor.watch(socket_.number(), attended_, weak_from_this());
}

void Stream::drop() {
    if (watch_) machinery_.reactor.forget(*std::exchange(watch_, std::nullopt), socket_.number());
    socket_ = {};
    outgoing_.clear();
    left_ = 0;
}

void Stream::close() {
    const std::lock_guard lock(mutex_);
    phase_ = Phase::gone;
    drop();
}

void Stream::ready(std::uint32_t events) {
    const std::lock_guard lock(mutex_);
    if (!socket_) return;
    try {
        if (phase_ == Phase::connecting) {
            finishConnecting();
        } else if (resting_ && (events & (EPOLLHUP | EPOLLERR)) != 0) {
            // What is there is read when the program has caught up; until then this would be told for ever.
            machinery_.reactor.forget(*std::exchange(watch_, std::nullopt), socket_.number());
        } else if (!resting_ && phase_ != Phase::ended && (events & ~EPOLLOUT) != 0) {
            receive();
        }
        if (socket_ && (events & EPOLLOUT) != 0) flush();
        if (phase_ == Phase::ended && (events & (EPOLLHUP | EPOLLERR)) != 0) drop();
        attend();
    } catch (const std::bad_alloc&) {
        push(Event::Kind::data, {}, errors::outOfStackSpace);
        fail(errors::outOfStackSpace);
    } catch (const Failure& failure) {
        fail(failure.number);
    }
}

void Stream::finishConnecting() {
    int error = 0;
    socklen_t size = sizeof error;
    getsockopt(socket_.number(), SOL_SOCKET, SO_ERROR, &error, &size);
    if (error == 0) return established();
    lastError_ = error;
    drop();
    tryNext();
}

void Stream::established() {
    phase_ = Phase::opening;
    if (layer_) return follow(layer_->begin());
    Passage passage;
    passage.open = true;
    follow(std::move(passage));
}

void Stream::receive() {
    std::array<char, readAtOnce> part;
    for (int reads = 0; reads < readsInARow && socket_ && !resting_; ++reads) {
        const ssize_t count = ::recv(socket_.number(), part.data(), part.size(), 0);
        if (count > 0) {
            take({part.data(), static_cast<std::size_t>(count)});
            if (static_cast<std::size_t>(count) < part.size()) return;
        } else if (count == 0 || endedByPeer(errno)) {
            return end();
        } else if (errno != EINTR) {
            if (errno != EAGAIN && errno != EWOULDBLOCK) fail(failureOf(errno));
            return;
        }
    }
}

void Stream::take(std::string_view bytes) {
    if (layer_) return follow(layer_->arrived(bytes));
    cutting_->arrived(std::string(bytes), [this](std::string event) { deliver(std::move(event)); });
}

void Stream::follow(Passage passage) {
    if (!passage.refusal.empty()) return refuseHere(passage.refusal);
    if (!passage.toPeer.empty()) {
        outgoing_.push_back({std::move(passage.toPeer), false});
        flush();
    }
    if (passage.open && phase_ == Phase::opening) {
        phase_ = Phase::open;
        const auto peer = Address::peerOf(socket_.number());
        machinery_.queue.push({.channel = channel_,
                               .kind = Event::Kind::connected,
                               .address = peer ? peer->text() : std::string()});
    }
    if (!passage.toProgram.empty()) {
        cutting_->arrived(std::move(passage.toProgram),
                          [this](std::string event) { deliver(std::move(event)); });
    }
    if (passage.ended) end();
}

void Stream::deliver(std::string bytes) {
    unread_ += bytes.size();
    if (unread_ > mostUnread) resting_ = true;
    push(Event::Kind::data, std::move(bytes));
}

void Stream::consumed(std::size_t count) {
    if (unread_.fetch_sub(count) - count > mostUnread / 2) return;
    const std::lock_guard lock(mutex_);
    if (!resting_ || !socket_) return;
    resting_ = false;
    if (watch_) return attend();
    try {
        watch();
    } catch (const Failure& failure) {
        fail(failure.number);
    }
}

void Stream::send(std::string data, bool tell) {
    const std::lock_guard lock(mutex_);
    if (!socket_) return;
    try {
        if (layer_) {
            const bool waits = !outgoing_.empty();
            Passage passage = layer_->leaving(data);
            if (!passage.refusal.empty()) return fail(errors::hostUnreachable);
            outgoing_.push_back({std::move(passage.toPeer), tell});
            if (waits) return;
        } else {
            outgoing_.push_back({std::move(data), tell});
            if (outgoing_.size() > 1) return;
        }
        flush();
        attend();
    } catch (const std::bad_alloc&) {
        throw Failure(errors::outOfStackSpace);
    }
}

void Stream::flush() {
    while (!outgoing_.empty()) {
        Outgoing& first = outgoing_.front();
        while (left_ < first.bytes.size()) {
            const ssize_t count = ::send(socket_.number(), first.bytes.data() + left_,
                                         first.bytes.size() - left_, MSG_NOSIGNAL);
            if (count < 0 && errno == EINTR) continue;
            if (count < 0) {
                // That the connection is over is told by reading, behind all that has come before.
                if (errno != EAGAIN && errno != EWOULDBLOCK) outgoing_.clear();
                return;
            }
            machinery_.queue.noteTraffic();
            left_ += static_cast<std::size_t>(count);
        }
        if (first.tell) push(Event::Kind::sent);
        outgoing_.pop_front();
        left_ = 0;
    }
}

/// Lets the reactor watch for what this connection waits for now.
void Stream::attend() {
    if (!watch_) return;
    const bool reads = !resting_ && phase_ != Phase::ended && phase_ != Phase::connecting;
    const bool writes = !outgoing_.empty() || phase_ == Phase::connecting;
    const std::uint32_t wanted = (reads ? EPOLLIN : 0U) | (writes ? EPOLLOUT : 0U);
    if (wanted == attended_) return;
    attended_ = wanted;
    machinery_.reactor.change(*watch_, socket_.number(), wanted);
}

void Stream::end() {
    if (phase_ == Phase::opening) return refuseHere("the server has ended the connection");
    if (phase_ != Phase::open) return;
    phase_ = Phase::ended;
    cutting_->ended([this](std::string event) { deliver(std::move(event)); });
    push(Event::Kind::ended);
}

void Stream::fail(long number) {
    if (phase_ == Phase::gone) return;
    drop();
    phase_ = Phase::gone;
    push(Event::Kind::failed, {}, number);
}

void Stream::refuse(const std::string& reason) {
    const std::lock_guard lock(mutex_);
    refuseHere(reason);
}

void Stream::refuseHere(const std::string& reason) {
    drop();
    phase_ = Phase::gone;
    push(Event::Kind::refused, reason, errors::connectionRefused);
}

}  // namespace velmora::sockets
