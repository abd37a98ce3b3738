#pragma once

#include <atomic>
#include <deque>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/posix/file_descriptor.h"
#include "platform/posix/sockets/address.h"
#include "platform/posix/sockets/cutting.h"
#include "platform/posix/sockets/event_queue.h"
#include "platform/posix/sockets/layer.h"
#include "platform/posix/sockets/reactor.h"

namespace velmora::sockets {

/// What all sockets of a program stand on. Outlives them.
struct Machinery {
    Reactor& reactor;
    EventQueue& queue;
};

/// One TCP connection, from the attempt to its end. It reads in the reactor's thread and writes in whichever
/// can, and tells its channel what happens. Safe to use from both threads.
class Stream : public Watched, public std::enable_shared_from_this<Stream> {
public:
    /// More than this, unread by the program, and the peer is kept waiting until half of it is read.
    static constexpr std::size_t mostUnread = 64U << 20U;

    Stream(Machinery machinery, ChannelId channel, std::unique_ptr<Cutting> cutting,
           std::unique_ptr<Layer> layer = nullptr);
    ~Stream() override;

    /// From which address to connect; must come before `connect`. Fails as `bindTo` does.
    void bind(const Address& local);
    /// Tries the addresses in turn, those of the bound family if bound; `connected`, `refused` or `failed`
    /// follows. An address that this socket can't be connected to at all fails with 10048 (the pair is in
    /// use).
    void connect(std::vector<Address> addresses);
    /// What became of the name: `failed` with 11001 if there is no address, else as `connect`.
    void resolved(std::vector<Address> addresses);
    /// Takes over a connection that somebody else has opened. It can be sent on, and read from `start` on.
    void adopt(FileDescriptor connection);
    /// Fails with 28 if the system watches no more.
    void start();

    /// Sends, or keeps what does not leave at once; `sent` follows once it has left, if asked for.
    void send(std::string data, bool tell);
    /// The program has read that many bytes.
    void consumed(std::size_t count);
    /// Ends at once, without a word.
    void close();
    /// Ends with `refused`, for a reason that a person can read.
    void refuse(const std::string& reason);

    ChannelId channel() const { return channel_; }

    void ready(std::uint32_t events) override;

private:
    struct Outgoing {
        std::string bytes;
        bool tell;
    };

    // All of these with the lock held.
    void attempt(std::vector<Address> addresses);
    bool begin(const Address& address);
    void tryNext();
    void established();
    void finishConnecting();
    void receive();
    void take(std::string_view bytes);
    void follow(Passage passage);
    void deliver(std::string bytes);
    void flush();
    void end();
    void fail(long number);
    void refuseHere(const std::string& reason);
    void drop();
    void watch();
    void attend();
    void push(Event::Kind kind, std::string bytes = {}, long number = 0);

    Machinery machinery_;
    const ChannelId channel_;
    std::unique_ptr<Cutting> cutting_;
    std::unique_ptr<Layer> layer_;

    std::mutex mutex_;
    FileDescriptor socket_;
    std::optional<Address> local_;
    std::deque<Address> addresses_;
    int lastError_ = 0;
    enum class Phase { idle, connecting, opening, open, ended, gone } phase_ = Phase::idle;
    std::deque<Outgoing> outgoing_;
    std::size_t left_ = 0;  ///< of the first of them
    std::optional<Reactor::WatchId> watch_;
    std::uint32_t attended_ = 0;
    bool resting_ = false;  ///< reads nothing until the program has caught up
    std::atomic<std::size_t> unread_{0};
};

}  // namespace velmora::sockets
