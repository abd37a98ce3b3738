#include "agent/hearing/phrase_reader.h"

#include <chrono>

namespace agent {

using namespace std::chrono_literals;

namespace {

template <class Future>
bool isRunning(const Future& future) {
    return future.valid() && future.wait_for(0s) != std::future_status::ready;
}

}  // namespace

PhraseReader::~PhraseReader() {
    stop_.request_stop();
    stopAhead_.request_stop();
}

bool PhraseReader::feed(std::span<const std::int16_t> samples) {
    const bool paused = finder_.pausing();
    ended_ = finder_.feed(samples);
    if (ended_) return true;
    if (paused && !finder_.pausing()) stop_.request_stop();
    if (finder_.pausing()) {
        beginEarly();
        return isUnderstood();
    }
    if (finder_.speaking()) beginAhead();
    return false;
}

void PhraseReader::beginAhead() {
    constexpr std::size_t enough = hearingRate / 10;
    const Samples& phrase = finder_.phrase();
    if (!readAhead_ || isRunning(ahead_) || isRunning(early_) || phrase.size() < readUpTo_ + enough) return;
    readUpTo_ = phrase.size();
    ahead_ = std::async(std::launch::async, readAhead_, phrase, stopAhead_.get_token());
}

void PhraseReader::beginEarly() {
    if (stop_.stop_requested()) answer_.reset();
    if (isRunning(early_)) return;
    if (early_.valid()) {
        auto answer = early_.get();
        if (!stop_.stop_requested()) answer_ = std::move(answer);
    }
    if (answer_) return;
    stopAhead_.request_stop();
    stopAhead_ = std::stop_source();
    stop_ = std::stop_source();
    early_ = std::async(std::launch::async, recognise_, finder_.phraseUpToPause(), stop_.get_token());
}

bool PhraseReader::isUnderstood() {
    return answer_ && *answer_ && (*answer_)->score > noCommandScore && !(*answer_)->mayGoOn;
}

bool PhraseReader::finish() {
    ended_ = finder_.finish();
    return ended_.has_value();
}

std::optional<HeardPhrase> PhraseReader::result() {
    if (early_.valid()) {
        auto answer = early_.get();
        if (!stop_.stop_requested()) answer_ = std::move(answer);
    }
    if (answer_ && !stop_.stop_requested()) return *answer_;
    return ended_ ? recognise_(*ended_, {}) : std::nullopt;
}

}  // namespace agent
