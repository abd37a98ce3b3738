#pragma once

#include <chrono>
#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <optional>

#include "platform/loop.h"

namespace velmora {

/// Carries a loop whose only events are calls from other threads. A wait that nothing ends within a generous
/// time ends the loop.
class WaitingHost : public LoopHost {
public:
    std::chrono::milliseconds elapsed() const override {
        return std::chrono::duration_cast<std::chrono::milliseconds>(
            std::chrono::steady_clock::now().time_since_epoch());
    }
    void serve(std::optional<std::chrono::milliseconds> atMost) override {
        std::unique_lock lock(mutex_);
        const bool came = arrived_.wait_for(lock, atMost.value_or(std::chrono::seconds(30)),
                                            [this] { return !calls_.empty(); });
        if (!came && !atMost) return loop.end();
        while (!calls_.empty()) {
            loop.post(std::move(calls_.front()));
            calls_.pop_front();
        }
    }
    void postFromThread(std::function<void()> call) {
        const std::lock_guard lock(mutex_);
        calls_.push_back(std::move(call));
        arrived_.notify_one();
    }

    Loop loop{*this};

private:
    std::mutex mutex_;
    std::condition_variable arrived_;
    std::deque<std::function<void()>> calls_;
};

}  // namespace velmora
