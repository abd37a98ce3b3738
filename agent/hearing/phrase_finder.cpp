#include "agent/hearing/phrase_finder.h"

#include <algorithm>
#include <utility>

namespace agent {
namespace {

constexpr std::size_t frameSize = hearingRate / 50;
constexpr std::size_t before = hearingRate * 3 / 10;  // kept of what comes before a phrase
constexpr std::size_t margin = hearingRate / 5;
constexpr std::size_t longest = std::size_t{10} * hearingRate;
constexpr int framesToBegin = 3;
constexpr int framesToEnd = 30;
constexpr int framesKept = 8;  // of the pause at the end
constexpr int framesToPause = 2;
constexpr int fewestVoiced = 6;
constexpr double clearlyLouder = 6;  // than the room, of mean squares
constexpr double quietest = 50.0 * 50;
constexpr std::size_t roomFrames = 150;

double loudnessOf(std::span<const std::int16_t> samples) {
    double sum = 0;
    for (const std::int16_t sample : samples) sum += static_cast<double>(sample) * sample;
    return sum / static_cast<double>(std::max<std::size_t>(samples.size(), 1));
}

}  // namespace

PhraseFinder::PhraseFinder(std::optional<double> room) : roomKnown_(room.has_value()), room_(room) {}

void PhraseFinder::followRoom(double loudness) {
    recent_.push_back(loudness);
    if (recent_.size() > roomFrames) recent_.pop_front();
    if (recent_.size() == roomFrames || !room_) room_ = *std::ranges::min_element(recent_);
}

bool PhraseFinder::takeFrame(std::span<const std::int16_t> frame) {
    const double loudness = loudnessOf(frame);
    if (!roomKnown_) followRoom(loudness);
    const bool loud = loudness > std::max(*room_ * clearlyLouder, quietest);
    phrase_.insert(phrase_.end(), frame.begin(), frame.end());
    loud_ = loud ? loud_ + 1 : 0;
    quiet_ = loud ? 0 : quiet_ + 1;
    if (!speaking_) {
        speaking_ = loud_ >= framesToBegin;
        voiced_ = loud_;
        if (!speaking_ && phrase_.size() > before)
            phrase_.erase(phrase_.begin(), phrase_.end() - static_cast<std::ptrdiff_t>(before));
        return false;
    }
    voiced_ += loud ? 1 : 0;
    return quiet_ >= framesToEnd || phrase_.size() >= longest;
}

std::optional<Samples> PhraseFinder::take() {
    const bool spoken = std::exchange(speaking_, false) && voiced_ >= fewestVoiced;
    loud_ = 0;
    Samples phrase = std::exchange(phrase_, {});
    if (!spoken) return {};
    // In a long silence the recogniser loses the command that came before it.
    const auto silent = static_cast<std::size_t>(std::max(quiet_ - framesKept, 0)) * frameSize;
    phrase.resize(phrase.size() - std::min(silent, phrase.size()));
    return phrase;
}

std::optional<Samples> PhraseFinder::feed(std::span<const std::int16_t> samples) {
    std::optional<Samples> ended;
    rest_.insert(rest_.end(), samples.begin(), samples.end());
    std::size_t taken = 0;
    for (; !ended && taken + frameSize <= rest_.size(); taken += frameSize) {
        if (takeFrame(std::span(rest_).subspan(taken, frameSize))) ended = take();
    }
    rest_.erase(rest_.begin(), rest_.begin() + static_cast<std::ptrdiff_t>(taken));
    return ended;
}

bool PhraseFinder::pausing() const {
    return speaking_ && voiced_ >= fewestVoiced && quiet_ >= framesToPause;
}

Samples PhraseFinder::phraseUpToPause() const {
    const std::size_t quiet = static_cast<std::size_t>(quiet_) * frameSize;
    const std::size_t kept = framesKept * frameSize;
    Samples phrase = phrase_;
    phrase.resize(phrase.size() - std::min(quiet, phrase.size()) + std::min(quiet, kept));
    // What of the pause is still to come will sound like what there is of it.
    for (std::size_t more = quiet; more < kept && quiet > 0; ++more)
        phrase.push_back(phrase[phrase.size() - quiet]);
    return phrase;
}

std::optional<Samples> PhraseFinder::finish() {
    rest_.clear();
    return take();
}

std::vector<Samples> findPhrases(const Samples& recording) {
    // Here the quietest tenth tells the room, also where the recording begins with the first word; unless it
    // is hardly quieter than the loudest one, as in a recording of speech alone.
    constexpr double muchLouder = 3 * clearlyLouder;
    std::vector<double> loudness;
    for (std::size_t at = 0; at + frameSize <= recording.size(); at += frameSize)
        loudness.push_back(loudnessOf(std::span(recording).subspan(at, frameSize)));
    std::vector<Samples> phrases;
    if (loudness.empty()) return phrases;
    std::ranges::sort(loudness);
    const std::size_t tenth = loudness.size() / 10;
    PhraseFinder finder(std::min(loudness[tenth], loudness[loudness.size() - 1 - tenth] / muchLouder));
    for (std::size_t at = 0; at < recording.size(); at += frameSize) {
        const auto piece = std::span(recording).subspan(at, std::min(frameSize, recording.size() - at));
        if (auto phrase = finder.feed(piece)) phrases.push_back(std::move(*phrase));
    }
    if (auto phrase = finder.finish()) phrases.push_back(std::move(*phrase));
    if (!phrases.empty()) {
        // The first word may begin with the recording, and the last one end with it.
        phrases.front().insert(phrases.front().begin(), margin, 0);
        phrases.back().insert(phrases.back().end(), margin, 0);
    }
    return phrases;
}

}  // namespace agent
