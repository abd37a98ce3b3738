#include "agent/voice/audio_sink.h"

#include <algorithm>
#include <utility>

namespace agent {
namespace {

using Clock = std::chrono::steady_clock;

// Written ahead of what would be heard, as with a device's buffer.
constexpr std::chrono::milliseconds ahead{40};

class Silence : public AudioSink {
public:
    Silence(int sampleRate, WaitUntil wait) : sampleRate_(sampleRate), wait_(std::move(wait)) {}

    bool write(std::span<const std::int16_t> samples) override {
        end_ = std::max(end_, Clock::now()) +
               std::chrono::microseconds(static_cast<std::int64_t>(samples.size()) * 1'000'000 / sampleRate_);
        wait_(end_ - ahead);
        return true;
    }

    std::chrono::microseconds delay() override {
        const auto left = std::max(Clock::duration::zero(), end_ - Clock::now());
        return std::chrono::duration_cast<std::chrono::microseconds>(left);
    }

    void drop() override { end_ = {}; }

private:
    int sampleRate_;
    WaitUntil wait_;
    Clock::time_point end_;  // when the last sample would have been heard
};

}  // namespace

std::unique_ptr<AudioSink> openSilence(int sampleRate, WaitUntil wait) {
    return std::make_unique<Silence>(sampleRate, std::move(wait));
}

}  // namespace agent
