#include "agent/voice/player.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace agent {
namespace {

using namespace std::chrono_literals;

// In the device and on its way to it: what bridges the pauses that a busy machine makes.
constexpr auto ahead = 300ms;

// A device may have to be woken, or have rendered two seconds of silence ahead; one that plays and stands
// still for so long is lost.
constexpr auto patienceToBegin = 2500ms;
constexpr auto patience = 500ms;

// What takes samples faster than they can be heard, or believes that it does, is held to the clock.
constexpr auto earliest = 40ms;

// Devices guess their position: so little progress may be none at all.
constexpr auto guess = 15ms;

constexpr auto shortestWait = 2ms;

}  // namespace

Player::Player(std::unique_ptr<AudioSink> sink, PlayerHost host)
    : sink_(std::move(sink)), host_(std::move(host)) {}

void Player::add(Utterance utterance) {
    for (auto event : utterance.events) {
        event.sample = std::min(event.sample, utterance.samples.size()) + added();
        events_.push_back(event);
    }
    waiting_.insert(waiting_.end(), utterance.samples.begin(), utterance.samples.end());
}

Player::TimePoint Player::pump() {
    const TimePoint now = host_.now();
    updateHeard(now);
    handOver(now);
    tellHeard();
    std::size_t next = added();
    if (!waiting_.empty()) next = std::min(next, written_ - std::min(written_, samplesIn(ahead / 2)));
    if (!events_.empty()) next = std::min(next, events_.front().sample);
    if (next <= heard_ && waiting_.empty() && events_.empty()) return now + 1h;
    TimePoint wanted = now + timeOf(next - std::min(next, heard_));
    if (sink_) wanted = std::min(wanted, lastProgress_.at + patienceNow());
    return std::max(wanted, now + shortestWait);
}

bool Player::done() const {
    return closed_ && waiting_.empty() && events_.empty() && heard_ >= written_;
}

void Player::stop() {
    updateHeard(host_.now());
    if (sink_) sink_->drop(written_ - heard_);
    sink_.reset();
    waiting_.clear();
    events_.clear();
}

std::chrono::microseconds Player::left() const {
    return timeOf(added() - heard_);
}

void Player::updateHeard(TimePoint now) {
    if (!begun_) return;
    const auto delay = sink_ ? sink_->delay() : std::nullopt;
    if (!delay) {
        // The clock goes on from where a lost device was, which may have begun late, or not at all.
        if (std::exchange(deviceTells_, false))
            start_ = heard_ == start_.sample ? Position{now, heard_} : lastProgress_;
        const std::size_t byClock = std::min(written_, start_.sample + samplesIn(now - start_.at));
        heard_ = std::max(heard_, byClock);
        lastProgress_ = {now, heard_};
        return;
    }
    deviceTells_ = true;
    std::size_t reported = written_ - std::min(written_, samplesIn(*delay));
    if (reported < std::min(written_, start_.sample + samplesIn(guess))) reported = start_.sample;
    const std::size_t heard =
        std::min({reported, written_, start_.sample + samplesIn(now - start_.at + earliest)});
    if (heard > heard_ || heard == written_) {
        heard_ = std::max(heard_, heard);
        lastProgress_ = {now, heard_};
    } else if (now - lastProgress_.at >= patienceNow()) {
        leaveSink(now);
        updateHeard(now);
    }
}

std::chrono::milliseconds Player::patienceNow() const {
    return heard_ == start_.sample ? patienceToBegin : patience;
}

// From now on the clock tells what would be heard, as if the device had gone on where it stopped.
void Player::leaveSink(TimePoint now) {
    sink_.reset();
    deviceTells_ = false;
    start_ = lastProgress_;
    const std::size_t reached = start_.sample + samplesIn(now - start_.at);
    const auto passed =
        static_cast<std::ptrdiff_t>(std::min(waiting_.size(), reached - std::min(reached, written_)));
    waiting_.erase(waiting_.begin(), waiting_.begin() + passed);
    written_ += static_cast<std::size_t>(passed);
}

void Player::handOver(TimePoint now) {
    if (waiting_.empty()) return;
    if (!begun_ || heard_ == written_) {
        begun_ = true;
        start_ = lastProgress_ = {now, heard_};
    }
    const std::size_t most = heard_ + samplesIn(ahead);
    if (written_ >= most) return;
    const auto count = static_cast<std::ptrdiff_t>(std::min(most - written_, waiting_.size()));
    const std::vector<std::int16_t> block(waiting_.begin(), waiting_.begin() + count);
    waiting_.erase(waiting_.begin(), waiting_.begin() + count);
    written_ += block.size();
    if (sink_ && !sink_->write(block)) leaveSink(now);
}

// What happens at the sample that is heard next waits for the device to begin with it.
void Player::tellHeard() {
    const bool next = !sink_ || heard_ == added();
    while (!events_.empty() && events_.front().sample < heard_ + (next ? 1 : 0)) {
        const SpeechEvent event = events_.front();
        events_.pop_front();
        host_.tell(event);
    }
}

std::size_t Player::samplesIn(std::chrono::steady_clock::duration time) const {
    const auto microseconds = std::chrono::duration_cast<std::chrono::microseconds>(time).count();
    return static_cast<std::size_t>(std::max<std::int64_t>(0, microseconds) * host_.sampleRate / 1'000'000);
}

std::chrono::microseconds Player::timeOf(std::size_t samples) const {
    return std::chrono::microseconds(static_cast<std::int64_t>(samples) * 1'000'000 / host_.sampleRate);
}

}  // namespace agent
