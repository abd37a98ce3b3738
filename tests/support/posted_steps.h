#pragma once

#include <chrono>
#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>

namespace velmora {

/// The event loop of a caller of the engine: runs what other threads post to it.
class PostedSteps {
public:
    std::function<void(std::function<void()>)> post() {
        return [this](std::function<void()> step) {
            const std::lock_guard lock(mutex_);
            steps_.push_back(std::move(step));
            arrived_.notify_all();
        };
    }

    /// Runs steps until the condition holds. False: none came for long.
    bool runUntil(const std::function<bool()>& condition) {
        while (!condition()) {
            std::unique_lock lock(mutex_);
            if (!arrived_.wait_for(lock, std::chrono::seconds(30), [this] { return !steps_.empty(); }))
                return false;
            const auto step = std::move(steps_.front());
            steps_.pop_front();
            lock.unlock();
            step();
        }
        return true;
    }

private:
    std::mutex mutex_;
    std::condition_variable arrived_;
    std::deque<std::function<void()>> steps_;
};

}  // namespace velmora
