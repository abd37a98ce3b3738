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
    constexpr std::chrono::milliseconds step{10};
    while (!host_.stopped() && sink_->delay().count() > 0) {
        tellHeard();
        host_.wait(std::chrono::steady_clock::now() + step);
    }
    if (host_.stopped()) return sink_->drop();
    for (const auto& event : std::exchange(events_, {})) host_.tell(event);
}

void Player::write(std::span<const std::int16_t> samples) {
    if (!sink_->write(samples)) {
        sink_ = openSilence(host_.sampleRate, host_.wait);
        sink_->write(samples);
    }
    written_ += samples.size();
}

void Player::tellHeard() {
    const auto ahead = sink_->delay().count() * host_.sampleRate / 1'000'000;
    const auto heard = static_cast<std::int64_t>(written_) - ahead;
    while (!events_.empty() && static_cast<std::int64_t>(events_.front().sample) <= heard) {
        host_.tell(events_.front());
        events_.pop_front();
    }
}

}  // namespace agent
