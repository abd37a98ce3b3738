#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "platform/loop.h"

namespace velmora::sockets {

class Stream;

/// Numbers what a socket does, from one `Listen`, `Connect`, `Accept` or `Bind` to the next.
using ChannelId = std::uint64_t;

/// Something that has happened on a channel.
struct Event {
    enum class Kind {
        hostResolved,
        connecting,
        connected,  ///< `address`: the peer's
        called,     ///< `address`: the caller's; `caller`: the connection
        data,       ///< `bytes`; or `number` if there was no memory for them
        sent,
        ended,
        failed,    ///< `number`
        datagram,  ///< `bytes`, from `address`
        refused,   ///< `number`, and `bytes` says why, for a person
    };
    ChannelId channel = 0;
    Kind kind = Kind::data;
    std::string bytes{};
    long number = 0;
    std::string address{};
    std::shared_ptr<Stream> caller{};
};

/// Who holds a channel, in the program's thread.
class Sink {
public:
    virtual ~Sink() = default;
    virtual void happened(Event& event) = 0;
};

/// Brings what happens on the sockets to the program's thread, in order, each in a turn of its own.
class EventQueue : public std::enable_shared_from_this<EventQueue> {
public:
    using Clock = std::chrono::steady_clock;
    /// Runs a call in the program's thread, as `Loop::post` does; from any thread.
    using Post = std::function<void(std::function<void()>)>;

    /// The loop outlives this.
    EventQueue(Loop& loop, Post post);

    // From any thread.
    ChannelId newChannel() { return ++lastChannel_; }
    void push(Event event);
    /// When something last happened.
    Clock::time_point lastTraffic() const { return Clock::time_point(Clock::duration(traffic_.load())); }
    void noteTraffic() { traffic_ = Clock::now().time_since_epoch().count(); }

    // In the program's thread.
    /// Whoever holds the channel is told of what happens on it, until `release`.
    void hold(ChannelId channel, Sink& sink) { sinks_[channel] = &sink; }
    void release(ChannelId channel) { sinks_.erase(channel); }
    bool held() const { return !sinks_.empty(); }
    /// Lets what was taken out before be told anew, ahead of all else.
    void putBack(std::vector<Event> events);
    /// Drops everything.
    void clear();

private:
    void ring();
    void deliver();
    std::function<void()> delivery();
    bool pop(Event& taken);

    Loop& loop_;
    Post post_;
    LoopTimer next_;  ///< for what is left after a turn: whatever is due by then has its turn before that
    std::map<ChannelId, Sink*> sinks_;
    std::atomic<ChannelId> lastChannel_{0};
    std::atomic<Clock::duration::rep> traffic_{0};

    std::mutex mutex_;
    std::deque<Event> events_;
    bool rung_ = false;
};

}  // namespace velmora::sockets
