#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <thread>

#include "platform/posix/file_descriptor.h"

namespace velmora::sockets {

/// Something with a descriptor that the reactor watches.
class Watched {
public:
    virtual ~Watched() = default;

    /// Told of what epoll reports (`EPOLLIN` and so on), in the reactor's thread, again and again for as long
    /// as it holds.
    virtual void ready(std::uint32_t events) = 0;
};

/// The one thread that waits for all sockets of a program. It starts with the first one.
class Reactor {
public:
    using WatchId = std::uint64_t;

    Reactor() = default;
    /// Stops.
    ~Reactor();
    Reactor(const Reactor&) = delete;
    Reactor& operator=(const Reactor&) = delete;

    /// Watches the descriptor from now on. Whoever it belongs to may go at any moment; what then still comes
    /// is dropped. Fails with 28 if the system watches no more. From any thread, like the next two.
    WatchId watch(int descriptor, std::uint32_t events, std::weak_ptr<Watched> watched);
    /// Watches for other events.
    void change(WatchId id, int descriptor, std::uint32_t events);
    /// Watches no more. Before the descriptor is closed.
    void forget(WatchId id, int descriptor);

    /// Ends the thread; nobody is told of anything after that. Not from the thread itself.
    void stop();

private:
    void start();
    void run();
    std::shared_ptr<Watched> find(WatchId id);

    std::mutex mutex_;
    std::map<WatchId, std::weak_ptr<Watched>> watched_;
    WatchId last_ = 0;
    FileDescriptor epoll_;
    FileDescriptor end_;
    std::thread thread_;
};

}  // namespace velmora::sockets
