#include "agent/hearing/phrase_reader.h"

#include <chrono>

namespace agent {

bool PhraseReader::feed(std::span<const std::int16_t> samples) {
    const bool paused = finder_.pausing();
    ended_ = finder_.feed(samples);
    if (ended_) return true;
    if (paused && !finder_.pausing()) outdated_ = true;
    if (finder_.pausing()) beginEarly();
    return false;
}

void PhraseReader::beginEarly() {
    using namespace std::chrono_literals;
    if (early_.valid()) {
        if (!outdated_ || early_.wait_for(0s) != std::future_status::ready) return;
        early_ = {};
    }
    outdated_ = false;
    early_ = std::async(std::launch::async, recognise_, finder_.phrase());
}

bool PhraseReader::finish() {
    ended_ = finder_.finish();
    return ended_.has_value();
}

std::optional<HeardPhrase> PhraseReader::result() {
    if (early_.valid()) {
        auto heard = early_.get();
        if (!outdated_) return heard;
    }
    return ended_ ? recognise_(*ended_) : std::nullopt;
}

}  // namespace agent
