#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace agent {

/// The failure of a request that the character can't perform now: it is hidden, or has no such animation.
inline constexpr long refused = static_cast<long>(0x80042003);

/// What a character can be asked for.
enum class Action { show, hide, play, speak, think, moveTo };

/// One thing to do.
struct Order {
    Action action;
    /// `play`: the animation's name, in any case. `speak`, `think`: the line, with its tags and bars.
    std::string text;
    int x = 0;  ///< `moveTo` only: the screen position of the figure's upper left corner, in pixels
    int y = 0;
};

/// Where a request stands. The last three are final.
enum class RequestState { pending, inProgress, complete, failed, interrupted };

/// One order on its way. The queue changes it only in turns of the event loop that `Post` runs.
class Request {
public:
    RequestState state() const { return state_; }

    /// 0, or `refused` for a request that failed.
    long failure() const { return failure_; }

private:
    friend class RequestQueue;
    RequestState state_ = RequestState::pending;
    long failure_ = 0;
};

/// Who asks may keep this, and is then told of the request's end.
using RequestHandle = std::shared_ptr<const Request>;

/// Where orders are performed, one at a time.
class Stage {
public:
    virtual ~Stage() = default;

    /// Begins an order. Calls `done` when it has ended, at once or later, at most once; `performed` false
    /// makes the request fail.
    virtual void perform(const Order& order, std::function<void(bool performed)> done) = 0;

    /// Drops the order under way, now; its `done` is not called any more. A show that is cut leaves the
    /// figure on screen, a hide that is cut takes it off.
    virtual void cut() = 0;

    /// Whether the figure has an animation of this name; case makes no difference.
    virtual bool has(std::string_view animation) const = 0;
};

/// Runs a function later, in a turn of the event loop of its own, in the order in which they were posted.
using Post = std::function<void(std::function<void()>)>;

/// Performs requests one after another, asynchronously: each begins in a posted turn, so that asking returns
/// at once. Only for the thread whose loop `Post` serves.
class RequestQueue {
public:
    /// `stage` outlives the queue. Functions already posted do nothing once the queue is gone.
    RequestQueue(Stage& stage, Post post);

    /// Cuts the order under way. Raises no event.
    ~RequestQueue();

    RequestQueue(const RequestQueue&) = delete;
    RequestQueue& operator=(const RequestQueue&) = delete;

    /// Appends a request. Whoever drops the handle is not told of its end.
    RequestHandle ask(Order order);

    /// Drops every request, the one under way included: they end as interrupted.
    void stopAll();

    /// Whether the character is on screen: changes when a show or hide begins, not when it is asked for.
    bool visible() const { return visible_; }

    /// Told of each request that has ended, whatever its outcome, if somebody still keeps the handle then;
    /// always in a posted turn. It may ask, stop, and destroy the queue.
    std::function<void(const RequestHandle&)> onComplete;

private:
    struct Entry {
        Order order;
        std::weak_ptr<Request> request;
    };

    void beginNext();
    void begin(const Order& order);
    bool canPerform(const Order& order) const;
    void finish(RequestState state);
    void end(const Entry& entry, RequestState state);
    void askForTurn();

    Stage& stage_;
    Post post_;
    std::deque<Entry> waiting_;
    std::optional<Entry> current_;
    std::uint64_t run_ = 0;  ///< tells the `done` of the order under way from one that was cut
    bool turnPosted_ = false;
    bool visible_ = false;
    std::shared_ptr<RequestQueue*> self_;  ///< what posted functions reach the queue by; emptied with it
};

}  // namespace agent
