#pragma once

#include <chrono>
#include <future>
#include <utility>

#include "agent/voice/audio_sink.h"

namespace agent {

/// A device that hangs in whatever it is asked, until it is released.
class HangingSink : public AudioSink {
public:
    explicit HangingSink(std::shared_future<void> released) : released_(std::move(released)) {}
    bool write(std::span<const std::int16_t>) override { return hang(); }
    std::optional<std::chrono::microseconds> delay() override {
        return hang() ? std::chrono::milliseconds(0) : std::chrono::milliseconds(1);
    }
    void drop(std::size_t) override { hang(); }

private:
    bool hang() {
        released_.wait();
        return true;
    }
    std::shared_future<void> released_;
};

}  // namespace agent
