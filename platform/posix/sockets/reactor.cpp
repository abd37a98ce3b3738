#include "platform/posix/sockets/reactor.h"

#include <sys/epoll.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <system_error>

#include "base/failure.h"

namespace velmora::sockets {
namespace {

constexpr Reactor::WatchId endId = 0;

epoll_event described(Reactor::WatchId id, std::uint32_t events) {
    epoll_event event{};
    event.events = events;
    event.data.u64 = id;
    return event;
}

}  // namespace

Reactor::~Reactor() {
    stop();
}

void Reactor::start() {
    if (thread_.joinable()) return;
    epoll_ = FileDescriptor(epoll_create1(EPOLL_CLOEXEC));
    end_ = FileDescriptor(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK));
    epoll_event event = described(endId, EPOLLIN);
    if (!epoll_ || !end_ || epoll_ctl(epoll_.number(), EPOLL_CTL_ADD, end_.number(), &event) != 0)
        throw Failure(errors::outOfStackSpace);
    try {
        thread_ = std::thread([this] { run(); });
    } catch (const std::system_error&) {
        throw Failure(errors::outOfStackSpace);
    }
}

Reactor::WatchId Reactor::watch(int descriptor, std::uint32_t events, std::weak_ptr<Watched> watched) {
    const std::lock_guard lock(mutex_);
    start();
    const WatchId id = ++last_;
    watched_.emplace(id, std::move(watched));
    epoll_event event = described(id, events);
    if (epoll_ctl(epoll_.number(), EPOLL_CTL_ADD, descriptor, &event) != 0) {
        watched_.erase(id);
        throw Failure(errors::outOfStackSpace);
    }
    return id;
}

void Reactor::change(WatchId id, int descriptor, std::uint32_t events) {
    epoll_event event = described(id, events);
    epoll_ctl(epoll_.number(), EPOLL_CTL_MOD, descriptor, &event);
}

void Reactor::forget(WatchId id, int descriptor) {
    epoll_ctl(epoll_.number(), EPOLL_CTL_DEL, descriptor, nullptr);
    const std::lock_guard lock(mutex_);
    watched_.erase(id);
}

std::shared_ptr<Watched> Reactor::find(WatchId id) {
    const std::lock_guard lock(mutex_);
    const auto found = watched_.find(id);
    return found != watched_.end() ? found->second.lock() : nullptr;
}

void Reactor::run() {
    constexpr int atOnce = 16;
    std::array<epoll_event, atOnce> events{};
    for (;;) {
        const int count = epoll_wait(epoll_.number(), events.data(), atOnce, -1);
        if (count < 0 && errno != EINTR) return;
        for (int index = 0; index < count; ++index) {
            const epoll_event& event = events.at(static_cast<std::size_t>(index));
            if (event.data.u64 == endId) return;
            if (const auto watched = find(event.data.u64)) watched->ready(event.events);
        }
    }
}

void Reactor::stop() {
    if (!thread_.joinable()) return;
    const std::uint64_t one = 1;
    // An eventfd takes its first count at once, whatever happens.
    static_cast<void>(::write(end_.number(), &one, sizeof one) == sizeof one);
    thread_.join();
}

}  // namespace velmora::sockets
