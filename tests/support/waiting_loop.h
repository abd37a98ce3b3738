#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>

#include "platform/loop.h"

namespace velmora {

/// A loop in real time that other threads can post to.
class WaitingLoop : private LoopHost {
public:
    /// Runs the call in a turn of the loop; from any thread.
    void post(std::function<void()> call) {
        const std::lock_guard lock(mutex_);
        calls_.push_back(std::move(call));
        bell_.notify_all();
    }

    /// Runs turns until the condition holds; fails the test if it does not within a generous time.
    void until(const std::function<bool()>& condition) {
        bool late = false;
        LoopTimer alarm(loop, [&late] { late = true; });
        alarm.startOnce(std::chrono::seconds(60));
        loop.run([&] { return late || condition(); });
        EXPECT_FALSE(late) << "it never happened";
    }

    Loop loop{*this};

private:
    std::chrono::milliseconds elapsed() const override {
        return std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() -
                                                                     start_);
    }
    void serve(std::optional<std::chrono::milliseconds> atMost) override {
        std::unique_lock lock(mutex_);
        const auto ready = [this] { return !calls_.empty(); };
        if (atMost) {
            bell_.wait_for(lock, *atMost, ready);
        } else {
            bell_.wait(lock, ready);
        }
        for (; !calls_.empty(); calls_.pop_front()) loop.post(std::move(calls_.front()));
    }

    const std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
    std::mutex mutex_;
    std::condition_variable bell_;
    std::deque<std::function<void()>> calls_;
};

}  // namespace velmora
