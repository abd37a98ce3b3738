#pragma once

#include <memory>
#include <mutex>
#include <optional>

#include "platform/posix/sockets/stream.h"

namespace velmora::sockets {

/// A socket that waits for callers. It answers each at once, so that what they send is read whenever the
/// program looks up, and tells its channel of them.
class Listener : public Watched, public std::enable_shared_from_this<Listener> {
public:
    Listener(Machinery machinery, ChannelId channel, StreamUse use)
        : machinery_(machinery), channel_(channel), use_(use) {}
    ~Listener() override { close(); }

    /// Fails with 10048, 10013 or 10049 as the port and the address allow.
    void listen(const Address& local);
    /// Gives the port up before it returns.
    void close();

    void ready(std::uint32_t events) override;

private:
    void tell(FileDescriptor connection, const Address& caller);
    void turnAway();

    Machinery machinery_;
    const ChannelId channel_;
    const StreamUse use_;
    std::mutex mutex_;
    FileDescriptor socket_;
    FileDescriptor spare_;
    std::optional<Reactor::WatchId> watch_;
};

}  // namespace velmora::sockets
