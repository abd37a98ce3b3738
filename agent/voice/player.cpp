#include "agent/voice/player.h"

#include <algorithm>
#include <utility>

namespace agent {

Player::Player(std::unique_ptr<AudioSink> sink, PlayerHost host)
    : sink_(std::move(sink)), host_(std::move(host)) {}

void Player::play(const Utterance& utterance) {
    constexpr int blocksPerSecond = 50;
    const auto block = static_cast<std::size_t>(host_.sampleRate / blocksPerSecond);
    for (auto event : utterance.events) {
        event.sample = std::min(event.sample, utterance.samples.size()) + written_;
        events_.push_back(event);
    }
    std::span<const std::int16_t> rest = utterance.samples;
    while (!rest.empty() && !host_.stopped()) {
        const auto now = rest.first(std::min(block, rest.size()));
        write(now);
        rest = rest.subspan(now.size());
        tellHeard();
    }
}

void Player::finish() {
    // By the clock: a device that has played all it was given may report its own latency for ever.
    const auto end = std::chrono::steady_clock::now() + delay();
    while (!host_.stopped() && !events_.empty()) {
        const auto left = static_cast<std::int64_t>(written_ - events_.front().sample);
        host_.wait(end - std::chrono::microseconds(left * 1'000'000 / host_.sampleRate));
        if (host_.stopped()) break;
        host_.tell(events_.front());
        events_.pop_front();
    }
    if (!host_.stopped()) host_.wait(end);
    if (host_.stopped()) sink_->drop();
}

std::chrono::microseconds Player::delay() {
    constexpr std::chrono::microseconds believable{2'500'000};
    return std::min(sink_->delay(), believable);
}

void Player::write(std::span<const std::int16_t> samples) {
    if (!sink_->write(samples)) {
        sink_ = openSilence(host_.sampleRate, host_.wait);
        sink_->write(samples);
    }
    written_ += samples.size();
}

void Player::tellHeard() {
    const auto ahead = delay().count() * host_.sampleRate / 1'000'000;
    const auto heard = static_cast<std::int64_t>(written_) - ahead;
    while (!events_.empty() && static_cast<std::int64_t>(events_.front().sample) <= heard) {
        host_.tell(events_.front());
        events_.pop_front();
    }
}

}  // namespace agent
