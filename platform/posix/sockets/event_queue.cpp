#include "platform/posix/sockets/event_queue.h"

#include <iterator>
#include <utility>

#include "platform/posix/sockets/stream.h"

namespace velmora::sockets {
namespace {

/// A flood of data must not keep timers and windows waiting.
constexpr std::chrono::milliseconds longestTurn{5};

}  // namespace

EventQueue::EventQueue(Loop& loop, Post post)
    : loop_(loop), post_(std::move(post)), next_(loop, [this] { loop_.post(delivery()); }) {}

void EventQueue::push(Event event) {
    noteTraffic();
    bool asleep = false;
    {
        const std::lock_guard lock(mutex_);
        events_.push_back(std::move(event));
        asleep = !std::exchange(rung_, true);
    }
    if (asleep) ring();
}

void EventQueue::putBack(std::vector<Event> events) {
    if (events.empty()) return;
    bool asleep = false;
    {
        const std::lock_guard lock(mutex_);
        events_.insert(events_.begin(), std::move_iterator(events.begin()), std::move_iterator(events.end()));
        asleep = !std::exchange(rung_, true);
    }
    if (asleep) ring();
}

void EventQueue::clear() {
    std::deque<Event> dropped;
    {
        const std::lock_guard lock(mutex_);
        dropped.swap(events_);
    }
    sinks_.clear();
}

std::function<void()> EventQueue::delivery() {
    return [weak = weak_from_this()] {
        if (const auto queue = weak.lock()) queue->deliver();
    };
}

void EventQueue::ring() {
    post_(delivery());
}

bool EventQueue::pop(Event& taken) {
    bool asleep = false;
    {
        const std::lock_guard lock(mutex_);
        if (events_.empty()) return false;
        taken = std::move(events_.front());
        events_.pop_front();
        // The handler may wait in a loop of its own, and what comes next has to reach it there.
        asleep = !events_.empty() && !std::exchange(rung_, true);
    }
    if (asleep) next_.startOnce(std::chrono::milliseconds{0});
    return true;
}

void EventQueue::deliver() {
    {
        const std::lock_guard lock(mutex_);
        rung_ = false;
    }
    const auto start = Clock::now();
    Event event;
    while (!loop_.ended() && pop(event)) {
        const auto sink = sinks_.find(event.channel);
        if (sink != sinks_.end()) loop_.turn([&event, to = sink->second] { to->happened(event); });
        event = {};
        if (Clock::now() - start >= longestTurn) return;
    }
}

}  // namespace velmora::sockets
