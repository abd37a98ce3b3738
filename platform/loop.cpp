#include "platform/loop.h"

#include <algorithm>
#include <cassert>
#include <utility>

namespace velmora {

using std::chrono::milliseconds;

namespace {
constexpr milliseconds longestPause{50};  // of DoEvents
}

void Loop::turn(const Handler& entry) {
    struct Depth {
        int& depth;
        explicit Depth(int& d) : depth(d) { ++depth; }
        ~Depth() { --depth; }
    };
    const Depth depth(depth_);
    try {
        entry();
    } catch (const Failure& failure) {
        if (onFailure) onFailure(failure);
    } catch (const Ended&) {
        // The wait that threw it was inside this turn; an outer wait sees for itself that the program is
        // over.
    }
}

void Loop::post(Handler call) {
    posted_.push_back(std::move(call));
}

bool Loop::due() const {
    return !posted_.empty() || nextTimer(now()).has_value();
}

std::optional<Loop::TimerId> Loop::nextTimer(milliseconds by) const {
    std::optional<TimerId> first;
    for (const auto& [id, timer] : timers_) {
        if (timer.running || timer.due > by) continue;
        if (!first || timer.due < timers_.at(*first).due) first = id;
    }
    return first;
}

std::optional<milliseconds> Loop::untilNextTimer() const {
    std::optional<milliseconds> first;
    for (const auto& [id, timer] : timers_) {
        if (!timer.running && (!first || timer.due < *first)) first = timer.due;
    }
    if (first) first = std::max(*first - now(), milliseconds{0});
    return first;
}

void Loop::fire(TimerId id) {
    Timer& timer = timers_.at(id);
    const Handler handler = timer.handler;
    timer.running = true;
    timer.armed = timer.repeats;
    if (timer.repeats) {
        const auto missed = (now() - timer.due) / timer.interval;
        timer.due += timer.interval * (missed + 1);
    }
    turn(handler);
    const auto after = timers_.find(id);
    if (after == timers_.end()) return;
    after->second.running = false;
    if (!after->second.armed) timers_.erase(after);
}

bool Loop::runOne() {
    if (!posted_.empty()) {
        const Handler call = std::move(posted_.front());
        posted_.pop_front();
        turn(call);
        return true;
    }
    if (const auto id = nextTimer(now())) {
        fire(*id);
        return true;
    }
    return false;
}

void Loop::step(std::optional<milliseconds> atMost) {
    if (depth_ == 0) releaseRetired();
    const bool busy = runOne() || (onIdle && onIdle()) || due();
    if (ended_) return;
    if (busy) {
        host_.serve(milliseconds{0});
        return;
    }
    const auto next = untilNextTimer();
    host_.serve(next && atMost ? std::min(*next, *atMost) : next ? next : atMost);
}

void Loop::run(const std::function<bool()>& until) {
    while (!ended_ && !(until && until())) step({});
    if (depth_ == 0) releaseRetired();
}

void Loop::wait(const std::function<bool()>& condition) {
    for (;;) {
        if (ended_) throw Ended{};
        if (condition()) return;
        step({});
    }
}

void Loop::doEvents() {
    if (ended_) throw Ended{};
    if (due()) {
        for (auto atMost = posted_.size() + timers_.size(); atMost > 0 && !ended_ && runOne(); --atMost) {
        }
        host_.serve(milliseconds{0});
    } else {
        step(longestPause);
    }
    if (ended_) throw Ended{};
}

void Loop::retire(std::shared_ptr<void> object) {
    retired_.push_back(std::move(object));
}

void Loop::releaseRetired() {
    const auto released = std::exchange(retired_, {});
}

void Loop::settle() {
    while (!ended_ && !posted_.empty()) runOne();
    host_.serve(milliseconds{0});
}

void Loop::settleOutside() {
    const auto start = host_.elapsed();
    while (!ended_ && onSkipped) {
        const auto waitOn = onSkipped(host_.elapsed() - start);
        if (waitOn <= milliseconds{0}) return;
        host_.serve(waitOn);
        settle();
    }
}

void Loop::skip(milliseconds span) {
    settle();
    // What is left is counted, not aimed at: while a handler waits in it, time goes on, and may be skipped
    // again.
    for (auto left = span; !ended_;) {
        const auto id = nextTimer(now() + left);
        const auto jump = id ? std::max(timers_.at(*id).due - now(), milliseconds{0}) : left;
        skipped_ += jump;
        left -= jump;
        if (!id) break;
        fire(*id);
        settle();
        settleOutside();
    }
}

LoopTimer::LoopTimer(Loop& loop, Loop::Handler handler)
    : loop_(loop), id_(++loop.lastTimer_), handler_(std::move(handler)) {}

LoopTimer::~LoopTimer() {
    loop_.timers_.erase(id_);
}

void LoopTimer::start(milliseconds interval) {
    assert(interval > milliseconds{0});
    arm(interval, true);
}

void LoopTimer::startOnce(milliseconds delay) {
    arm(delay, false);
}

void LoopTimer::arm(milliseconds delay, bool repeats) {
    auto& timer = loop_.timers_[id_];  // one that is on the stack stays marked as running
    timer.armed = true;
    timer.due = loop_.now() + delay;
    timer.interval = delay;
    timer.repeats = repeats;
    timer.handler = handler_;
}

void LoopTimer::stop() {
    const auto found = loop_.timers_.find(id_);
    if (found == loop_.timers_.end()) return;
    found->second.armed = false;
    if (!found->second.running) loop_.timers_.erase(found);
}

bool LoopTimer::active() const {
    const auto found = loop_.timers_.find(id_);
    return found != loop_.timers_.end() && found->second.armed;
}

}  // namespace velmora
