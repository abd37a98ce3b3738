#pragma once

#include <future>
#include <utility>

#include "agent/voice/audio_device.h"

namespace agent {

/// A device that hangs in whatever it is asked, until it is released.
class HangingDevice : public AudioDevice {
public:
    explicit HangingDevice(std::shared_future<void> released) : released_(std::move(released)) {}
    std::optional<std::size_t> write(std::span<const std::int16_t> samples) override {
        released_.wait();
        return samples.size();
    }
    Playback playback() override {
        released_.wait();
        return {};
    }
    void drop() override { released_.wait(); }

private:
    std::shared_future<void> released_;
};

}  // namespace agent
