#pragma once

#include <chrono>
#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <vector>

#include "base/failure.h"

namespace velmora {

/// Thrown out of a wait when the program is over. It is no `Failure`, so no handler of the logic holds it up:
/// the stack unwinds to the turn that began it.
struct Ended {};

/// What carries a loop: a machine's time, and whatever reaches the program from outside.
class LoopHost {
public:
    virtual ~LoopHost() = default;

    /// Time since some fixed moment; never goes back.
    virtual std::chrono::milliseconds elapsed() const = 0;

    /// Waits for events from outside, at most so long (without end if nothing is given), and delivers those
    /// that are there, each by `Loop::turn`. Returns early when `Loop::post` is called meanwhile. With 0 it
    /// only looks.
    virtual void serve(std::optional<std::chrono::milliseconds> atMost) = 0;
};

/// The one event loop of a running program: posted calls, timers, and waits in the middle of a handler.
///
/// Everything here belongs to the program's one thread.
class Loop {
public:
    using Handler = std::function<void()>;

    explicit Loop(LoopHost& host) : host_(host) {}
    Loop(const Loop&) = delete;
    Loop& operator=(const Loop&) = delete;

    /// Every entry into the logic. A `Failure` that nothing caught goes to `onFailure`, the end of the
    /// program stops here; any other exception is a bug and passes.
    void turn(const Handler& entry);

    /// Runs the call later, in a turn of its own, in the order of posting.
    void post(Handler call);

    /// Runs turns until `end` is called, or until the condition holds.
    void run(const std::function<bool()>& until = {});

    /// Runs other turns until the condition holds; throws `Ended` when the program is over before that.
    void wait(const std::function<bool()>& condition);

    /// Runs what is due; if nothing is, waits for the next event, at most 50 ms, so that a loop that polls
    /// costs no processor time. Throws `Ended` when the program is over.
    void doEvents();

    /// Keeps an object that may still be on the stack until no turn is under way, and lets go of it then.
    void retire(std::shared_ptr<void> object);

    /// Jumps ahead: timers due in the span run in their order, with what they post.
    void skip(std::chrono::milliseconds span);

    /// The program is over: `run` returns, waits throw `Ended`.
    void end() { ended_ = true; }
    bool ended() const { return ended_; }

    /// The program's time: the host's, and all that was skipped.
    std::chrono::milliseconds now() const { return host_.elapsed() + skipped_; }

    /// How far the program's time is ahead of the host's.
    std::chrono::milliseconds skipped() const { return skipped_; }

    /// Whether a posted call or a timer is due.
    bool due() const;

    /// How many turns are on the stack.
    int depth() const { return depth_; }

    /// Called when nothing is due, before the loop goes to sleep, at whatever depth. True: it did something,
    /// look again.
    std::function<bool()> onIdle;
    /// Asked in a skip, after each timer, and told how long the skip has waited there for events from
    /// outside: how long to wait on; 0: go on.
    std::function<std::chrono::milliseconds(std::chrono::milliseconds waited)> onSkipped;
    /// Told of a failure that a turn did not handle.
    std::function<void(const Failure&)> onFailure;

private:
    friend class LoopTimer;
    struct Timer {
        std::chrono::milliseconds due{};
        std::chrono::milliseconds interval{};
        bool repeats = false;
        bool running = false;  // its handler is on the stack
        bool armed = true;     // it is to fire (again)
        Handler handler;
    };
    using TimerId = std::uint64_t;

    /// The timer that is due first at that time or before, of two due at once the one created first.
    std::optional<TimerId> nextTimer(std::chrono::milliseconds by) const;
    void fire(TimerId id);
    bool runOne();
    void step(std::optional<std::chrono::milliseconds> atMost);
    std::optional<std::chrono::milliseconds> untilNextTimer() const;
    void settle();
    void settleOutside();
    void releaseRetired();

    LoopHost& host_;
    std::chrono::milliseconds skipped_{};
    std::deque<Handler> posted_;
    std::map<TimerId, Timer> timers_;
    TimerId lastTimer_ = 0;
    std::vector<std::shared_ptr<void>> retired_;
    int depth_ = 0;
    bool ended_ = false;
};

/// A timer of the loop; stops when it is destroyed.
///
/// Its handler does not run again while it is on the stack. A repeating one re-arms from the moment it was
/// due, and ticks missed in a pause are not made up.
class LoopTimer {
public:
    LoopTimer(Loop& loop, Loop::Handler handler);
    ~LoopTimer();
    LoopTimer(const LoopTimer&) = delete;
    LoopTimer& operator=(const LoopTimer&) = delete;

    /// Fires every `interval` (more than 0) from now on; starting a running timer anew sets it back.
    void start(std::chrono::milliseconds interval);
    /// Fires once, after `delay`.
    void startOnce(std::chrono::milliseconds delay);
    void stop();
    bool active() const;

private:
    void arm(std::chrono::milliseconds delay, bool repeats);

    Loop& loop_;
    Loop::TimerId id_;
    Loop::Handler handler_;
};

}  // namespace velmora
