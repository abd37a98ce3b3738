#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/posix/sockets/event_queue.h"
#include "platform/posix/sockets/stream.h"

namespace velmora::sockets {

/// A caller whom a socket takes over, and what has come from him up to now.
struct Caller {
    std::shared_ptr<Stream> stream;
    std::string address;
    std::vector<Event> before;
};

/// The callers who wait for an answer. Belongs to the program's thread.
class Calls {
public:
    explicit Calls(EventQueue& queue) : queue_(queue) {}

    /// Keeps the caller of a `called` event, until `take` or `drop`. The number names him.
    long add(Event& called);
    /// Nothing if there is no such caller.
    std::optional<Caller> take(long number);
    /// Hangs up, if he is still there.
    void drop(long number);

private:
    struct Waiting : Sink {
        void happened(Event& event) override { caller.before.push_back(std::move(event)); }
        Caller caller;
    };

    EventQueue& queue_;
    std::map<long, Waiting> waiting_;
};

}  // namespace velmora::sockets
