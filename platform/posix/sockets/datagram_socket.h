#pragma once

#include <atomic>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

#include "platform/posix/sockets/stream.h"

namespace velmora::sockets {

/// A bound UDP socket: receives in the reactor's thread, and tells its channel. Safe to use from all threads.
class DatagramSocket : public Watched, public std::enable_shared_from_this<DatagramSocket> {
public:
    /// What the program has not read; more is left to the system, which drops what it can't keep.
    static constexpr std::size_t mostUnread = 64U << 20U;
    static constexpr std::size_t longest = 65507;

    DatagramSocket(Machinery machinery, ChannelId channel) : machinery_(machinery), channel_(channel) {}
    ~DatagramSocket() override { close(); }

    /// Fails with 10048, 10013 or 10049 as the port and the address allow.
    void bind(const Address& local);
    /// Fails with 10040 if the data is too long, 10065 if there is no way to the receiver.
    void send(const Address& to, const std::string& data);
    /// What became of the receiver's name; failures are told to the channel.
    void resolved(const std::vector<Address>& addresses, const std::string& data);
    /// The program has read that many bytes.
    void consumed(std::size_t count);
    void close();

    void ready(std::uint32_t events) override;

private:
    bool receiveOne();
    void fail(long number);
    void attend(bool reads);

    Machinery machinery_;
    const ChannelId channel_;
    std::mutex mutex_;
    FileDescriptor socket_;
    std::optional<Reactor::WatchId> watch_;
    bool resting_ = false;
    std::atomic<std::size_t> unread_{0};
};

}  // namespace velmora::sockets
