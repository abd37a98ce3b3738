#include "agent/hearing/phrase_reader.h"

#include <chrono>

namespace agent {

using namespace std::chrono_literals;

bool PhraseReader::feed(std::span<const std::int16_t> samples) {
    const bool paused = finder_.pausing();
    ended_ = finder_.feed(samples);
    if (ended_) return true;
    if (paused && !finder_.pausing()) stop_.request_stop();
    if (!finder_.pausing()) return false;
    beginEarly();
    return isUnderstood();
}

void PhraseReader::beginEarly() {
    if (stop_.stop_requested()) answer_.reset();
    if (early_.valid()) {
        if (early_.wait_for(0s) != std::future_status::ready) return;
        auto answer = early_.get();
        if (!stop_.stop_requested()) answer_ = std::move(answer);
    }
    if (answer_) return;
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
