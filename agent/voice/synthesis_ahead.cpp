#include "agent/voice/synthesis_ahead.h"

#include <algorithm>
#include <utility>

#include "agent/voice/phrases.h"

namespace agent {
namespace {

constexpr std::size_t secondsAhead = 4;
constexpr std::size_t lackPerSecond = 5;  // what lasts that part of a second is little

bool isMute(std::span<const SpokenWord> words) {
    return std::ranges::all_of(words, [](auto& word) { return word.spoken.empty(); });
}

}  // namespace

SynthesisAhead::SynthesisAhead(Synthesizer& synthesizer, std::shared_ptr<const SpokenLine> line,
                               VoiceParameters parameters, std::function<void()> wake)
    : synthesizer_(synthesizer),
      line_(std::move(line)),
      parameters_(std::move(parameters)),
      wake_(std::move(wake)),
      thread_([this] { run(); }) {}

SynthesisAhead::~SynthesisAhead() {
    giveUp();
    thread_.join();
}

std::optional<Utterance> SynthesisAhead::take() {
    const std::lock_guard lock(mutex_);
    if (ready_.empty()) return std::nullopt;
    auto first = std::move(ready_.front());
    ready_.pop_front();
    samples_ -= first.samples.size();
    changed_.notify_all();
    return first;
}

bool SynthesisAhead::finished() {
    const std::lock_guard lock(mutex_);
    return ended_ && ready_.empty();
}

void SynthesisAhead::giveUp() {
    {
        const std::lock_guard lock(mutex_);
        stopped_ = true;
        ready_.clear();
    }
    changed_.notify_all();
}

bool SynthesisAhead::ended() {
    const std::lock_guard lock(mutex_);
    return ended_;
}

void SynthesisAhead::run() {
    const SpeechReceiver receiver{.receive = [this](Utterance utterance) { put(std::move(utterance)); },
                                  .stopped = [this] { return stopped(); }};
    const std::span<const SpokenWord> words = line_->words;
    const PhraseLimits limits = synthesizer_.limits();
    for (std::size_t first = 0; first < words.size() && awaitLack();) {
        const auto rest = words.subspan(first);
        const auto count = phraseLength(rest, first == 0 ? limits.first : limits.later);
        pause(rest.front().pause);
        speak(rest.first(count), first, receiver);
        first += count;
    }
    line_.reset();
    {
        const std::lock_guard lock(mutex_);
        ended_ = true;
    }
    wake_();
}

void SynthesisAhead::speak(std::span<const SpokenWord> words, std::size_t first,
                           const SpeechReceiver& receiver) {
    if (isMute(words)) {
        Utterance silence;
        for (std::size_t i = 0; i < words.size(); ++i) silence.events.push_back({0, first + i});
        return put(std::move(silence));
    }
    const Delivery& delivery = words.front().delivery;
    std::vector<SpokenWord> read(words.begin(), words.end());
    for (SpokenWord& word : read) word.spoken = readAloud(word.spoken, delivery.context);
    const bool last = first + words.size() == line_->words.size();
    const Phrase phrase{.words = read, .first = first, .endsSentence = last || endsSentence(words.back())};
    synthesizer_.speak(phrase, withDelivery(parameters_, delivery),
                       {.receive =
                            [&](Utterance utterance) {
                                setVolume(utterance, delivery.volume);
                                receiver.receive(std::move(utterance));
                            },
                        .stopped = receiver.stopped});
}

void SynthesisAhead::pause(std::chrono::milliseconds time) {
    constexpr std::chrono::milliseconds longestPiece{500};
    while (time.count() > 0 && !stopped()) {
        const auto piece = std::min(time, longestPiece);
        Utterance silence;
        silence.samples.resize(static_cast<std::size_t>(piece.count() * synthesizer_.sampleRate() / 1000));
        put(std::move(silence));
        time -= piece;
    }
}

// An engine at work on a phrase is hard to stop, and what it makes is thrown away with the line.
bool SynthesisAhead::awaitLack() {
    std::unique_lock lock(mutex_);
    const auto little = static_cast<std::size_t>(synthesizer_.sampleRate()) / lackPerSecond;
    changed_.wait(lock, [&] { return stopped_ || samples_ <= little; });
    return !stopped_;
}

void SynthesisAhead::put(Utterance utterance) {
    {
        std::unique_lock lock(mutex_);
        const auto most = secondsAhead * static_cast<std::size_t>(synthesizer_.sampleRate());
        changed_.wait(lock, [&] { return stopped_ || samples_ < most; });
        if (stopped_) return;
        samples_ += utterance.samples.size();
        ready_.push_back(std::move(utterance));
    }
    wake_();
}

bool SynthesisAhead::stopped() {
    const std::lock_guard lock(mutex_);
    return stopped_;
}

}  // namespace agent
